#include "Routing/RouteMap/Private/RegexCost.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Routing::RouteMap {
namespace {

// How the C library compiles an expression, as far as the cost depends on it. It copies repeated
// parts: a{100} has 100 copies of a. It makes one node of an automaton for each character, border,
// alternative and repetition. Then it computes for each node its closure, the set of all nodes that
// can be reached from the node without consuming text. Three causes make the cost explode, and the
// C library limits none of them:
//
// - Copies of copies: ((a{255}){255}){255}. They are counted before any is made.
// - Closures: the sets of parts that may be empty grow with the square of the number of copies.
//   In a loop that can repeat without consuming text, as (a*|b*)*, the closures within the loop
//   depend on each other. Then the same closures are computed again for each node of the loop,
//   along each way through it.
// - Borders (^ $ \b and the like): a node behind a border may be passed only where the border is.
//   The C library therefore copies, for each border, all nodes in the border's closure. Copied
//   borders have closures as well.
//
// No formula gives the size of closures for every expression, so this file computes them as the C
// library does, counts, and stops when a bound is exceeded.

constexpr U64 octetsOfTreeNode = 64;
constexpr U64 octetsOfNode = 160;
constexpr U64 octetsOfClosure = 32;  // of an empty set, with the allocator's own
constexpr U64 octetsOfMember = 4;
constexpr U64 workOfTreeNode = 5;
constexpr U64 workOfNode = 20;
constexpr U64 workOfClosure = 30;
constexpr unsigned depthMax = 2'048;  // of recursion; 128 octets of stack each in the C library

// Adds up costs, and refuses the expression when a bound is exceeded.
class Meter {
 public:
  void addNode() {
    ++cost_.nodes;
    addOctets(octetsOfNode);
    addWork(workOfNode);
  }
  void addOctets(U64 octets) {
    inUse_ += octets;
    cost_.octets = std::max(cost_.octets, inUse_);
    if (inUse_ > regexOctetsMax) throw RegexRefusal("too complex");
  }
  void dropOctets(U64 octets) { inUse_ -= octets; }
  void addWork(U64 work) {
    cost_.work += work;
    if (cost_.work > regexWorkMax) throw RegexRefusal("too complex");
  }
  const RegexCost& cost() const { return cost_; }

 private:
  RegexCost cost_;
  U64 inUse_ = 0;
};

// ---- Counting without copies

constexpr U64 treeNodesMax = regexOctetsMax / octetsOfTreeNode;

U64 copiesOf(const RegexPiece& repetition) {
  const U64 copies =
      repetition.most == unlimited ? U64{repetition.least} + 1 : U64{repetition.most};
  return std::max<U64>(copies, 1);  // {0} makes a copy and discards it
}

// The nodes of the C library's syntax tree, in which repeated parts are copied. The products fit 64
// bits, because both factors are bounded.
U64 treeNodesOf(const RegexPiece& piece) {
  U64 nodes = 1;
  for (const RegexPiece& child : piece.children) nodes += treeNodesOf(child) + 1;
  if (piece.kind == RegexPiece::repetition) nodes *= copiesOf(piece);
  if (nodes > treeNodesMax) throw RegexRefusal("too complex");
  return nodes;
}

// ---- The automaton

// A node. Only the ways that consume no text matter here, so that a character has none.
struct Node {
  U8 ways = 0;
  U8 constraint = 0;
  bool isCopy = false;  // of another node, made for a border or by a repetition
  U32 original = 0;     // of a copy made for a border: the other node
  U32 to[2] = {0, 0};   // ascending
};

constexpr U32 noNode = ~U32{0};

// Consecutive nodes of one piece, while those behind them do not exist yet.
struct Fragment {
  U32 first = noNode;          // none: the piece is nothing
  std::vector<U32> ends = {};  // ways that lead to what follows: 2 * node + number of the way
};

// Makes the nodes of an expression, in the same order as the C library, because the order decides
// which closure is computed first.
class Builder {
 public:
  Builder(std::vector<Node>& nodes, Meter& meter) : nodes_(nodes), meter_(meter) {}

  void build(const RegexPiece& expression) {
    const Fragment all = make(expression);
    link(all, add(0));
    for (Node& node : nodes_) sortWays(node);
  }

 private:
  U32 add(U8 ways) {
    meter_.addNode();
    nodes_.push_back({.ways = ways, .isCopy = isCopy_});
    return static_cast<U32>(nodes_.size() - 1);
  }

  void link(const Fragment& fragment, U32 target) {
    for (const U32 end : fragment.ends) nodes_[end / 2].to[end % 2] = target;
  }

  static void sortWays(Node& node) {
    if (node.ways != 2) return;
    if (node.to[0] == node.to[1]) node.ways = 1;
    if (node.to[0] > node.to[1]) std::swap(node.to[0], node.to[1]);
  }

