#include "Routing/RouteMap/PosixRegex.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

#include "Kiv/Exception.h"
#include "Routing/RouteMap/Private/RegexCost.h"
#include "Routing/RouteMap/Private/RegexSyntax.h"

namespace Routing::RouteMap {
namespace {

// Bounds what reading an expression costs. An alternation of 4096 communities is shorter.
constexpr std::size_t expressionSizeMax = 65'536;

// The message has the expression up to a NUL, which would end the text of what(), and at most 256
// octets of it.
[[noreturn]] void refuse(const Kiv::String& expression, std::string_view reason) {
  const std::size_t shown = std::min<std::size_t>(expression.find('\0'), 256);
  throw Kiv::RangeException("bad regular expression \"" + expression.substr(0, shown) +
                            "\": " + Kiv::String(reason));
}

// The size is checked first, so the rest is cheap for any input. A NUL would end the expression for
// the C library, which would then match more than was written.
void checkCost(const Kiv::String& expression) {
  if (expression.find('\0') != expression.npos) refuse(expression, "NUL character");
  if (expression.size() > expressionSizeMax) refuse(expression, "too long");
  try {
    (void)regexCostOf(regexPieceOf(expression));
  } catch (const RegexRefusal& refusal) {
    refuse(expression, refusal.what());
  }
}

Kiv::String messageOf(int error, const regex_t& compiled) {
  char message[256];
  regerror(error, &compiled, message, sizeof message);
  return message;
}

}  // namespace

PosixRegex::PosixRegex(Kiv::String expression) : expression_(std::move(expression)) {
  checkCost(expression_);
  auto compiled = std::make_unique<regex_t>();
  const int error = regcomp(compiled.get(), expression_.c_str(), REG_EXTENDED | REG_NOSUB);
  // On failure regcomp has freed everything itself; regfree must not be called then.
  if (error == REG_ESPACE) throw std::bad_alloc();
  if (error != 0) refuse(expression_, messageOf(error, *compiled));
  compiled_.reset(compiled.release());
}

namespace {

// Matches by the C library's own interface, which tells lack of memory from "no match". It finds
// the longest match, so it is slower.
int executeSlowly(regex_t* compiled, const char* text) {
#ifdef __GLIBC__
  const auto length = static_cast<regoff_t>(std::strlen(text));
  const auto at = re_search(compiled, text, length, 0, length, nullptr);
  if (at < -1) throw std::bad_alloc();
  return at == -1 ? REG_NOMATCH : 0;
#else
  return regexec(compiled, text, 0, nullptr, 0);
#endif
}

}  // namespace

// Without sub-matches: the expression was compiled with REG_NOSUB.
//
// Lack of memory is no answer: a caller that took it for "no match" could accept a route that its
// policy denies. But glibc returns REG_NOMATCH for every error, so errno must tell. errno alone is
// no proof, because an allocation may set it, try another way and succeed.
int PosixRegex::execute(const char* text) const {
  errno = 0;
  const int result = regexec(compiled_.get(), text, 0, nullptr, 0);
  if (result == REG_ESPACE) throw std::bad_alloc();
  if (result != 0 && errno == ENOMEM) return executeSlowly(compiled_.get(), text);
  return result;
}

void PosixRegex::Free::operator()(regex_t* compiled) const {
  regfree(compiled);
  delete compiled;
}

}  // namespace Routing::RouteMap
