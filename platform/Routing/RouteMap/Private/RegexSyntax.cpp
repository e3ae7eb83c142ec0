#include "Routing/RouteMap/Private/RegexSyntax.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <utility>

namespace Routing::RouteMap {
namespace {

constexpr unsigned nestingMax = 100;  // open groups; this reader and the C library's recurse
constexpr unsigned treeDepthMax = 400;
constexpr U32 timesMax = 32'768;  // above the C library's own limit of a repetition count

// What a border demands of the text around it. Each border is a set of these conditions.
enum Condition : U8 {
  afterWord = 1,
  afterOther = 2,
  beforeWord = 4,
  beforeOther = 8,
  atLineStart = 16,
  atLineEnd = 32,
  atTextStart = 64,
  atTextEnd = 128,
};

RegexPiece leaf(RegexPiece::Kind kind) { return {.kind = kind}; }
RegexPiece border(int conditions) {
  return {.kind = RegexPiece::border, .constraint = static_cast<U8>(conditions)};
}

RegexPiece over(RegexPiece piece, std::vector<RegexPiece> children) {
  U16 depth = 0;
  for (const RegexPiece& child : children) depth = std::max(depth, child.depth);
  if (depth >= treeDepthMax) throw RegexRefusal("too complex");
  piece.depth = static_cast<U16>(depth + 1);
  piece.children = std::move(children);
  return piece;
}

RegexPiece over(RegexPiece piece, RegexPiece child) {
  std::vector<RegexPiece> children;
  children.push_back(std::move(child));
  return over(std::move(piece), std::move(children));
}

// A single child needs no piece around it.
RegexPiece joined(RegexPiece::Kind kind, std::vector<RegexPiece> children) {
  if (children.empty()) return {};
  if (children.size() == 1) return std::move(children.front());
  return over({.kind = kind}, std::move(children));
}

RegexPiece repeated(RegexPiece piece, U32 least, U32 most) {
  return over({.kind = RegexPiece::repetition, .least = least, .most = most}, std::move(piece));
}

RegexPiece either(RegexPiece one, RegexPiece other) {
  std::vector<RegexPiece> children;
  children.push_back(std::move(one));
  children.push_back(std::move(other));
  return joined(RegexPiece::choice, std::move(children));
}

// A set of characters. In a locale of multi-octet characters the C library makes two nodes of it,
// one for the characters of one octet and one for the others.
RegexPiece characterSet() {
  if (MB_CUR_MAX == 1) return leaf(RegexPiece::character);
  return either(leaf(RegexPiece::character), leaf(RegexPiece::character));
}

// Reads the expression from left to right. Each function returns with at_ behind what it read.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  // Reads alternatives up to the end of the group. Outside groups, a closing parenthesis is a
  // character.
  RegexPiece choice() {
    std::vector<RegexPiece> branches;
    branches.push_back(sequence());
    while (!atEnd() && text_[at_] == '|') {
      ++at_;
      branches.push_back(sequence());
    }
    return joined(RegexPiece::choice, std::move(branches));
  }

 private:
  bool atEnd() const { return at_ >= text_.size(); }

  RegexPiece sequence() {
    std::vector<RegexPiece> elements;
    while (!atEnd() && text_[at_] != '|' && !(text_[at_] == ')' && nesting_ > 0)) {
      elements.push_back(repetitions(single()));
    }
    return joined(RegexPiece::sequence, std::move(elements));
  }

  RegexPiece single() {
    const char c = text_[at_++];
    switch (c) {
      case '\\':
        return escaped();
      case '^':
        return border(atLineStart);
      case '$':
        return border(atLineEnd);
      case '[':
        skipBracket();
        return characterSet();
      case '(':
        return group();
      default:
        return characterFrom(c);
    }
  }

  // The octets of one UTF-8 character are one element, which a repetition repeats as a whole.
  RegexPiece characterFrom(char first) {
    std::vector<RegexPiece> octets{leaf(RegexPiece::character)};
    const auto isOneMore = [this] { return !atEnd() && (text_[at_] & 0xC0) == 0x80; };
    for (; (first & 0xC0) == 0xC0 && isOneMore(); ++at_) {
      octets.push_back(leaf(RegexPiece::character));
    }
    return joined(RegexPiece::sequence, std::move(octets));
  }

