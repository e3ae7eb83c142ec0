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
  // Compiles the expression. Raises Kiv::RangeException, with the expression and the C library's
  // message, if it is malformed.
  //
  // Expressions that could exhaust the C library's stack, memory or time are refused in the same
  // way, because operators type them and no limit of the C library stops them:
  // - longer than 4096 octets, or with a NUL character;
  // - groups nested deeper than 100;
  // - repetitions that multiply out to more than 2000 copies, 1000 for possibly empty parts;
  // - loops with too many ways to repeat without consuming text: ((a*|b*|c*){13})* (^|$|\b|\B)*
  // - too many anchors with no text between them: (\b){1,60}
  // An accepted expression compiles within some tenths of a second and 50 MB. How long a match
  // takes also depends on the text.
  explicit PosixRegex(Kiv::String expression);

  // The expression as it was given.
  const Kiv::String& expression() const { return expression_; }

  // Returns 0 if the expression matches anywhere in the NUL-terminated `text`, otherwise the C
  // library's error code: REG_NOMATCH, or REG_ESPACE if memory ran out.
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
