// The updates of MRT files in memory, so that they can be replayed many times.
#ifndef TESTS_SOAK_UPDATES_H
#define TESTS_SOAK_UPDATES_H

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "tools/bgp-communities/bgp/CommunityKinds.h"
#include "tools/bgp-communities/bgp/Route.h"

namespace Soak {

// A copy of a batch of routes that owns its octets.
struct Update {
  explicit Update(const CommTool::RouteBatch& batch);

  // Returns the batch. With a salt, the communities differ from the received ones in their last two
  // octets. The spans of the result are borrowed from this update until the next call.
  CommTool::RouteBatch batch(U16 salt);

 private:
  CommTool::RouteBatch batch_;  // its spans are made anew by batch()
  std::array<std::optional<std::vector<U8>>, CommTool::communityKinds> received_;
  std::array<std::vector<U8>, CommTool::communityKinds> salted_;
  std::vector<CommTool::Nlri> routes_;
};

// Reads all updates in the order of the files. Throws std::runtime_error if a file is damaged.
std::vector<Update> updatesOf(const std::vector<std::string>& files);

}  // namespace Soak

#endif
