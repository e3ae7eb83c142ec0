// Compiled regular expressions of route maps.
#ifndef ROUTING_ROUTEMAP_POSIXREGEX_H
#define ROUTING_ROUTEMAP_POSIXREGEX_H

#include <regex.h>

#include <memory>

#include "Kiv/Export.h"
#include "Kiv/String.h"

namespace Routing::RouteMap {

// One POSIX extended regular expression (IEEE Std 1003.1, section 9.4), compiled
// once, matched against a whole line of text.  execute may run in any number of
// threads at once.  Moved, not copied; one moved from may only be destroyed or
// assigned to.
class OV_EXPORT PosixRegex {
 public:
  // Raises Kiv::RangeException, with the expression and the C library's message,
  // if it does not compile.  Expressions that could exhaust the C library's stack,
  // memory or patience are refused in the same way: longer than 4096 octets, groups nested
  // deeper than 100, repetitions that multiply out to more than 2000 copies (1000 of what
  // may be empty), loops that can go round without any text in too many ways, such as
  // ((a*|b*|c*){13})* or (^|$|\b|\B)*, or too many anchors with no text between, such as
  // (\b){1,60}.  What is accepted compiles within some tenths of a second and 50 MB; how
  // long a match takes depends on the text, too.
  explicit PosixRegex(Kiv::String expression);

  const Kiv::String& expression() const { return expression_; }

  // 0 if the expression is found in the NUL-terminated `text`, otherwise non-zero.
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