  Fragment make(const RegexPiece& piece) {
    switch (piece.kind) {
      case RegexPiece::nothing:
        return {};
      case RegexPiece::character:
        return {add(0)};
      case RegexPiece::border:
        return makeBorder(piece.constraint);
      case RegexPiece::group:
        return group(piece);
      case RegexPiece::sequence:
        return fold(piece, &Builder::inSequence);
      case RegexPiece::choice:
        return fold(piece, &Builder::inChoice);
      default:
        return repeat(piece);
    }
  }

  Fragment makeBorder(U8 constraint) {
    const U32 node = add(1);
    nodes_[node].constraint = constraint;
    return {node, {2 * node}};
  }

  // A group needs no node, because sub-matches are not wanted. Only an empty group has two. They
  // are made after all copying, so they are no copies.
  Fragment group(const RegexPiece& piece) {
    Fragment content = make(piece.children.front());
    if (content.first != noNode) return content;
    const bool wasCopy = std::exchange(isCopy_, false);
    Fragment empty = inSequence(makeBorder(0), makeBorder(0));
    isCopy_ = wasCopy;
    return empty;
  }

  template <class Join>
  Fragment fold(const RegexPiece& piece, Join join) {
    Fragment all = make(piece.children.front());
    for (std::size_t i = 1; i < piece.children.size(); ++i) {
      all = (this->*join)(std::move(all), make(piece.children[i]));
    }
    return all;
  }

  Fragment inSequence(Fragment one, Fragment next) {
    if (one.first == noNode) return next;
    if (next.first == noNode) return one;
    link(one, next.first);
    return {one.first, std::move(next.ends)};
  }

  // A side that is nothing leads directly to what follows.
  Fragment inChoice(Fragment one, Fragment other) {
    const U32 node = add(2);
    Fragment made{node, std::move(one.ends)};
    made.ends.insert(made.ends.end(), other.ends.begin(), other.ends.end());
    addWay(made, 0, one.first);
    addWay(made, 1, other.first);
    return made;
  }
  void addWay(Fragment& from, U32 way, U32 target) {
    nodes_[from.first].to[way] = target;
    if (target == noNode) from.ends.push_back(2 * from.first + way);
  }

  Fragment orNothing(Fragment body) {
    return body.first == noNode ? body : inChoice(std::move(body), {});
  }

  Fragment inLoop(Fragment body) {
    if (body.first == noNode) return body;
    const U32 node = add(2);
    link(body, node);
    nodes_[node].to[0] = body.first;
    return {node, {2 * node + 1}};
  }

  // x{2,4} is made as xx((x)?x)?, and x{2,} as xxx*. All x but the first are copies.
  Fragment repeat(const RegexPiece& piece) {
    Fragment required;
    U32 made = 0;
    for (; made < piece.least; ++made) {
      required = inSequence(std::move(required), body(piece, made));
    }
    if (piece.most == unlimited) return inSequence(std::move(required), inLoop(body(piece, made)));
    Fragment optional;
    for (; made < piece.most; ++made) {
      optional = orNothing(inSequence(std::move(optional), body(piece, made)));
    }
    return inSequence(std::move(required), std::move(optional));
  }
  Fragment body(const RegexPiece& repetition, U32 copy) {
    const bool wasCopy = std::exchange(isCopy_, isCopy_ || copy > 0);
    Fragment made = make(repetition.children.front());
    isCopy_ = wasCopy;
    return made;
  }

  bool isCopy_ = false;
  std::vector<Node>& nodes_;
  Meter& meter_;
};

// ---- The closures

// The nodes that can be reached from a node, ascending. The room is that of the C library's set.
struct Closure {
  enum State : U8 { unknown, inProgress, known };

  State state = unknown;
  U64 room = 0;
  std::vector<U32> members = {};

  U64 octets() const { return octetsOfClosure + room * octetsOfMember; }
};

class Closures {
 public:
  Closures(std::vector<Node>& nodes, Meter& meter) : nodes_(nodes), meter_(meter) {}

  // A closure that was computed within a loop is incomplete and therefore discarded, unless it is
  // the closure that was wanted.
  void computeAll() {
    closures_.resize(nodes_.size());
    for (U32 node = 0; node < nodes_.size(); ++node) {
      if (closures_[node].state == Closure::unknown) compute(node, true, 1);
    }
  }

 private:
  struct Result {
    Closure closure;  // unless it is kept in closures_
    bool isComplete = true;
  };

  Result compute(U32 node, bool isWanted, unsigned depth) {
    if (depth > depthMax) throw RegexRefusal("too complex");
    meter_.addWork(workOfClosure);
    closures_[node].state = Closure::inProgress;
    copyBehindBorder(node, depth);
    Result result{{.room = nodes_[node].ways + U64{1}, .members = {node}}};
    meter_.addOctets(result.closure.octets());
    for (U8 way = 0; way < nodes_[node].ways; ++way) {
      addWay(result, nodes_[node].to[way], depth);
    }
    return keepIfComplete(node, std::move(result), isWanted);
  }

