// The names of the contenders, as the tables and the JSON lines show them. docs/performance.md
// explains each of them under the same name.
#ifndef BENCH_PEERS_NAMES_H
#define BENCH_PEERS_NAMES_H

namespace Bench::Name {

inline constexpr const char* ours = "ours";
inline constexpr const char* oursOnOneThread = "ours on one thread";
// absl::flat_hash_set of intrusive pointers, for one thread.
inline constexpr const char* flatSet = "flat_hash_set";
// A list in that set has one sub-list for each classification. Another set interns these.
inline constexpr const char* flatSetWithSubLists = "flat_hash_set with sub-lists";
// 1,024 such sets, each with a spin lock, for several threads.
inline constexpr const char* shardedSet = "sharded flat_hash_set";
inline constexpr const char* flyweight = "Boost.Flyweight";
inline constexpr const char* sharedPtrSet = "unordered_set of shared_ptr";
// The lower bound for a hit: it counts no references.
inline constexpr const char* findOnly = "flat_hash_map, find only";

}  // namespace Bench::Name

#endif
