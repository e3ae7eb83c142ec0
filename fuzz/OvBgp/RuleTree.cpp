// Fuzz target for the rule tree of the extended community parser.
//
// The input is a random program: it creates, destroys and switches plugins, creates and destroys
// roots with and without a registry, and adds and removes rules directly. A model, which lists all
// rules of each tree, predicts which rule must build an object. After each step the target compares
// the parser's result for one value with the model, and at the end for every rule. Nothing may be
// left in memory afterwards.
#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "Kiv/Exception.h"
#include "OvBgp/Parse/ExtComm.h"
#include "fuzz/support/Program.h"

namespace {

using namespace Routing::Bgp;
using Fuzz::require;

constexpr U32 octetValues = 256;

// ---- Rules whose objects show which rule built them.

// The behaviour of a test rule: it builds objects with its number, or always returns null.
struct Maker {
  U32 number = 0;
  bool declines = false;
};

// A community that remembers the number of the rule that built it. The type record is defined by
// hand because KIV_OBJECT_DEFINE does not support templates.
template <class Value, class Content>
class Made final : public Value {
  KIV_OBJECT(Made)

 public:
  Made(const Content& content, U32 by) : Value(extCommClassificationEvpn, content), maker(by) {}
  const U32 maker;
};
template <class Value, class Content>
Kiv::Type& Made<Value, Content>::kivType() noexcept {
  static constinit Kiv::Type record{"Made"};
  return record;
}
template <class Value, class Content>
const Kiv::Type& Made<Value, Content>::fwkType() const noexcept {
  return kivType();
}

// A test rule; `Base` is the base of a type rule or of a leaf.
template <class Base, class Value, class Content>
class TestRule final : public Base {
  KIV_OBJECT(TestRule)

 public:
  template <class Key>
  TestRule(const BgpParseExtCommControl& control, Key key, Maker maker)
      : Base(control, key), maker_(maker) {}

  Kiv::Ptr<Value> inhale(const Content& content) const override {
    if (maker_.declines) return nullptr;
    return Kiv::Ptr<Value>(new Made<Value, Content>(content, maker_.number));
  }

 private:
  const Maker maker_;
};
template <class Base, class Value, class Content>
Kiv::Type& TestRule<Base, Value, Content>::kivType() noexcept {
  static constinit Kiv::Type record{"TestRule"};
  return record;
}
template <class Base, class Value, class Content>
const Kiv::Type& TestRule<Base, Value, Content>::fwkType() const noexcept {
  return kivType();
}

// A test leaf of one kind.
template <class Kind>
using Leaf =
    TestRule<typename Kind::SubtypeRuleBase, typename Kind::Object, typename Kind::Content>;
// A test type rule for 8-octet or 20-octet values.
template <class Value>
using TypeRule =
    TestRule<typename Value::TypeRuleBase, typename Value::Object, typename Value::Content>;

// ---- Kinds, selected by a number of the input.

// The width of a community in octets.
enum Width : U8 { eight, twenty };

// The facts about a kind that the model needs.
struct KindRow {
  Width width;
  U32 type;
  bool announced;
  bool (*isNamed)(U32 subtype);
};

template <class Kind>
constexpr Width widthOf =
    std::is_same_v<typename Kind::Object, ExtCommIp6> ? Width::twenty : Width::eight;

template <class... Kind>
constexpr auto kindRows(BgpParseKindList<Kind...>) {
  return std::to_array<KindRow>(
      {{widthOf<Kind>, Kiv::enumValue(Kind::pktType), Kind::announced,
        [](U32 subtype) { return bgpIsValidEnumMember(typename Kind::Subtype{subtype}); }}...});
}
constexpr auto kinds = kindRows(BgpParseTypeKinds{});

// Calls `visit` with the kind at `position` of BgpParseTypeKinds.
template <class Visit, class... Kind>
void visitKind(U32 position, const Visit& visit, BgpParseKindList<Kind...>) {
  U32 at = 0;
  ((at++ == position ? visit(Kind{}) : void()), ...);
}
template <class Visit>
void visitKind(U32 position, const Visit& visit) {
  visitKind(position, visit, BgpParseTypeKinds{});
}

// Returns the position of `Kind` in BgpParseTypeKinds.
template <class Kind>
U32 positionOf() {
  const auto* const row = std::ranges::find_if(kinds, [](const KindRow& one) {
    return one.width == widthOf<Kind> && one.type == Kiv::enumValue(Kind::pktType);
  });
  return static_cast<U32>(row - kinds.begin());
}

// ---- Plugins.

// A leaf to add: its kind by position, its subtype (256 is the marker) and its behaviour.
struct LeafSpec {
  U32 kind;
  U32 subtype;
  Maker maker;
};
// A type rule to add.
struct TypeSpec {
  Width width;
  U32 type;
  Maker maker;
};
// All rules that one plugin adds.
struct Spec {
  std::vector<LeafSpec> leaves;
  std::vector<TypeSpec> types;
};

// Adds the leaf to a type rule.
template <class Kind>
void hang(const typename Kind::Rule& rule, const LeafSpec& spec,
          const BgpParseExtCommControl& control) {
  rule.subTypeRuleIs(Kiv::Ptr<const typename Kind::SubtypeRuleBase>(
      new Leaf<Kind>(control, typename Kind::Subtype{spec.subtype}, spec.maker)));
}

// Adds the type rule to a root.
void hang(const BgpParseExtendedCommunityRule& root, const TypeSpec& spec,
          const BgpParseExtCommControl& control) {
  if (spec.width == eight) {
    root.typeRuleIs(BgpParseExtendedCommunityRule::TypeRulePtr(
        new TypeRule<BgpParseValue8>(control, BgpExtCommPktType{spec.type}, spec.maker)));
  } else {
    root.ip6TypeRuleIs(BgpParseExtendedCommunityRule::Ip6TypeRulePtr(
        new TypeRule<BgpParseValue20>(control, BgpExtCommIp6PktType{spec.type}, spec.maker)));
  }
}

// A plugin that adds the rules of its Spec, which the model reads as well.
class Plugin final : public BgpParseExtCommPluginBaseSm {
  KIV_OBJECT(Plugin)

