// Walks through a store, as a process does that shares it with its writer.
#ifndef TOOLS_BGP_COMMUNITIES_STORE_READING_H
#define TOOLS_BGP_COMMUNITIES_STORE_READING_H

#include <array>
#include <string>
#include <vector>

#include "KivStash/StoreManager.h"
#include "tools/bgp-communities/CommunityTables.h"
#include "tools/bgp-communities/TextOutput.h"

namespace CommTool {

// What walks met, in all.
struct StoreReadCounts {
  struct Kind {
    U64 lists = 0;        // rebuilt
    U64 communities = 0;  // in them
    U64 outOfOrder = 0;   // of the lists, said to be in order and were not
  };
  U64 walks = 0;
  std::array<Kind, communityKinds> kinds{};
  U64 retries = 0;    // of lists that were changed while they were read
  U64 gone = 0;       // lists that were removed meanwhile
  U64 unsettled = 0;  // lists that were in change whenever they were looked at
  U64 damaged = 0;    // images, or parts of the directory, that cannot be right

  // Whether a writer at work explains all of it. A list that never settles is that
  // of a writer that has died.
  bool sound() const;
};

class StoreReading {
 public:
  // With `lines`, each list is printed: four fields with | between them, as in the
  // lines of routes, of which the list's own has its text.
  StoreReading(const Stash::StoreName& name, bool lines, TextOutput& out);

  // Rebuilds and interns every list; drops those of the walk before. False once the
  // store itself has gone bad, so that there is no use in another walk.
  bool walk();

  const StoreReadCounts& counts() const { return counts_; }
  // Distinct lists of the last walk.
  U32 distinct(CommunityKind kind) const { return tables_.lists(kind); }
  // What was damaged first; empty if nothing was.
  const std::string& firstDamage() const { return firstDamage_; }

 private:
  void readImage(const KivStash::StoredRef& image);
  template <class List>
  void read(const void* stored, CommunityKind kind);
  // Waits a moment for the writer; false if this walk has waited enough.
  bool wait();
  template <class List>
  void take(const Kiv::Ptr<List>& list, CommunityKind kind);
  template <class List>
  void print(const List& list, CommunityKind kind);
  void damaged(const std::string& what);

  const CommunityTables tables_;
  const KivStash::StoreManager::Ptr manager_;
  const bool lines_;
  TextOutput& out_;
  std::vector<RouteCommunities> held_;  // of each, one list
  StoreReadCounts counts_;
  int waits_ = 0;  // of this walk
  std::string firstDamage_;
};

}  // namespace CommTool

#endif
