// Lists of interned extended communities: value(content) -> value handle, and
// intern(value handles) -> list handle.
#ifndef BENCH_EXTLISTPEERS_H
#define BENCH_EXTLISTPEERS_H

#include <absl/hash/hash.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <span>
#include <string_view>

#include "OvBgp/OvBgpCommunityList.h"
#include "bench/Peers.h"
#include "bench/ValuePeers.h"

namespace Bench {

// The values follow the node in its one allocation; each is counted once.
struct ExtListNode {
  using Value = ValueNode<U32>;
  using Key = std::span<Value* const>;

  static ExtListNode* make(void* owner, Key key) {
    auto* const node = new (::operator new(sizeof(ExtListNode) + key.size_bytes()))
        ExtListNode{owner, 0, U32(key.size())};
    std::memcpy(static_cast<void*>(node + 1), key.data(), key.size_bytes());
    for (Value* const value : key) ValueP1::referenceAdd(*value);
    return node;
  }
  static void destroy(ExtListNode* node) {
    for (Value* const value : node->key()) ValueP1::release(*value);
    ::operator delete(node, sizeof(ExtListNode) + node->length * sizeof(Value*));
  }
  Key key() const { return {reinterpret_cast<Value* const*>(this + 1), length}; }
  // Values are interned, so that their addresses say all.
  static std::size_t hash(Key key) {
    const std::string_view octets(reinterpret_cast<const char*>(key.data()), key.size_bytes());
    return absl::Hash<std::string_view>{}(octets);
  }
  static bool equal(Key a, Key b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size_bytes()) == 0;
  }

  void* const owner;
  U32 count;
  const U32 length;
};

class ExtListP1 {
 public:
  using Handle = PlainSet<ExtListNode>::Handle;
  using ValueHandle = ValueP1::Handle;

  ValueHandle value(U64 content) { return values_.intern(content); }

  Handle intern(std::span<const ValueHandle> values) {
    std::array<ExtListNode::Value*, 64> room;  // left as it is
    std::vector<ExtListNode::Value*> large(values.size() > room.size() ? values.size() : 0);
    const std::span all(large.empty() ? room.data() : large.data(), values.size());
    bool ascends = true;
    for (std::size_t i = 0; i < all.size(); ++i) {
      all[i] = values[i].get();
      ascends &= i == 0 || all[i - 1]->value < all[i]->value;
    }
    return lists_.intern(ascends ? all : sorted(all));
  }

 private:
  static std::span<ExtListNode::Value*> sorted(std::span<ExtListNode::Value*> values) {
    std::ranges::sort(values, {}, &ExtListNode::Value::value);
    const auto end = std::unique(values.begin(), values.end());
    return values.first(static_cast<std::size_t>(end - values.begin()));
  }

  ValueP1 values_;
  PlainSet<ExtListNode> lists_;
};

class OurExtLists {
 public:
  using Handle = Kiv::Ptr<const Routing::Bgp::ExtCommList>;
  using ValueHandle = Routing::Bgp::ExtComm::PtrConst;

  ValueHandle value(U64 content) { return values_.intern(content); }
  Handle intern(std::span<const ValueHandle> values) {
    return Routing::Bgp::ExtCommList::dedupComms(lists_.ptr(), values);
  }

 private:
  OurValues<false> values_;
  Routing::Bgp::ExtCommListDedupTable::Ptr lists_ = Routing::Bgp::extCommListDedupTableFactory();
};

}  // namespace Bench

#endif
