// Reads all lists of a store while another process may be writing to it.
#ifndef TOOLS_BGP_COMMUNITIES_STORE_STORE_READING_H
#define TOOLS_BGP_COMMUNITIES_STORE_STORE_READING_H

#include <array>
#include <string>
#include <vector>

#include "KivStash/StoreManager.h"
#include "tools/bgp-communities/output/TextOutput.h"
#include "tools/bgp-communities/rib/CommunityTables.h"
#include "tools/bgp-communities/store/Retries.h"

namespace CommTool {

// The counters of everything that was found, over all walks.
struct StoreReadCounts {
  // The counters of one kind of community.
  struct Kind {
    // Lists that were rebuilt.
    U64 lists = 0;
    // Communities of these lists.
    U64 communities = 0;
    // Lists that are marked sorted but are not. Only a faulty or hostile writer makes such lists.
    U64 outOfOrder = 0;
  };
  // Walks that were begun.
  U64 walks = 0;
  // The counters by kind.
  std::array<Kind, communityKinds> kinds{};
  // How often a list was read again, because the writer changed it meanwhile.
  U64 retries = 0;
  // Lists that were removed between their discovery and their reading.
  U64 gone = 0;
  // Lists that were being changed at every attempt to read them.
  U64 unsettled = 0;
  // Images and directory entries that are not valid.
  U64 damaged = 0;

  // Whether a correct writer can explain all counters. A list that is always being changed is an
  // error, because a writer that has died left it.
  bool sound() const;
  // Lists of all kinds that are marked sorted but are not.
  U64 outOfOrder() const;
};

// Opens a store and walks through it. Throws Stash::StoreException and its subclasses for a store
// that cannot be opened. Owner thread only.
class StoreReading {
 public:
  // Opens the store. If `lines` is set, each list is printed on `out` as a line of four fields,
  // like the last four fields of RouteLines; the list is in the field of its kind.
  StoreReading(const Stash::StoreName& name, bool lines, TextOutput& out);

  // Rebuilds and interns every list of the store, after the lists of the previous walk are
  // released. Returns false if the store as a whole is damaged, so that another walk is pointless.
  bool walk();

  // Whether the store that is open has lost its name, because it was removed. Another store may
  // have the name now.
  bool isRemoved() const;
  // Opens the store that has the name now, for the next walks. Returns false, and changes nothing,
  // if the name refers to no store, or to one that is not finished.
  bool reopen();

  // The counters of all walks so far.
  const StoreReadCounts& counts() const { return counts_; }
  // The number of different lists of a kind in the last walk.
  U32 distinct(CommunityKind kind) const { return tables_.lists(kind); }
  // Describes the first damage; empty if there was none.
  const std::string& firstDamage() const { return firstDamage_; }

 private:
  void readImage(const KivStash::StoredRef& image);
  template <class List>
  void read(const void* stored, CommunityKind kind);
  template <class List>
  void take(const Kiv::Ptr<List>& list, CommunityKind kind);
  template <class List>
  void print(const List& list, CommunityKind kind);
  void damaged(const std::string& what);

  const CommunityTables tables_;
  const Stash::StoreName name_;
  KivStash::StoreManager::Ptr manager_;
  const bool lines_;
  TextOutput& out_;
  std::vector<RouteCommunities> held_;  // one list each, which keeps the list interned
  StoreReadCounts counts_;
  Retries::Clock::duration retried_{};  // the time that the retries of this walk took
  std::string firstDamage_;
};

}  // namespace CommTool

#endif
