// What the peers are made of: counted pointers and the two sets that a very good
// engineer would write, behind one face: intern(key) -> handle; a handle keeps its
// object, and the last one takes it out of the set.
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

// Owns one reference; `Set` says what giving it up means.
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

// A node is one allocation: the set that owns it, a count, and contents that
// Node::key() shows as Node::Key.  Node::hash hashes a key; Node::make and
// Node::destroy allocate.
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
  // Of two nodes of one set each is unique.
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

// The node of `wanted`, made if there is none; one hash, one probe.
template <class Node>
Node& nodeOf(NodeSet<Node>& nodes, const Hashed<Node>& wanted, void* owner) {
  const auto make = [&](const auto& insert) { insert(Node::make(owner, wanted.key)); };
  return **nodes.lazy_emplace(wanted, make);
}

// P1: one thread, plain counts.
template <class Node>
class PlainSet {
 public:
  using Handle = Counted<Node, PlainSet>;

  PlainSet() = default;
  PlainSet(const PlainSet&) = delete;
  PlainSet& operator=(const PlainSet&) = delete;

  Handle intern(const typename Node::Key& key) {
    Node& node = nodeOf(nodes_, Hashed<Node>{key, Node::hash(key)}, this);
    ++node.count;
    return Handle(&node);
  }
  static void referenceAdd(Node& node) noexcept { ++node.count; }
  static void release(Node& node) noexcept {
    if (--node.count != 0) return;
    static_cast<PlainSet*>(node.owner)->nodes_.erase(&node);
    Node::destroy(&node);
  }

 private:
  NodeSet<Node> nodes_;
};

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

// P2: any number of threads.  A lookup takes its reference under the shard's lock,
// and the last reference is given up under it, so that who comes first wins.
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

  // By the top bits; the sets use the others.
  Shard& shardOf(std::size_t hash) { return shards_[hash >> (sizeof(hash) * 8 - 10)]; }
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