 public:
  Plugin(const Kiv::Ptr<const BgpParseExtCommRuleCollections>& collections, Spec given)
      : BgpParseExtCommPluginBaseSm(collections), spec(std::move(given)) {}

  void instantiateExtendedCommunityTypeSubRule(
      const BgpParseExtendedCommunityRuleKey& key,
      const BgpParseExtCommControl& control) const override {
    for (const TypeSpec& type : spec.types) hang(*key.rule(), type, control);
  }

#define INSTANTIATE(Kind, instantiate)                                                           \
  void instantiate(const Kind::Key& key, const BgpParseExtCommControl& control) const override { \
    hangLeaves<Kind>(*key.rule(), control);                                                      \
  }
  INSTANTIATE(BgpParseKindTransTwoOctetAs, instantiateExtCommSubTypeTransTwoOctetAsSubRule)
  INSTANTIATE(BgpParseKindTransIpv4Address, instantiateExtCommSubTypeTransIpv4AddressSubRule)
  INSTANTIATE(BgpParseKindTransFourOctetAs, instantiateExtCommSubTypeTransFourOctetAsSubRule)
  INSTANTIATE(BgpParseKindTransOpaque, instantiateExtCommSubTypeTransOpaqueSubRule)
  INSTANTIATE(BgpParseKindTransGeneric, instantiateExtCommSubTypeTransGenericSubRule)
  INSTANTIATE(BgpParseKindTransGenericPart2, instantiateExtCommSubTypeTransGenericPart2SubRule)
  INSTANTIATE(BgpParseKindTransGenericPart3, instantiateExtCommSubTypeTransGenericPart3SubRule)
  INSTANTIATE(BgpParseKindNonTransTwoOctetAs, instantiateExtCommSubTypeNonTransTwoOctetAsSubRule)
  INSTANTIATE(BgpParseKindNonTransIpv4Address, instantiateExtCommSubTypeNonTransIpv4AddressSubRule)
  INSTANTIATE(BgpParseKindNonTransFourOctetAs, instantiateExtCommSubTypeNonTransFourOctetAsSubRule)
  INSTANTIATE(BgpParseKindNonTransOpaque, instantiateExtCommSubTypeNonTransOpaqueSubRule)
  INSTANTIATE(BgpParseKindIp6Trans, instantiateExtCommIp6SubTypeTransSubRule)
  INSTANTIATE(BgpParseKindIp6NonTrans, instantiateExtCommIp6SubTypeNonTransSubRule)
#undef INSTANTIATE

  const Spec spec;