  void addWay(Result& result, U32 target, unsigned depth) {
    if (closures_[target].state == Closure::inProgress) {
      result.isComplete = false;
      return;
    }
    if (closures_[target].state == Closure::known) {
      return merge(result.closure, closures_[target].members);
    }
    const Result behind = compute(target, false, depth + 1);
    if (behind.isComplete) return merge(result.closure, closures_[target].members);
    merge(result.closure, behind.closure.members);
    meter_.dropOctets(behind.closure.octets());
    result.isComplete = false;
  }

  Result keepIfComplete(U32 node, Result result, bool isWanted) {
    if (!result.isComplete && !isWanted) {
      closures_[node].state = Closure::unknown;
      return result;
    }
    result.closure.state = Closure::known;
    closures_[node] = std::move(result.closure);
    return {};
  }

  void merge(Closure& into, const std::vector<U32>& from) {
    meter_.addWork(into.members.size() + from.size());
    meter_.dropOctets(into.octets());
    if (into.room < 2 * from.size() + into.members.size()) {
      into.room = 2 * (from.size() + into.room);
    }
    meter_.addOctets(into.octets());
    std::vector<U32> all;
    all.reserve(into.members.size() + from.size());
    std::set_union(into.members.begin(), into.members.end(), from.begin(), from.end(),
                   std::back_inserter(all));
    into.members = std::move(all);
  }

  // Copies all nodes that can be reached from a border, so that the copies have its constraint.
  void copyBehindBorder(U32 node, unsigned depth) {
    const Node& border = nodes_[node];
    if (border.constraint == 0 || border.ways == 0 || nodes_[border.to[0]].isCopy) return;
    copyWays(node, node, node, border.constraint, depth);
  }

  // Gives `copy` the ways of `original`, with copies of the targets. A loop that leads back to the
  // border itself ends there.
  void copyWays(U32 original, U32 copy, U32 border, U8 constraint, unsigned depth) {
    if (depth > depthMax) throw RegexRefusal("too complex");
    while (nodes_[original].ways != 0) {
      const Node from = nodes_[original];
      nodes_[copy].ways = 0;
      if (from.ways == 1 && original == border && copy != original) {
        return addTarget(copy, from.to[0]);
      }
      if (from.ways == 1) constraint = static_cast<U8>(constraint | from.constraint);
      if (from.ways == 2) copyFirstWay(from.to[0], copy, border, constraint, depth);
      original = from.to[from.ways - 1];
      const U32 target = addCopy(original, constraint);
      addTarget(copy, target);
      copy = target;
    }
  }

  // The first of two ways leads to an earlier copy if one has the same constraint.
  void copyFirstWay(U32 original, U32 copy, U32 border, U8 constraint, unsigned depth) {
    const U32 earlier = earlierCopy(original, constraint);
    if (earlier != noNode) return addTarget(copy, earlier);
    const U32 target = addCopy(original, constraint);
    addTarget(copy, target);
    copyWays(original, target, border, constraint, depth + 1);
  }

  U32 earlierCopy(U32 original, U8 constraint) {
    for (std::size_t i = nodes_.size() - 1; nodes_[i].isCopy && i > 0; --i) {
      meter_.addWork(1);
      if (nodes_[i].original == original && nodes_[i].constraint == constraint) {
        return static_cast<U32>(i);
      }
    }
    return noNode;
  }

  U32 addCopy(U32 original, U8 constraint) {
    meter_.addNode();
    Node copy = nodes_[original];
    copy.constraint = static_cast<U8>(copy.constraint | constraint);
    copy.isCopy = true;
    copy.original = original;
    copy.ways = 0;
    nodes_.push_back(copy);
    closures_.emplace_back();
    return static_cast<U32>(nodes_.size() - 1);
  }

  void addTarget(U32 node, U32 target) {
    Node& from = nodes_[node];
    from.to[from.ways++] = target;
    if (from.ways == 2 && from.to[0] > target) std::swap(from.to[0], from.to[1]);
  }

  std::vector<Node>& nodes_;
  Meter& meter_;
  std::vector<Closure> closures_;
};

}  // namespace

RegexCost regexCostOf(const RegexPiece& expression) {
  Meter meter;
  const U64 treeNodes = treeNodesOf(expression);
  meter.addOctets(treeNodes * octetsOfTreeNode);
  meter.addWork(treeNodes * workOfTreeNode);
  std::vector<Node> nodes;
  Builder(nodes, meter).build(expression);
  Closures(nodes, meter).computeAll();
  return meter.cost();
}

}  // namespace Routing::RouteMap
