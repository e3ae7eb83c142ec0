// The structure of a POSIX extended regular expression. Private to the library.
#ifndef ROUTING_ROUTEMAP_PRIVATE_REGEXSYNTAX_H
#define ROUTING_ROUTEMAP_PRIVATE_REGEXSYNTAX_H

#include <limits>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "Kiv/Types.h"

namespace Routing::RouteMap {

// A repetition without a maximum, as in a* and a{2,}.
constexpr U32 unlimited = std::numeric_limits<U32>::max();

// A node of the syntax tree: a part of the expression, with the parts that it consists of.
struct RegexPiece {
  enum Kind : U8 { nothing, character, border, group, sequence, choice, repetition };

  Kind kind = nothing;
  U8 constraint = 0;  // of a border: one bit for each condition on the text around it
  U16 depth = 1;      // levels of this tree
  U32 least = 0;      // of a repetition
  U32 most = 0;       // of a repetition; may be `unlimited`
  std::vector<RegexPiece> children = {};
};

// Why an expression is refused before the C library reads it; what() is the reason. The object
// needs no memory.
class RegexRefusal : public std::exception {
 public:
  // `reason` is a string literal.
  explicit RegexRefusal(const char* reason) noexcept : reason_(reason) {}
  const char* what() const noexcept override { return reason_; }

 private:
  const char* reason_;
};

// Reads an expression as the C library reads it. The syntax is not checked, because the C library
// does that later: the tree of a malformed expression has no meaning. Throws RegexRefusal for a
// back-reference and for a tree of too many levels.
RegexPiece regexPieceOf(std::string_view expression);

}  // namespace Routing::RouteMap

#endif