 private:
  template <class Kind>
  void hangLeaves(const typename Kind::Rule& rule, const BgpParseExtCommControl& control) const {
    for (const LeafSpec& leaf : spec.leaves) {
      if (leaf.kind == positionOf<Kind>()) hang<Kind>(rule, leaf, control);
    }
  }
};
KIV_OBJECT_DEFINE(Plugin)

// ---- The model of a tree.

// A type rule of the model.
struct Node {
  std::optional<U32> kind;        // none: a TypeRule of this file
  Maker maker;                    // its behaviour, if kind is none
  std::map<U32, Maker> leaves{};  // by subtype
};

// A root and the rules that it must have.
struct Tree {
  BgpParseExtendedCommunityRule::Ptr root;
  bool announced = false;
  std::map<std::pair<Width, U32>, Node> nodes{};  // by type

  // Adds the leaves of a plugin. A leaf reaches the tree only if its kind is announced and the
  // kind's own type rule is still in the tree.
  void leavesAre(const Spec& spec) {
    for (const LeafSpec& leaf : spec.leaves) {
      const KindRow& row = kinds[leaf.kind];
      const auto node = nodes.find({row.width, row.type});
      if (!row.announced || node == nodes.end() || node->second.kind != leaf.kind) continue;
      node->second.leaves[leaf.subtype] = leaf.maker;
    }
  }
  // Adds the type rules of a plugin, which replace the rules of their types.
  void typesAre(const Spec& spec) {
    for (const TypeSpec& type : spec.types) {
      nodes[{type.width, type.type}] = Node{std::nullopt, type.maker};
    }
  }

  // Returns the number of the rule that must build the object; none if the object must be generic.
  std::optional<U32> makerOf(Width width, U8 type, U8 subtype) const {
    const bool isNamed = width == eight ? bgpIsValidEnumMember(BgpExtCommPktType{type})
                                        : bgpIsValidEnumMember(BgpExtCommIp6PktType{type});
    const auto node = nodes.find({width, type});
    if (!isNamed || node == nodes.end()) return std::nullopt;
    if (!node->second.kind) return numberOf(node->second.maker);
    const auto leaf = node->second.leaves.find(subtype);
    if (leaf == node->second.leaves.end() || !kinds[*node->second.kind].isNamed(subtype)) {
      return std::nullopt;
    }
    return numberOf(leaf->second);
  }
  // Returns the class of a generic object. The mask ignores the non-transitive bit.
  std::string_view genericClass(Width width, U8 type) const {
    const auto node = nodes.find({width, type});
    const bool isKind = node != nodes.end() && node->second.kind;
    if (width == twenty) return isKind ? "ExtCommIp6Subtyped" : "ExtCommIp6";
    if (!isKind) return "ExtComm";
    switch (type & 0xBF) {
      case 0:
      case 2:
        return "ExtCommAsNumber";
      case 1:
        return "ExtCommIpv4Address";
      default:
        return "ExtCommSubtyped";
    }
  }

 private:
  static std::optional<U32> numberOf(const Maker& maker) {
    return maker.declines ? std::nullopt : std::optional<U32>(maker.number);
  }
};

// Checks an object that the parser built against the model.
template <class Value, class Content>
void checkMade(const Tree& tree, Width width, U8 type, U8 subtype, const Kiv::Ptr<Value>& object,
               const Content& content) {
  require(object && object->getContent() == content, "an object of another value");
  require(object->references() == 1, "an object that somebody holds");
  const auto* const made = dynamic_cast<const Made<Value, Content>*>(object.ptr());
  const std::optional<U32> maker = tree.makerOf(width, type, subtype);
  require((made != nullptr) == maker.has_value(), "made by the wrong kind of rule");
  if (maker) {
    require(made->maker == *maker, "made by another rule");
  } else {
    Fuzz::requireSame(object->fwkType().name(), tree.genericClass(width, type), "generic class");
  }
}

// Parses a value of each width with these octets and checks the objects.
void check(const Tree& tree, U8 type, U8 subtype) {
  const ExtCommContent content(U64{type} << 56 | U64{subtype} << 48 | 0x0001'0203'0405);
  checkMade(tree, eight, type, subtype, tree.root->parseExtendedCommunity(content), content);
  const ExtCommIp6Content ip6(type, subtype, {}, 7);
  checkMade(tree, twenty, type, subtype, tree.root->parseExtendedCommunityIp6(ip6), ip6);
}

// ---- The program.

class Program {
 public:
  explicit Program(Fuzz::Input& input) : input_(input) {}

