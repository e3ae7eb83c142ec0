// The updates of MRT files, to be replayed again and again.
#ifndef TESTS_SOAK_UPDATES_H
#define TESTS_SOAK_UPDATES_H

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "tools/bgp-communities/CommunityKinds.h"
#include "tools/bgp-communities/Route.h"

namespace Soak {

// A batch of routes that owns its octets.
struct Update {
  explicit Update(const CommTool::RouteBatch& batch);

  // The batch once more.  Its attributes are those received; or, with a salt, others
  // of the same form, whose members differ in their last two octets.  Borrows from
  // this update, until the next call.
  CommTool::RouteBatch batch(U16 salt);

 private:
  CommTool::RouteBatch batch_;  // its spans are made anew by batch()
  std::array<std::optional<std::vector<U8>>, CommTool::communityKinds> received_;
  std::array<std::vector<U8>, CommTool::communityKinds> salted_;
  std::vector<CommTool::Nlri> routes_;
};

// In the order of the files.  Throws std::runtime_error if one is not whole.
std::vector<Update> updatesOf(const std::vector<std::string>& files);

}  // namespace Soak

#endif
