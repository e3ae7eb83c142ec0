// Ours and the peers that intern lists of extended communities. Each has two operations:
// value(content) returns a value handle, and intern(value handles) returns a list handle.
//
// The values are interned before the measurement, so a row measures only the lists.
#ifndef BENCH_PEERS_EXTLISTPEERS_H
#define BENCH_PEERS_EXTLISTPEERS_H

#include <absl/hash/hash.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <span>
#include <string_view>

#include "OvBgp/OvBgpCommunityList.h"
#include "bench/peers/Peers.h"
#include "bench/peers/ShortRoom.h"
#include "bench/peers/ValuePeers.h"

namespace Bench {

// A list with its values behind it in the same allocation. The list holds one reference to each
// of its values.
struct ExtListNode {
  using Value = ValueNode<U32>;
  using Key = std::span<Value* const>;

  static ExtListNode* make(void* owner, Key key) {
    auto* const node = new (::operator new(sizeof(ExtListNode) + key.size_bytes()))
        ExtListNode{owner, 0, U32(key.size())};
    std::memcpy(static_cast<void*>(node + 1), key.data(), key.size_bytes());
    for (Value* const value : key) ValuesInFlatSet::referenceAdd(*value);
    return node;
  }
  static void destroy(ExtListNode* node) {
    for (Value* const value : node->key()) ValuesInFlatSet::release(*value);
    ::operator delete(node, sizeof(ExtListNode) + node->length * sizeof(Value*));
  }
  Key key() const { return {reinterpret_cast<Value* const*>(this + 1), length}; }
  // Equal values are the same object, so hashing and comparing the addresses is enough.
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

// Memory for the values of one list while it is looked up.
using ExtListRoom = ShortRoom<ExtListNode::Value*>;

// A list with one interned sub-list for each classification, as in our lists. Lists share their
// sub-lists. A peer without sub-lists does less work than ours, so this peer is the fair
// comparison.
struct GroupedListNode {
  using Value = ExtListNode::Value;
  using Key = ExtListNode::Key;
  using SubLists = FlatSet<ExtListNode>;

  // `owner` is the FlatSet base of a GroupedLists, which also interns the sub-lists.
  static GroupedListNode* make(void* owner, Key key);
  static void destroy(GroupedListNode* node) {
    const std::size_t size = sizeof(GroupedListNode) + node->length * sizeof(Value*);
    for (Value* const value : node->key()) ValuesInFlatSet::release(*value);
    node->~GroupedListNode();
    ::operator delete(node, size);
  }
  Key key() const { return {reinterpret_cast<Value* const*>(this + 1), length}; }
  static std::size_t hash(Key key) { return ExtListNode::hash(key); }
  static bool equal(Key a, Key b) { return ExtListNode::equal(a, b); }

  // Classifies the types that valuesOf() makes; all other values are unclassified (0).
  static constexpr U32 classifications = 6;
  static U32 classificationOf(U64 value) {
    switch (value >> 48) {
      case 0x0002:
      case 0x0202:
        return 1;
      case 0x0103:
        return 2;
      case 0x0600:
        return 3;
      case 0x4004:
        return 4;
      case 0x030B:
        return 5;
      default:
        return 0;
    }
  }
  void subListsAre(SubLists& from) {
    const ExtListRoom room(length);
    std::array<U32, classifications> ends{};
    for (const Value* const value : key()) ++ends[classificationOf(value->value)];
    for (U32 i = 1; i < classifications; ++i) ends[i] += ends[i - 1];
    // A counting sort. It runs backwards, so it is stable, and afterwards ends[i] is the index
    // of the first value of classification i.
    for (U32 i = length; i-- > 0;) {
      room.all()[--ends[classificationOf(key()[i]->value)]] = key()[i];
    }
    for (U32 i = 0; i < classifications; ++i) {
      const U32 end = i + 1 < classifications ? ends[i + 1] : length;
      if (end > ends[i]) subLists[i] = from.intern(room.all().subspan(ends[i], end - ends[i]));
    }
  }

  void* const owner;
  U32 count;
  const U32 length;
  std::array<SubLists::Handle, classifications> subLists;
};

// The lists and, in a second set, their sub-lists. Members are destroyed in reverse order, so
// `subLists` is destroyed before the base class: by then all lists must have been released.
class GroupedLists : public FlatSet<GroupedListNode> {
 public:
  GroupedListNode::SubLists subLists;
};

inline GroupedListNode* GroupedListNode::make(void* owner, Key key) {
  auto* const lists = static_cast<GroupedLists*>(static_cast<FlatSet<GroupedListNode>*>(owner));
  auto* const node = new (::operator new(sizeof(GroupedListNode) + key.size_bytes()))
      GroupedListNode{owner, 0, U32(key.size()), {}};
  std::memcpy(static_cast<void*>(node + 1), key.data(), key.size_bytes());
  for (Value* const value : key) ValuesInFlatSet::referenceAdd(*value);
  node->subListsAre(lists->subLists);
  return node;
}

// The peer: `Lists` is FlatSet<ExtListNode> (plain lists) or GroupedLists (with sub-lists).
template <class Lists>
class ExtListsInFlatSet {
 public:
  using Handle = typename Lists::Handle;
  using ValueHandle = ValuesInFlatSet::Handle;

  ValueHandle value(U64 content) { return values_.intern(content); }

  Handle intern(std::span<const ValueHandle> values) {
    const ExtListRoom room(values.size());
    const auto all = room.all();
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

  ValuesInFlatSet values_;
  Lists lists_;
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