  void run() {
    for (U32 step = 0; step < stepsMax && !input_.atEnd(); ++step) {
      take();
      for (const Tree& tree : trees_) check(tree, type(), subtypeOctet());
    }
    for (const Tree& tree : trees_) checkAll(tree);
    // Destroy trees and plugins in either order.
    if (input_.flag()) trees_.clear();
    plugins_.clear();
  }

 private:
  static constexpr U32 stepsMax = 200;
  static constexpr U32 mostPlugins = 5;
  static constexpr U32 mostTrees = 3;

  // Executes one step of the program.
  void take() {
    switch (input_.below(10)) {
      case 0:
      case 1:
        return pluginIs();
      case 2:
        return pluginDel();
      case 3:
        return pluginTurns();
      case 4:
        return treeIs();
      case 5:
        return treeDel();
      case 6:
        return leafIs();
      case 7:
        return leafDel();
      case 8:
        return typeIs();
      default:
        return typeDel();
    }
  }

  // Returns a type octet, mostly one with a type rule.
  U8 type() {
    const U8 octet = input_.u8();
    return octet < 0xE0 ? static_cast<U8>(kinds[octet % kinds.size()].type) : input_.u8();
  }
  // Returns a subtype, mostly a low one, and sometimes the marker 256, under which a rule can be
  // stored but is never reached.
  U32 subtype() {
    const U8 octet = input_.u8();
    return octet == 0xFF ? octetValues : octet < 0xC0 ? octet % 16U : octet;
  }
  U8 subtypeOctet() { return static_cast<U8>(subtype()); }
  Maker maker() { return {++makers_, input_.below(4) == 0}; }
  LeafSpec leaf() { return {input_.below(kinds.size()), subtype(), maker()}; }
  TypeSpec typeSpec() { return {input_.below(4) == 0 ? twenty : eight, type(), maker()}; }
  BgpParseExtCommControl control() const { return BgpParseExtCommControl(collections_); }

  void pluginIs() {
    if (plugins_.size() == mostPlugins) return;
    Spec spec;
    for (U32 left = 1 + input_.below(4); left > 0; --left) spec.leaves.push_back(leaf());
    for (U32 left = input_.below(4); left > 2; --left) spec.types.push_back(typeSpec());
    plugins_.emplace_back(new Plugin(collections_, spec));
    startUp(*plugins_.back());
  }
  // Serves all announced roots. Type rules come first in the registry's order, so a leaf for a type
  // rule that the same plugin has just replaced must not appear in the tree.
  void startUp(const Plugin& plugin) {
    plugin.handleStartup();
    for (Tree& tree : trees_) {
      if (!tree.announced) continue;
      tree.typesAre(plugin.spec);
      tree.leavesAre(plugin.spec);
    }
  }
  void pluginDel() {
    if (!plugins_.empty()) plugins_.erase(plugins_.begin() + input_.below(mostPlugins) % size());
  }
  // Switches a plugin's notification, and sometimes lets it serve the nodes that it missed.
  void pluginTurns() {
    if (plugins_.empty()) return;
    Plugin& plugin = *plugins_[input_.below(mostPlugins) % plugins_.size()];
    plugin.hasNotificationActiveIs(!plugin.hasNotificationActive());
    if (input_.flag()) startUp(plugin);
  }
  std::ptrdiff_t size() const { return std::ssize(plugins_); }

  // Creates a root. Type rules are announced before the root, so plugins add leaves first.
  void treeIs() {
    if (trees_.size() == mostTrees) return;
    const bool announced = input_.below(4) != 0;
    Tree tree{
        bgpParseExtendedCommunityRuleFactory(announced ? control() : BgpParseExtCommControl()),
        announced};
    for (U32 kind = 0; kind < kinds.size(); ++kind) {
      tree.nodes[{kinds[kind].width, kinds[kind].type}] = Node{kind, {}};
    }
    hear(tree, &Tree::leavesAre);
    hear(tree, &Tree::typesAre);
    trees_.push_back(std::move(tree));
  }
  // Updates the model by what plugins with notification on add to a new tree.
  void hear(Tree& tree, void (Tree::*how)(const Spec&)) const {
    for (const Plugin::Ptr& plugin : plugins_) {
      if (tree.announced && plugin->hasNotificationActive()) (tree.*how)(plugin->spec);
    }
  }
  void treeDel() {
    if (!trees_.empty())
      trees_.erase(trees_.begin() + input_.below(mostTrees) % std::ssize(trees_));
  }
  Tree* someTree() {
    return trees_.empty() ? nullptr : &trees_[input_.below(mostTrees) % trees_.size()];
  }

