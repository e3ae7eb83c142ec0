// The data that the benchmarks work on: the COMMUNITIES attributes of a file of routing data, in
// the order in which they were received, and synthetic lists with the same lengths.
//
// All random generators have fixed seeds, so every run and every contender gets the same data.
#ifndef BENCH_WORKLOAD_H
#define BENCH_WORKLOAD_H

#include <malloc.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "Kiv/Types.h"
#include "tools/bgp-communities/mrt/MrtDecoder.h"

namespace Bench {

// Attribute values in network byte order, one directly behind another, as in a receive buffer.
class Attributes {
 public:
  void add(std::span<const U8> value) {
    octets_.insert(octets_.end(), value.begin(), value.end());
    ends_.push_back(static_cast<U32>(octets_.size()));
  }
  std::size_t size() const { return ends_.size() - 1; }
  std::span<const U8> operator[](std::size_t i) const {
    return {octets_.data() + ends_[i], octets_.data() + ends_[i + 1]};
  }

 private:
  std::vector<U8> octets_;
  std::vector<U32> ends_{0};
};

inline std::string nameOf(const std::string& file) {
  return std::filesystem::path(file).filename().string();
}

// The COMMUNITIES attributes in `file`: one for each UPDATE or table entry that carries one. A
// file is read once per process; the reference stays valid until the process ends.
inline const Attributes& received(const std::string& file) {
  struct Collector : CommTool::RouteSink {
    void handleRoutes(const CommTool::RouteBatch& batch) override {
      const auto& value = batch.communities[CommTool::CommunityKind::standard];
      if (value) attributes.add(*value);
    }
    Attributes attributes;
  };
  static std::map<std::string, Attributes> read;
  const auto [found, isNew] = read.try_emplace(file);
  if (!isNew) return found->second;
  CommTool::Input input(file);
  CommTool::MrtReader reader(input);
  Collector collector;
  CommTool::InputCounts counts;
  CommTool::Problems problems;
  CommTool::MrtDecoder decoder(collector, counts);
  while (const CommTool::MrtRecord* record = reader.next()) decoder.decode(*record, problems);
  return found->second = std::move(collector.attributes);
}

// Adds a list of `length` members in ascending order without duplicates. Nearly all received
// lists are like this, so a contender may take its fast path.
inline void addRandomList(Attributes& to, std::size_t length, std::mt19937& random) {
  std::set<U32> comms;
  while (comms.size() < length) comms.insert(static_cast<U32>(random()));
  std::vector<U8> value;
  for (const U32 c : comms) {
    for (const int shift : {24, 16, 8, 0}) value.push_back(static_cast<U8>(c >> shift));
  }
  to.add(value);
}

// `count` different lists of `length` communities each. Short lists differ only with high
// probability, because the members are random.
inline Attributes made(std::size_t count, std::size_t length) {
  Attributes attributes;
  std::mt19937 random(1);
  for (std::size_t i = 0; i < count; ++i) addRandomList(attributes, length, random);
  return attributes;
}

// `count` different lists. Their lengths are drawn from the non-empty lists in `like`.
inline Attributes madeLike(const Attributes& like, std::size_t count) {
  std::vector<std::size_t> lengths;
  for (std::size_t i = 0; i < like.size(); ++i) {
    if (!like[i].empty()) lengths.push_back(like[i].size() / 4);
  }
  Attributes attributes;
  std::mt19937 random(2);
  // Two lists of one community can be equal. Such pairs are too few to change a figure.
  for (std::size_t i = 0; i < count; ++i) {
    addRandomList(attributes, lengths[random() % lengths.size()], random);
  }
  return attributes;
}

// Numbers below `count`, drawn from a Zipf distribution: the probability of rank r is
// proportional to 1 / (r + 1)^exponent. An exponent of 0 draws evenly.
inline std::vector<U32> zipf(std::size_t count, double exponent, std::size_t draws) {
  std::vector<double> sums(count);
  double sum = 0;
  for (std::size_t i = 0; i < count; ++i) {
    sums[i] = sum += std::pow(static_cast<double>(i + 1), -exponent);
  }
  std::mt19937_64 random(3);
  std::uniform_real_distribution<double> even(0, sum);
  std::vector<U32> ranks(draws);
  for (U32& rank : ranks) {
    rank = static_cast<U32>(std::ranges::upper_bound(sums, even(random)) - sums.begin());
    rank = std::min(rank, static_cast<U32>(count - 1));
  }
  return ranks;
}

// A sequence of `draws` lists from `lists`, drawn by rank as in zipf().
inline Attributes drawn(const Attributes& lists, double exponent, std::size_t draws) {
  Attributes attributes;
  for (const U32 rank : zipf(lists.size(), exponent, draws)) attributes.add(lists[rank]);
  return attributes;
}

// A sequence over `lists` different lists, some of them popular. When it is replayed into a
// fifth as many slots, 58 % of the slots hold a list that no other slot holds. The first call
// fixes the arguments for the process.
inline const Attributes& scaled(const Attributes& like, std::size_t lists) {
  static const Attributes sequence = drawn(madeLike(like, lists), 0.82, 2 * lists);
  return sequence;
}

// A sequence in which no list repeats, so every interning is a miss. The first call fixes the
// arguments for the process.
inline const Attributes& distinct(const Attributes& like, std::size_t lists) {
  static const Attributes sequence = madeLike(like, lists);
  return sequence;
}

// `count` different extended communities in host byte order: route targets, route origins,
// colors and values of types that no rule knows. The low bits number the values.
inline std::vector<U64> valuesOf(std::size_t count) {
  constexpr U64 types[] = {0x0002, 0x0202, 0x0103, 0x030B, 0x4004, 0x0399, 0x0600};
  std::mt19937_64 random(3);
  std::vector<U64> values;
  for (std::size_t i = 0; i < count; ++i) {
    values.push_back(types[i % std::size(types)] << 48 | (random() & 0xFFFF00000000) | i);
  }
  return values;
}

// A sequence of `draws` values over `count` different ones; the popularity of rank r is
// proportional to 1 / (r + 1).
inline std::vector<U64> zipfValues(std::size_t count, std::size_t draws) {
  const std::vector<U64> values = valuesOf(count);
  std::vector<U64> sequence;
  for (const U32 rank : zipf(count, 1.0, draws)) sequence.push_back(values[rank]);
  return sequence;
}

// Bytes in use on the heap, including the overhead of the allocator and large blocks that are
// mapped directly.
inline double heapBytes() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

}  // namespace Bench

#endif
