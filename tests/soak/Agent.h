// A routing agent on the table and in the hands of a tireless peer.
#ifndef TESTS_SOAK_AGENT_H
#define TESTS_SOAK_AGENT_H

#include <optional>
#include <string>
#include <vector>

#include "KivStash/StoreWriter.h"
#include "tests/platform/KivStash/StoreImages.h"
#include "tests/soak/Updates.h"
#include "tools/bgp-communities/HeldRoutes.h"
#include "tools/bgp-communities/Problems.h"

namespace Soak {

// Takes updates over and over.  One in four brings communities that were never there
// before, in place of those of the same routes, so that all tables are in change and
// yet hold as much as before.  With what comes, all is done that an agent does: text,
// match, snapshot, edit, attribute, store.
class Agent {
 public:
  // With a `leak`, the agent never lets go of the lists of one update in that many.
  Agent(std::vector<Update> updates, U64 leak) : updates_(std::move(updates)), leak_(leak) {}

  // All updates once.
  void pass();
  // All routes go.
  void withdraw();

  U64 operations() const { return operations_; }
  std::size_t routes() const { return held_.routes().size(); }
  const CommTool::CommunityTables& tables() const { return held_.tables(); }
  U32 images() const { return writer_.images(); }
  // What went wrong: empty unless the library is at fault.
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
