// The building blocks of the peers: a counted pointer and two sets that a very good engineer
// would write by hand. Both sets have the same interface: intern(key) returns a handle, a handle
// holds a reference to its object, and the last release erases the object from the set.
//
// A set must outlive its handles, because an object refers to its set.
#ifndef BENCH_PEERS_PEERS_H
#define BENCH_PEERS_PEERS_H

#include <absl/container/flat_hash_set.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "Kiv/Types.h"

namespace Bench {

using Comms = std::vector<U32>;

// A handle: it owns one reference. `Set` defines how references are added and released.
template <class Node, class Set>
class Counted {
 public:
  Counted() = default;
  explicit Counted(Node* node) noexcept : node_(node) {}  // the reference is counted already
  Counted(const Counted& other) noexcept : node_(other.node_) {
    if (node_) Set::referenceAdd(*node_);
  }
  Counted(Counted&& other) noexcept : node_(std::exchange(other.node_, nullptr)) {}
  ~Counted() {
    if (node_) Set::release(*node_);
  }
  Counted& operator=(Counted other) noexcept {
    std::swap(node_, other.node_);
    return *this;
  }
  Node* get() const noexcept { return node_; }

 private:
  Node* node_ = nullptr;
};

// A key with its hash, so that a lookup computes the hash once.
//
// `Node` is an object of a set, in one allocation: its owner (the set), its reference count and
// its content. Node::key() returns the content, Node::hash() hashes a key, Node::make() allocates
// a node, and Node::destroy() frees it.
template <class Node>
struct Hashed {
  typename Node::Key key;
  std::size_t hash;
};

template <class Node>
struct NodeHash {
  using is_transparent = void;
  std::size_t operator()(const Hashed<Node>& wanted) const { return wanted.hash; }
  std::size_t operator()(const Node* node) const { return Node::hash(node->key()); }
};

template <class Node>
struct NodeEqual {
  using is_transparent = void;
  // All nodes of a set differ in content, so two nodes are equal only if they are the same.
  bool operator()(const Node* a, const Node* b) const { return a == b; }
  bool operator()(const Node* a, const Hashed<Node>& b) const {
    return Node::equal(a->key(), b.key);
  }
  bool operator()(const Hashed<Node>& a, const Node* b) const {
    return Node::equal(a.key, b->key());
  }
};

template <class Node>
using NodeSet = absl::flat_hash_set<Node*, NodeHash<Node>, NodeEqual<Node>>;

// Returns the node of `wanted` and creates it on a miss. Costs one probe sequence in both cases.
template <class Node>
Node& nodeOf(NodeSet<Node>& nodes, const Hashed<Node>& wanted, void* owner) {
  const auto make = [&](const auto& insert) { insert(Node::make(owner, wanted.key)); };
  return **nodes.lazy_emplace(wanted, make);
}

// The set for one thread, with plain reference counts.
template <class Node>
class FlatSet {
 public:
  using Handle = Counted<Node, FlatSet>;

  FlatSet() = default;
  FlatSet(const FlatSet&) = delete;
  FlatSet& operator=(const FlatSet&) = delete;

  Handle intern(const typename Node::Key& key) {
    Node& node = nodeOf(nodes_, Hashed<Node>{key, Node::hash(key)}, this);
    ++node.count;
    return Handle(&node);
  }
  static void referenceAdd(Node& node) noexcept { ++node.count; }
  static void release(Node& node) noexcept {
    if (--node.count != 0) return;
    static_cast<FlatSet*>(node.owner)->nodes_.erase(&node);
    Node::destroy(&node);
  }

 private:
  NodeSet<Node> nodes_;
};

// Spins on a plain load, so that a waiting thread does not take the cache line from the owner. It
// yields now and then, because with more threads than processors the owner may be suspended.
class SpinLock {
 public:
  void lock() noexcept {
    U32 spins = 0;
    while (held_.exchange(true, std::memory_order_acquire)) {
      while (held_.load(std::memory_order_relaxed)) {
        if (++spins % 256 == 0) std::this_thread::yield();
      }
    }
  }
  void unlock() noexcept { held_.store(false, std::memory_order_release); }

 private:
  std::atomic<bool> held_{false};
};

// The set for several threads: 1,024 shards, each with a spin lock and a cache line of its own.
//
// A lookup adds its reference under the lock of the shard. A release that sees a count of one
// also takes this lock before it decrements. Therefore a hit and the last release of the same
// object never overlap: either the hit revives the object, or it finds it erased.
template <class Node>
class ShardedSet {
 public:
  using Handle = Counted<Node, ShardedSet>;

  ShardedSet() : shards_(new Shard[shardCount]) {}
  ShardedSet(const ShardedSet&) = delete;
  ShardedSet& operator=(const ShardedSet&) = delete;

  Handle intern(const typename Node::Key& key) {
    const Hashed<Node> wanted{key, Node::hash(key)};
    Shard& shard = shardOf(wanted.hash);
    const std::lock_guard guard(shard.lock);
    Node& node = nodeOf(shard.nodes, wanted, this);
    referenceAdd(node);
    return Handle(&node);
  }
  static void referenceAdd(Node& node) noexcept {
    node.count.fetch_add(1, std::memory_order_relaxed);
  }
  static void release(Node& node) noexcept {
    U32 seen = node.count.load(std::memory_order_relaxed);
    while (seen > 1) {
      if (node.count.compare_exchange_weak(seen, seen - 1, std::memory_order_release,
                                           std::memory_order_relaxed)) {
        return;
      }
    }
    static_cast<ShardedSet*>(node.owner)->releaseLocked(node);
  }

 private:
  static constexpr std::size_t shardCount = 1024;
  struct alignas(64) Shard {
    SpinLock lock;
    NodeSet<Node> nodes;
  };

  // Uses the top 10 bits of the hash; a set within a shard uses the lower ones.
  Shard& shardOf(std::size_t hash) { return shards_[hash >> (sizeof(hash) * 8 - 10)]; }
  // The slow path of a release. Another thread may have added a reference in the meantime.
  void releaseLocked(Node& node) noexcept {
    Shard& shard = shardOf(Node::hash(node.key()));
    {
      const std::lock_guard guard(shard.lock);
      if (node.count.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
      shard.nodes.erase(&node);
    }
    Node::destroy(&node);
  }

  std::unique_ptr<Shard[]> shards_;
};

}  // namespace Bench

#endif
