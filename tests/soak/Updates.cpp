#include "tests/soak/Updates.h"

#include <iostream>
#include <stdexcept>

#include "tools/bgp-communities/commands/ExitStatus.h"
#include "tools/bgp-communities/mrt/MrtFiles.h"
#include "tools/bgp-communities/output/ErrorLines.h"

namespace Soak {
namespace {

using CommTool::CommunityKindRow;
using CommTool::communityKindRows;
using CommTool::indexOf;

class Collector : public CommTool::RouteSink {
 public:
  void handleRoutes(const CommTool::RouteBatch& batch) override { updates.emplace_back(batch); }

  std::vector<Update> updates;
};

}  // namespace

Update::Update(const CommTool::RouteBatch& batch)
    : batch_(batch), routes_(batch.routes.begin(), batch.routes.end()) {
  for (const CommunityKindRow& row : communityKindRows) {
    if (const auto& value = batch.communities[row.kind]) {
      received_[indexOf(row.kind)].emplace(value->begin(), value->end());
    }
  }
}

CommTool::RouteBatch Update::batch(U16 salt) {
  CommTool::RouteBatch batch = batch_;
  batch.routes = routes_;
  for (const CommunityKindRow& row : communityKindRows) {
    const auto& received = received_[indexOf(row.kind)];
    if (!received) continue;
    std::vector<U8>& value = salted_[indexOf(row.kind)];
    value = *received;
    for (std::size_t end = row.memberSize; end <= value.size(); end += row.memberSize) {
      value[end - 2] ^= static_cast<U8>(salt >> 8);
      value[end - 1] ^= static_cast<U8>(salt);
    }
    batch.communities[row.kind] = value;
  }
  return batch;
}

std::vector<Update> updatesOf(const std::vector<std::string>& files) {
  Collector collector;
  CommTool::ErrorLines errors(std::cerr);
  CommTool::MrtFiles reader(collector);
  reader.observerAdd(errors);
  for (const std::string& file : files) reader.read(file);
  if (statusOf(reader.counts()) != CommTool::ExitStatus::fine || collector.updates.empty()) {
    throw std::runtime_error("no updates, or not all of them, can be read");
  }
  return std::move(collector.updates);
}

}  // namespace Soak
