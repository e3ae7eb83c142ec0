// Arbitrary octets as a shared-memory store, for every operation that rebuilds from
// one.  Whatever they are, it ends, in objects or in a StoreException, leaves nothing
// behind, and allocates no more at a time than the store has octets.
#include <sched.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "Kiv/Type.h"
#include "KivStash/StoreManager.h"
#include "OvBgp/ExtCommIp6DedupTable.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Parse/ExtComm.h"
#include "OvBgp/Store/Destash.h"
#include "OvBgp/ValueTable/ExtCommDedupTable.h"
#include "Stash/StoreException.h"
#include "Stash/StoreLayout.h"
#include "fuzz/support/Allocations.h"
#include "fuzz/support/MemoryFile.h"

namespace {

using namespace Routing::Bgp;
using KivStash::StoreManager;
using Stash::StoreHeader;

// The tables of a reader.
struct Tables {
  const BgpParseExtCommContainerSm::Ptr parser = bgpParseExtCommContainerSmFactory();
  const ExtCommDedupTable::Ptr values = extCommDedupTableFactory(parser->extCommParser());
  const ExtCommIp6DedupTable::Ptr ip6Values = extCommIp6DedupTableFactory(parser->extCommParser());
  const CommListDedupTable::Ptr standard = commListDedupTableFactory();
  const LargeCommListDedupTable::Ptr large = largeCommListDedupTableFactory();
  const ExtCommListDedupTable::Ptr extended = extCommListDedupTableFactory();
  const ExtCommIp6ListDedupTable::Ptr ip6 = extCommIp6ListDedupTableFactory();
};

const Tables& tables() {
  static const Tables all;
  return all;
}

// All that a reader does with what it was given.
void use(CommList& list) { (void)list.dedup(tables().standard.ptr())->noExport(); }
void use(LargeCommList& list) { (void)list.dedup(tables().large.ptr())->serialize(); }
void use(ExtComm& comm) { (void)comm.toStrepForUI(true, true, false); }
void use(ExtCommList& list) {
  (void)ExtCommList::dedupDestashed(tables().extended.ptr(), tables().values.ptr(), list);
}
void use(ExtCommIp6& comm) { (void)comm.hash(); }
void use(ExtCommIp6List& list) {
  (void)ExtCommIp6List::dedupDestashed(tables().ip6.ptr(), tables().ip6Values.ptr(), list);
}

bool fits(const LargeCommList& list) { return list.fitsAttribute(); }
bool fits(const auto&) { return true; }

template <class T>
typename T::Ptr destash(const void* stored, const StoreManager::Ptr& manager) {
  // Few octets more, as objects and messages are no smaller in a small store.
  const Fuzz::AllocationLimit limit(manager->store().length() + 512);
  return T::destash(stored, manager.ptr());
}

template <class T>
void destashAndUse(const void* stored, const StoreManager::Ptr& manager) {
  try {
    const typename T::Ptr object = destash<T>(stored, manager);
    (void)object->toStrep();
    if (fits(*object)) use(*object);
  } catch (const Stash::StoreException&) {
  }
}

void destashAll(const void* stored, const StoreManager::Ptr& manager) {
  destashAndUse<CommList>(stored, manager);
  destashAndUse<LargeCommList>(stored, manager);
  destashAndUse<ExtComm>(stored, manager);
  destashAndUse<ExtCommList>(stored, manager);
  destashAndUse<ExtCommIp6>(stored, manager);
  destashAndUse<ExtCommIp6List>(stored, manager);
}

void walk(const StoreManager::Ptr& manager) {
  KivStash::StoreCursor cursor(manager);
  for (bool more = true; more;) {
    try {
      const auto image = cursor.next();
      more = image.has_value();
      if (more) destashAll(image->stored, manager);
    } catch (const Stash::StoreException&) {
    }
  }
}

// Where no image is, or where one is only by the octets' own word.
void jump(const std::vector<std::uint8_t>& octets, const StoreManager::Ptr& manager) {
  std::array<Stash::Word, 8> words{};
  const std::size_t size = std::min(sizeof words, octets.size());
  std::memcpy(words.data(), octets.data() + octets.size() - size, size);
  for (const Stash::Word word : words) {
    destashAll(manager->store().storedAddress(word), manager);
    destashAll(manager->store().storedAddress(word % (octets.size() + 1) & ~Stash::Word{7}),
               manager);
  }
}

void read(const std::vector<std::uint8_t>& octets) {
  const Fuzz::MemoryFile file(octets);
  try {
    const StoreManager::Ptr manager = KivStash::storeManagerFactory(Stash::StoreName(file.path()));
    walk(manager);
    jump(octets, manager);
    (void)manager->store().header();
  } catch (const Stash::StoreException&) {
  }
}

// Makes the header one that readers go on from; where they go stays open.
void openHeader(std::vector<std::uint8_t>& octets) {
  octets.resize(std::max(octets.size(), Stash::storeLengthMin));
  StoreHeader header;
  std::memcpy(&header, octets.data(), sizeof header);
  header.magic = Stash::storeMagic;
  header.byteOrder = Stash::storeByteOrder;
  header.version = Stash::storeVersion;
  header.wordSize = Stash::wordSize;
  header.maximum = octets.size() * 2;
  header.length = octets.size();
  std::memcpy(octets.data(), &header, sizeof header);
}

U64 bytesAllocated() {
  U64 bytes = 0;
  Kiv::forEachType([&](const Kiv::Type& type) { bytes += type.bytes(); });
  return bytes;
}

}  // namespace

// No writer is there for whom a reader would give up the processor, which takes
// long on a busy machine.
extern "C" int sched_yield() noexcept { return 0; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<std::uint8_t> octets(data, data + size);
  read(octets);
  openHeader(octets);
  read(octets);
  // The interning tables may have grown, but must hold nothing.
  const Tables& all = tables();
  const U32 left = all.values->size() + all.ip6Values->size() + all.standard->size() +
                   all.large->size() + all.extended->size() + all.ip6->size();
  if (left != 0 || ExtComm::kivType().objects() + ExtCommIp6::kivType().objects() != 0) {
    std::fprintf(stderr, "%u interned objects left, %llu octets\n", left,
                 static_cast<unsigned long long>(bytesAllocated()));
    std::abort();
  }
  return 0;
}