  // The octet behind a backslash. All but the back-references are extensions of the C library:
  // borders of words and of the text, and sets of characters.
  RegexPiece escaped() {
    if (atEnd()) return leaf(RegexPiece::character);
    const char c = text_[at_++];
    if (c >= '1' && c <= '9') throw RegexRefusal("back-reference");
    switch (c) {
      case 'b':
        return either(border(afterOther | beforeWord), border(afterWord | beforeOther));
      case 'B':
        return either(border(afterWord | beforeWord), border(afterOther | beforeOther));
      case '<':
        return border(afterOther | beforeWord);
      case '>':
        return border(afterWord | beforeOther);
      case '`':
        return border(atTextStart);
      case '\'':
        return border(atTextEnd);
      case 'w':
      case 'W':
      case 's':
      case 'S':
        return characterSet();
      default:
        return characterFrom(c);
    }
  }

  RegexPiece group() {
    if (++nesting_ > nestingMax) throw RegexRefusal("too complex");
    RegexPiece content = choice();
    --nesting_;
    if (!atEnd()) ++at_;
    return over(leaf(RegexPiece::group), std::move(content));
  }

  // Applies the repetitions that follow `piece`.
  RegexPiece repetitions(RegexPiece piece) {
    while (!atEnd()) {
      switch (text_[at_]) {
        case '*':
          piece = repeated(std::move(piece), 0, unlimited);
          break;
        case '+':
          piece = repeated(std::move(piece), 1, unlimited);
          break;
        case '?':
          piece = repeated(std::move(piece), 0, 1);
          break;
        case '{':
          piece = interval(std::move(piece));
          break;
        default:
          return piece;
      }
      ++at_;
    }
    return piece;
  }

  // An interval: {m}, {m,}, {m,n} and, as an extension of the C library, {,n}. Returns with at_ at
  // the closing brace. Anything else between the braces is malformed and read somehow.
  RegexPiece interval(RegexPiece piece) {
    ++at_;
    const U32 least = number();
    if (atEnd() || text_[at_] != ',') {
      skipTo('}');
      return repeated(std::move(piece), least, least);
    }
    ++at_;
    const bool hasMost = !atEnd() && text_[at_] != '}';
    const U32 most = hasMost ? number() : unlimited;
    skipTo('}');
    return repeated(std::move(piece), least, std::max(least, most));
  }

  // A decimal number, limited to timesMax; 0 if there is no digit.
  U32 number() {
    U32 value = 0;
    for (; !atEnd() && text_[at_] >= '0' && text_[at_] <= '9'; ++at_) {
      value = std::min(value * 10 + static_cast<U32>(text_[at_] - '0'), timesMax);
    }
    return value;
  }

  void skipTo(char closing) { at_ = std::min(text_.find(closing, at_), text_.size()); }

  // Skips the rest of a bracket expression. A ']' directly behind '[' or '[^', or inside [: :],
  // [. .] or [= =], does not close it (IEEE Std 1003.1, section 9.3.5).
  void skipBracket() {
    if (!atEnd() && text_[at_] == '^') ++at_;
    if (!atEnd() && text_[at_] == ']') ++at_;
    while (!atEnd() && text_[at_] != ']') skipBracketElement();
    if (!atEnd()) ++at_;
  }

  // Skips [:class:] and the like, or one octet.
  void skipBracketElement() {
    const char kind = text_[at_] == '[' && at_ + 1 < text_.size() ? text_[at_ + 1] : '\0';
    if (kind == ':' || kind == '.' || kind == '=') {
      const char closing[] = {kind, ']'};
      const std::size_t end = text_.find(std::string_view(closing, 2), at_ + 2);
      if (end != text_.npos) at_ = end + 1;
    }
    ++at_;
  }

  const std::string_view text_;
  std::size_t at_ = 0;
  unsigned nesting_ = 0;
};

}  // namespace

RegexPiece regexPieceOf(std::string_view expression) { return Reader(expression).choice(); }

}  // namespace Routing::RouteMap
