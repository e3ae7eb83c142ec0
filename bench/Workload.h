// What the benchmarks run on: the COMMUNITIES attributes of a file of routing
// data, in the order in which they were received, and lists made up by length.
#ifndef BENCH_WORKLOAD_H
#define BENCH_WORKLOAD_H

#include <malloc.h>

#include <cstdlib>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "Kiv/Types.h"
#include "tools/bgp-communities/MrtDecoder.h"

namespace Bench {

// Attribute values, back to back.
class Attributes {
 public:
  void add(std::span<const U8> value) {
    octets_.insert(octets_.end(), value.begin(), value.end());
    ends_.push_back(octets_.size());
  }
  std::size_t size() const { return ends_.size(); }
  std::span<const U8> operator[](std::size_t i) const {
    const std::size_t begin = i == 0 ? 0 : ends_[i - 1];
    return std::span(octets_).subspan(begin, ends_[i] - begin);
  }

 private:
  std::vector<U8> octets_;
  std::vector<std::size_t> ends_;
};

// Reads the file that OVBGP_BENCH_MRT names, or the sample.
inline const Attributes& received() {
  struct Collector : CommTool::RouteSink {
    void handleRoutes(const CommTool::RouteBatch& batch) override {
      const auto& value = batch.communities[CommTool::CommunityKind::standard];
      for (std::size_t i = 0; value && i < batch.routes.size(); ++i) attributes.add(*value);
    }
    Attributes attributes;
  };
  static const Attributes attributes = [] {
    const char* const named = std::getenv("OVBGP_BENCH_MRT");
    CommTool::Input input(named ? named : OVBGP_SAMPLES_DIR "/speakers-updates.mrt.gz");
    CommTool::MrtReader reader(input);
    Collector collector;
    CommTool::InputCounts counts;
    CommTool::Problems problems;
    CommTool::MrtDecoder decoder(collector, counts);
    while (const CommTool::MrtRecord* record = reader.next()) decoder.decode(*record, problems);
    return std::move(collector.attributes);
  }();
  return attributes;
}

// `count` lists of `length` communities each, all different, in random order.
inline Attributes made(std::size_t count, std::size_t length) {
  Attributes attributes;
  std::mt19937 random(1);
  std::vector<U8> value(4 * length);
  for (std::size_t i = 0; i < count; ++i) {
    for (U8& octet : value) octet = static_cast<U8>(random());
    attributes.add(value);
  }
  return attributes;
}

// Bytes in use on the heap, allocator's overhead included.
inline double heapBytes() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

}  // namespace Bench

#endif
