// A routing agent that processes the same updates again and again, for the detection of leaks.
#ifndef TESTS_SOAK_AGENT_H
#define TESTS_SOAK_AGENT_H

#include <optional>
#include <string>
#include <vector>

#include "KivStash/StoreWriter.h"
#include "tests/platform/KivStash/StoreImages.h"
#include "tests/soak/Updates.h"
#include "tools/bgp-communities/input/Problems.h"
#include "tools/bgp-communities/rib/HeldRoutes.h"

namespace Soak {

// Applies all updates in each pass. One update in four gets communities that are new in this
// process and replace those of the same routes. So all tables change constantly, but their sizes do
// not. Some lists are used in every way that an agent uses lists: text, match, snapshot, edit,
// attribute, store.
class Agent {
 public:
  // If `leak` is n > 0, the agent never releases the lists of one update in n. This shows that the
  // test can fail.
  Agent(std::vector<Update> updates, U64 leak) : updates_(std::move(updates)), leak_(leak) {}

  // Applies all updates once.
  void pass();
  // Withdraws all routes.
  void withdraw();

  // The number of updates that were applied so far.
  U64 operations() const { return operations_; }
  // The tables of the agent.
  const CommTool::CommunityTables& tables() const { return held_.tables(); }
  // The first error found; empty as long as the library works correctly.
  const std::string& fault() const { return fault_; }

 private:
  void take(const CommTool::RouteBatch& batch);
  void use(const CommTool::RouteCommunities& lists);
  template <class List>
  void use(const List& list, std::optional<KivStash::ImageId>& image);
  void noteFault(const std::string& fault) {
    if (fault_.empty()) fault_ = fault;
  }

  std::vector<Update> updates_;
  const U64 leak_;
  CommTool::HeldRoutes held_;
  std::vector<CommTool::RouteCommunities> leaked_;
  const StoreTest::TestName storeName_;
  KivStash::StoreWriter writer_{storeName_.name()};
  const KivStash::StoreManager::Ptr manager_ = KivStash::storeManagerFactory(storeName_.name());
  std::optional<KivStash::ImageId> images_[CommTool::communityKinds];
  CommTool::Problems problems_;
  std::string fault_;
  U64 operations_ = 0;
  U32 passes_ = 0;
};

}  // namespace Soak

#endif
