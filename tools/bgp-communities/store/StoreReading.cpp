#include "tools/bgp-communities/StoreReading.h"

#include <chrono>
#include <thread>

#include "OvFmt/DynamicBuffer.h"
#include "Stash/StoreException.h"
#include "tools/bgp-communities/ListTexts.h"

namespace CommTool {

using namespace Routing::Bgp;

namespace {

// A list that is in change so often is waited for, but so many milliseconds a walk in
// all: its writer may only have lost its processor, or it may have died, or be hostile
// and leave many lists so.
constexpr int triesAtOnce = 32;
constexpr int waitsMax = 500;

CommList::PtrConst& slot(RouteCommunities& of, const CommList*) { return of.standard; }
LargeCommList::PtrConst& slot(RouteCommunities& of, const LargeCommList*) { return of.large; }
ExtCommList::PtrConst& slot(RouteCommunities& of, const ExtCommList*) { return of.extended; }
ExtCommIp6List::PtrConst& slot(RouteCommunities& of, const ExtCommIp6List*) {
  return of.ip6Extended;
}

U32 members(const auto& list) {
  if constexpr (requires { list.commVectorRawPtr(); }) {
    return list.comms();
  } else {
    return list.commVector().size();
  }
}

}  // namespace

bool StoreReadCounts::sound() const {
  U64 outOfOrder = 0;
  for (const Kind& kind : kinds) outOfOrder += kind.outOfOrder;
  return unsettled + damaged + outOfOrder == 0;
}

StoreReading::StoreReading(const Stash::StoreName& name, bool lines, TextOutput& out)
    : manager_(KivStash::storeManagerFactory(name)), lines_(lines), out_(out) {}

// A walk goes on behind images of unknown kinds; behind other faults it has ended.
bool StoreReading::walk() {
  held_.clear();
  waits_ = 0;
  ++counts_.walks;
  KivStash::StoreCursor cursor(manager_);
  for (;;) {
    try {
      const auto image = cursor.next();
      if (!image) return true;
      readImage(*image);
    } catch (const Stash::InvalidStoreException& reason) {
      damaged(reason.what());
      return false;
    } catch (const Stash::StoreException& reason) {
      damaged(reason.what());
    }
  }
}

// Values are read with the lists that hold them.
void StoreReading::readImage(const KivStash::StoredRef& image) {
  switch (image.kind) {
    case Stash::ImageKind::standardList:
      return read<CommList>(image.stored, CommunityKind::standard);
    case Stash::ImageKind::largeList:
      return read<LargeCommList>(image.stored, CommunityKind::large);
    case Stash::ImageKind::extendedList:
      return read<ExtCommList>(image.stored, CommunityKind::extended);
    case Stash::ImageKind::ipv6List:
      return read<ExtCommIp6List>(image.stored, CommunityKind::ip6Extended);
    default:
      break;
  }
}

template <class List>
void StoreReading::read(const void* stored, CommunityKind kind) {
  for (int tries = 0; tries < triesAtOnce || wait(); ++tries) {
    try {
      return take<List>(List::destash(stored, manager_.ptr()), kind);
    } catch (const Stash::VersionAnchorException&) {
      ++counts_.retries;
    } catch (const Stash::ImageNotFoundException&) {
      ++counts_.gone;
      return;
    } catch (const Stash::WrongKindException&) {
      ++counts_.gone;
      return;
    }
  }
  ++counts_.unsettled;
}

bool StoreReading::wait() {
  if (waits_ == waitsMax) return false;
  ++waits_;
  std::this_thread::sleep_for(std::chrono::milliseconds(1));
  return true;
}

template <class List>
void StoreReading::take(const Kiv::Ptr<List>& list, CommunityKind kind) {
  StoreReadCounts::Kind& counts = counts_.kinds[indexOf(kind)];
  ++counts.lists;
  counts.communities += members(*list);
  if (!inOrder(*list)) ++counts.outOfOrder;
  const auto interned = tables_.intern(list);
  slot(held_.emplace_back(), interned.ptr()) = interned;
  if (lines_) print(*interned, kind);
}

template <class List>
void StoreReading::print(const List& list, CommunityKind kind) {
  OvFmt::StackBackedBuffer<1024> text;
  for (std::size_t i = 0; i < indexOf(kind); ++i) text.append('|');
  appendListText(text, list);
  for (std::size_t i = indexOf(kind) + 1; i < communityKinds; ++i) text.append('|');
  text.append('\n');
  out_.append(text.view());
}

void StoreReading::damaged(const std::string& what) {
  if (counts_.damaged++ == 0) firstDamage_ = what;
}

}  // namespace CommTool
