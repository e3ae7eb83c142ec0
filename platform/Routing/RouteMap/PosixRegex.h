// Compiled regular expressions of route maps.
#ifndef ROUTING_ROUTEMAP_POSIXREGEX_H
#define ROUTING_ROUTEMAP_POSIXREGEX_H

#include <regex.h>

#include <memory>

#include "Kiv/Export.h"
#include "Kiv/String.h"

namespace Routing::RouteMap {

// One POSIX extended regular expression (IEEE Std 1003.1, section 9.4), compiled by the C library
// once and then searched for in lines of text. Movable, not copyable; an object that was moved from
// may only be destroyed or assigned to. Any number of threads may call execute at the same time.
class OV_EXPORT PosixRegex {
 public:
  // Compiles the expression. Raises Kiv::RangeException, with the expression and the reason, if
  // the expression is malformed. Throws std::bad_alloc if memory runs out.
  //
  // Back-references (\1 to \9 outside brackets) are refused in the same way. POSIX extended
  // expressions have none, and the C library's matcher needs gigabytes for them on one long text.
  //
  // Expressions that cost too much are refused as well, because operators type them and no limit of
  // the C library stops them. What an expression costs is computed before the C library compiles
  // it. It is refused as "too complex" if compiling it needs more than:
  // - 32 MB of memory;
  // - 100 million steps of work, which take 0.1 to 0.2 seconds;
  // - 2048 levels of recursion, which take 256 KB of stack;
  // - 100 groups that are nested.
  // An expression of more than 65,536 octets is "too long", and one with a NUL character is
  // refused.
  //
  // Examples that are accepted: ^([0-9]+:[0-9]+ ?){1,255}$ needs 1.2 MB, an alternation of 1000
  // communities 15 MB, a{1,1900} 30 MB. Examples that are refused: a{1,3000} and (a?){1,1000}
  // (memory), ((a*|b*|c*){13})* (work, since the loop can repeat without consuming text in many
  // ways), (\b){1,60} (2.5 GB, since the C library copies all that can follow a border).
  explicit PosixRegex(Kiv::String expression);

  // The expression as it was given.
  const Kiv::String& expression() const { return expression_; }

  // Returns 0 if the expression matches anywhere in the NUL-terminated `text`, otherwise
  // REG_NOMATCH. Throws std::bad_alloc if memory runs out; the expression can still be used then.
  // The C library keeps the states of its automaton that texts lead to until the object is
  // destroyed. Each octet of a text adds at most one state, of 2 KB and more, if the state is new.
  int execute(const char* text) const;

 private:
  struct Free {
    void operator()(regex_t* compiled) const;
  };

  Kiv::String expression_;
  std::unique_ptr<regex_t, Free> compiled_;
};

}  // namespace Routing::RouteMap

#endif