  // Calls `visit(kind, rule, node)` for the type rule of a kind in one of the trees, unless the
  // rule has been removed or replaced.
  template <class Visit>
  void withRule(U32 position, const Visit& visit) {
    Tree* const tree = someTree();
    if (tree == nullptr) return;
    const auto found = tree->nodes.find({kinds[position].width, kinds[position].type});
    if (found == tree->nodes.end() || found->second.kind != position) return;
    Node& node = found->second;
    visitKind(position, [&](auto kind) {
      using Kind = decltype(kind);
      const auto rule = typeRuleOf<Kind>(*tree->root);
      require(static_cast<bool>(rule), "a type rule that is not there");
      visit(kind, static_cast<const typename Kind::Rule&>(*rule), node);
    });
  }
  template <class Kind>
  static auto typeRuleOf(const BgpParseExtendedCommunityRule& root) {
    if constexpr (widthOf<Kind> == eight) {
      return root.typeRule(Kind::pktType);
    } else {
      return root.ip6TypeRule(Kind::pktType);
    }
  }

  void leafIs() {
    const LeafSpec spec = leaf();
    withRule(spec.kind, [&](auto kind, const auto& rule, Node& node) {
      hang<decltype(kind)>(rule, spec, BgpParseExtCommControl());
      node.leaves[spec.subtype] = spec.maker;
      requireRefused<decltype(kind)>(rule, LeafSpec{spec.kind, octetValues + 1, spec.maker});
    });
  }
  // Requires that a subtype above the marker is refused.
  template <class Kind>
  static void requireRefused(const typename Kind::Rule& rule, const LeafSpec& spec) {
    try {
      hang<Kind>(rule, spec, BgpParseExtCommControl());
      require(false, "a rule for no subtype");
    } catch (const Kiv::RangeException&) {
    }
  }
  void leafDel() {
    const bool all = input_.below(8) == 0;
    const U32 at = subtype();
    withRule(input_.below(kinds.size()), [&](auto kind, const auto& rule, Node& node) {
      const typename decltype(kind)::Subtype key{at};
      require(static_cast<bool>(rule.subTypeRule(key)) == node.leaves.contains(at), "a leaf");
      if (all) {
        rule.subTypeRuleDelAll();
        node.leaves.clear();
      } else {
        require(rule.subTypeRuleDel(key) == (node.leaves.erase(at) == 1), "a deletion");
      }
    });
  }

  void typeIs() {
    const TypeSpec spec = typeSpec();
    if (Tree* const tree = someTree()) {
      hang(*tree->root, spec, BgpParseExtCommControl());
      tree->nodes[{spec.width, spec.type}] = Node{std::nullopt, spec.maker};
    }
  }
  void typeDel() {
    const Width width = input_.below(4) == 0 ? twenty : eight;
    const U8 at = type();
    Tree* const tree = someTree();
    if (tree == nullptr) return;
    const auto& root = *tree->root;
    const bool deleted = width == eight ? root.typeRuleDel(BgpExtCommPktType{at})
                                        : root.ip6TypeRuleDel(BgpExtCommIp6PktType{at});
    require(deleted == (tree->nodes.erase({width, at}) == 1), "a deletion of a type");
  }

  // Checks the value of every rule, the next subtype and a subtype without a name.
  static void checkAll(const Tree& tree) {
    for (const auto& [key, node] : tree.nodes) {
      const U8 octet = static_cast<U8>(key.second);
      check(tree, octet, 0xEE);
      for (const auto& [at, maker] : node.leaves) {
        check(tree, octet, static_cast<U8>(at));
        check(tree, octet, static_cast<U8>(at + 1));
      }
    }
  }

  Fuzz::Input& input_;
  const Kiv::Ptr<const BgpParseExtCommRuleCollections> collections_ =
      bgpParseExtCommRuleCollectionsFactory();
  std::vector<Plugin::Ptr> plugins_;  // in the order of creation
  std::vector<Tree> trees_;
  U32 makers_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  return Fuzz::leavingNothing(data, size, [](Fuzz::Input& input) { Program(input).run(); });
}
