#include "tools/bgp-communities/output/Figures.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

#include "Kiv/Type.h"
#include "tools/bgp-communities/output/ListTexts.h"

namespace CommTool {

namespace {

using namespace Routing::Bgp;

// Lists of standard and large communities contain their values; lists of extended ones reference
// objects.
template <class List>
concept Flat = requires(const List& list) {
  list.commVectorRawPtr();
};

// The size of an object. All objects of a class have the same size, which the allocator's record of
// the type tells.
U64 objectBytes(const Kiv::PtrInterface& object) {
  const Kiv::Type& type = object.fwkType();
  return type.bytes() / type.objects();
}

// The members of a list of any kind.
const auto& commsOf(const auto& list) {
  if constexpr (Flat<std::decay_t<decltype(list)>>) {
    return *list.commVectorRawPtr();
  } else {
    return list.commVector();
  }
}

// Adds one object to the statistics. `references` are those from interned objects, `occurrences`
// those in routes.
void add(ObjectFigures& figures, U64 references, U64 occurrences, U64 bytes) {
  ++figures.unique;
  figures.references += references;
  figures.occurrences += occurrences;
  figures.bytes += bytes;
  figures.bytesUnshared += occurrences * bytes;
}

// How often a value or sub-list is used: by how many different lists, and by how many routes.
struct Uses {
  U64 references = 0;
  U64 occurrences = 0;
};

template <class Object>
using UsesOf = std::unordered_map<const Object*, Uses>;

// Adds all interned objects of a class.
template <class Object>
void addShared(ObjectFigures& figures, const UsesOf<Object>& uses, const auto& bytesOf) {
  for (const auto& [object, use] : uses) {
    add(figures, use.references, use.occurrences, bytesOf(*object));
  }
}

// The number of different values. For values without an identity, which can only be compared.
template <class Value>
U64 distinct(std::vector<Value>& values) {
  std::sort(values.begin(), values.end());
  return static_cast<U64>(std::unique(values.begin(), values.end()) - values.begin());
}

// The order of lists that the same number of routes have, so that the output is the same in each
// run. Extended communities are compared by content, as their addresses differ in each run.
bool comesFirst(const auto& list, const auto& other) {
  const auto& one = commsOf(list);
  const auto& two = commsOf(other);
  return std::lexicographical_compare(one.begin(), one.end(), two.begin(), two.end(),
                                      [](const auto& a, const auto& b) {
                                        if constexpr (requires { a->getContent(); }) {
                                          return a->getContent() < b->getContent();
                                        } else {
                                          return a < b;
                                        }
                                      });
}

// Collects how many routes have each list of a kind, and computes the statistics of the kind.
template <class List>
class KindCount {
 public:
  // Counts one route that has `list`, which must stay alive.
  void addRoute(const List& list) { ++holders_[&list]; }

  // Computes the statistics of all lists counted so far.
  KindFigures figures() const {
    KindFigures figures;
    for (const auto& [list, routes] : holders_) {
      add(figures.lists, routes, routes, listBytes(*list));
      ++figures.lengths[lengthClassOf(commsOf(*list).size())];
    }
    if constexpr (Flat<List>) {
      addFlatValues(figures.values);
    } else {
      addExtended(figures);
    }
    return figures;
  }

  // Appends the `count` most used lists of this kind. Only these are formatted and sorted.
  void addTop(std::size_t count, CommunityKind kind, std::vector<ListUse>& to) const {
    using Use = std::pair<const List*, U64>;
    std::vector<Use> uses(std::min(count, holders_.size()));
    std::partial_sort_copy(holders_.begin(), holders_.end(), uses.begin(), uses.end(),
                           [](const Use& a, const Use& b) {
                             if (a.second != b.second) return a.second > b.second;
                             return comesFirst(*a.first, *b.first);
                           });
    for (const auto& [list, routes] : uses) to.push_back({kind, listText(*list), routes});
  }

 private:
  // The list with its arrays of members and of sub-lists.
  static U64 listBytes(const List& list) {
    U64 bytes = objectBytes(list) + commsOf(list).storageBytes();
    if constexpr (!Flat<List>) bytes += list.classificationListVector().storageBytes();
    return bytes;
  }

  // A value within its list has no identity, so all values are collected and sorted.
  void addFlatValues(ObjectFigures& figures) const requires Flat<List> {
    std::vector<std::decay_t<decltype(*commsOf(std::declval<const List&>()).data())>> values;
    for (const auto& [list, routes] : holders_) {
      values.insert(values.end(), commsOf(*list).begin(), commsOf(*list).end());
      figures.occurrences += routes * list->comms();
    }
    figures.references = values.size();
    figures.unique = distinct(values);
  }

  // Values and sub-lists are interned objects, so each is counted by its address.
  void addExtended(KindFigures& figures) const requires(!Flat<List>) {
    using Value = std::decay_t<decltype(*commsOf(std::declval<const List&>())[0])>;
    using SubList =
        std::decay_t<decltype(*std::declval<const List&>().classificationListVector()[0])>;
    UsesOf<Value> values;
    UsesOf<SubList> subLists;
    for (const auto& [list, routes] : holders_) {
      for (const auto& value : commsOf(*list)) use(values[value.ptr()], routes);
      for (const auto& subList : list->classificationListVector()) {
        if (subList) use(subLists[subList.ptr()], routes);
      }
    }
    addShared(figures.values, values, [](const Value& value) { return objectBytes(value); });
    addShared(figures.subLists, subLists, [](const SubList& subList) {
      return objectBytes(subList) + subList.commVector().storageBytes();
    });
  }

  // Counts one list that has the object, and the routes of that list.
  static void use(Uses& uses, U64 routes) {
    ++uses.references;
    uses.occurrences += routes;
  }

  std::unordered_map<const List*, U64> holders_;
};

using KindCounts = std::tuple<KindCount<CommList>, KindCount<LargeCommList>, KindCount<ExtCommList>,
                              KindCount<ExtCommIp6List>>;

// Merges the most used lists of all kinds. The sort is stable, so lists with the same number of
// routes stay in the order of the kinds.
std::vector<ListUse> topOf(const KindCounts& counts, std::size_t count) {
  std::vector<ListUse> top;
  std::apply(
      [&](const auto&... kindCounts) {
        std::size_t kind = 0;
        (kindCounts.addTop(count, static_cast<CommunityKind>(kind++), top), ...);
      },
      counts);
  std::ranges::stable_sort(top, std::greater<>(), &ListUse::references);
  top.resize(std::min(top.size(), count));
  return top;
}

}  // namespace

U64 HeldFigures::bytesUnshared() const {
  U64 unshared = 0;
  for (const KindFigures& kind : kinds) unshared += kind.bytesUnshared();
  return unshared;
}

// One pass over the routes counts the users of each list. All other statistics are derived from the
// lists, which are far fewer than the routes.
HeldFigures figuresOf(const HeldRoutes& routes, std::size_t top) {
  KindCounts counts;
  for (const auto& [key, communities] : routes.routes()) {
    communities.forEachList([&counts](CommunityKind, const auto& list) {
      std::get<KindCount<std::decay_t<decltype(list)>>>(counts).addRoute(list);
    });
  }
  HeldFigures figures;
  figures.routes = routes.routes().size();
  figures.kinds = std::apply(
      [](const auto&... count) {
        return std::array<KindFigures, communityKinds>{count.figures()...};
      },
      counts);
  figures.bytes = routes.tables().bytes();
  figures.top = topOf(counts, top);
  return figures;
}

}  // namespace CommTool
