#include "tools/bgp-communities/store/StoreReading.h"

#include <optional>

#include "OvFmt/DynamicBuffer.h"
#include "Stash/StoreException.h"
#include "tools/bgp-communities/output/ListTexts.h"

namespace CommTool {

using namespace Routing::Bgp;

namespace {

// The next functions return the member of RouteCommunities for a type of list.
CommList::PtrConst& slot(RouteCommunities& of, const CommList*) { return of.standard; }
LargeCommList::PtrConst& slot(RouteCommunities& of, const LargeCommList*) { return of.large; }
ExtCommList::PtrConst& slot(RouteCommunities& of, const ExtCommList*) { return of.extended; }
ExtCommIp6List::PtrConst& slot(RouteCommunities& of, const ExtCommIp6List*) {
  return of.ip6Extended;
}

// The number of communities of a list of any kind.
U32 members(const auto& list) {
  if constexpr (requires { list.commVectorRawPtr(); }) {
    return list.comms();
  } else {
    return list.commVector().size();
  }
}

}  // namespace

bool StoreReadCounts::sound() const { return unsettled + damaged + outOfOrder() == 0; }

U64 StoreReadCounts::outOfOrder() const {
  U64 sum = 0;
  for (const Kind& kind : kinds) sum += kind.outOfOrder;
  return sum;
}

StoreReading::StoreReading(const Stash::StoreName& name, bool lines, TextOutput& out)
    : name_(name), manager_(KivStash::storeManagerFactory(name)), lines_(lines), out_(out) {}

bool StoreReading::isRemoved() const { return !manager_->store().isNamed(name_); }

bool StoreReading::reopen() {
  try {
    manager_ = KivStash::storeManagerFactory(name_);
    return true;
  } catch (const Stash::StoreException&) {
    return false;
  }
}

// An image of an unknown kind is skipped. After any other damage the cursor cannot continue, so the
// walk ends.
bool StoreReading::walk() {
  held_.clear();
  retried_ = {};
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

// Images of single values are skipped here: they are read with the lists that refer to them.
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

// The image may change, disappear or be replaced by one of another kind at any time. destash()
// detects all three: it validates what it has read against the list's change counter. The time for
// retries ends before the list is printed, because the output may be slow.
template <class List>
void StoreReading::read(const void* stored, CommunityKind kind) {
  std::optional<Retries> retries;
  do {
    try {
      const auto list = List::destash(stored, manager_.ptr());
      retries.reset();
      return take<List>(list, kind);
    } catch (const Stash::VersionAnchorException&) {
      ++counts_.retries;
    } catch (const Stash::ImageNotFoundException&) {
      ++counts_.gone;
      return;
    } catch (const Stash::WrongKindException&) {
      ++counts_.gone;
      return;
    }
    if (!retries) retries.emplace(retried_);
  } while (retries->next());
  ++counts_.unsettled;
}

// The rebuilt list is interned, so lists that the store has twice become one object.
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

// Fields of the other kinds are empty.
template <class List>
void StoreReading::print(const List& list, CommunityKind kind) {
  OvFmt::StackBackedBuffer<1024> text;
  for (std::size_t i = 0; i < indexOf(kind); ++i) text.append('|');
  appendListText(text, list);
  for (std::size_t i = indexOf(kind) + 1; i < communityKinds; ++i) text.append('|');
  text.append('\n');
  out_.append(text.view());
}

// Counts a damage and keeps the first description.
void StoreReading::damaged(const std::string& what) {
  if (counts_.damaged++ == 0) firstDamage_ = what;
}

}  // namespace CommTool
