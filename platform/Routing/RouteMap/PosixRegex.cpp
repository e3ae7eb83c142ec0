#include "Routing/RouteMap/PosixRegex.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "Kiv/Exception.h"
#include "Kiv/Types.h"

namespace Routing::RouteMap {
namespace {

constexpr std::size_t expressionSizeMax = 4096;
constexpr std::size_t nestingMax = 100;
constexpr U64 copiesMax = 2000;
constexpr U64 timesMax = 100'000;  // more than the C library takes

// Estimates what compiling an expression costs.  The C library recurses into
// groups and copies what is repeated, with no bound of its own; time grows with up
// to the third power of the copies, and memory with the second.  Whether the
// expression is right is left to the C library: what is malformed merely gives
// an estimate of no meaning.
class CostEstimate {
 public:
  explicit CostEstimate(std::string_view expression) : text_(expression) {
    for (at_ = 0; at_ < text_.size() && !isTooMuch_; ++at_) takeOne();
  }
  bool isTooMuch() const { return isTooMuch_; }

 private:
  // Items of the group being read, and of its last part, which a repetition repeats.
  struct Group {
    U64 items = 0;
    U64 last = 0;
  };

  void takeOne() {
    switch (text_[at_]) {
      case '\\':
        ++at_;
        return addPart(1);
      case '[':
        skipBracket();
        return addPart(1);
      case '(':
        return openGroup();
      case ')':
        return closeGroup();
      case '{':
        return repeat();
      case '*':
      case '+':
      case '?':
        return multiplyLast(2);
      default:
        return addPart(1);
    }
  }

  void addPart(U64 items) {
    Group& group = groups_.back();
    group.last = items;
    group.items += items;
  }

  void openGroup() {
    groups_.emplace_back();
    if (groups_.size() > nestingMax) isTooMuch_ = true;
  }

  void closeGroup() {
    if (groups_.size() == 1) return addPart(1);
    const U64 items = groups_.back().items + 1;
    groups_.pop_back();
    addPart(items);
  }

  // Both factors are small enough for the product: items by the expression's size
  // and copiesMax, `times` by timesMax.
  void multiplyLast(U64 times) {
    Group& group = groups_.back();
    const U64 added = group.last * (times - 1);
    group.last += added;
    group.items += added;
    copies_ += added;
    if (copies_ > copiesMax) isTooMuch_ = true;
  }

  // {m}, {m,}, {m,n} and, as an extension, {,n}: the largest number counts.
  void repeat() {
    U64 times = 0;
    U64 number = 0;
    for (++at_; at_ < text_.size() && text_[at_] != '}'; ++at_) {
      const char c = text_[at_];
      number =
          c >= '0' && c <= '9' ? std::min(number * 10 + static_cast<U64>(c - '0'), timesMax) : 0;
      times = std::max(times, number);
    }
    multiplyLast(std::max<U64>(times, 1) + 1);
  }

  // From '[' to its ']'.  A ']' that comes first, or inside [: :], [. .] or [= =],
  // does not close it.
  void skipBracket() {
    std::size_t at = at_ + 1;
    if (at < text_.size() && text_[at] == '^') ++at;
    if (at < text_.size() && text_[at] == ']') ++at;
    for (; at < text_.size() && text_[at] != ']'; ++at) at = skipClass(at);
    at_ = at;
  }

  std::size_t skipClass(std::size_t at) const {
    if (text_[at] != '[' || at + 1 >= text_.size()) return at;
    const char kind = text_[at + 1];
    if (kind != ':' && kind != '.' && kind != '=') return at;
    const char closing[] = {kind, ']'};
    const std::size_t end = text_.find(std::string_view(closing, 2), at + 2);
    return end == text_.npos ? at : end + 1;
  }

  const std::string_view text_;
  std::size_t at_ = 0;
  std::vector<Group> groups_{1};
  U64 copies_ = 0;  // items that stand for others, of all groups
  bool isTooMuch_ = false;
};

// Up to a NUL, which would end the message.
[[noreturn]] void refuse(const Kiv::String& expression, std::string_view reason) {
  const std::size_t shown = std::min<std::size_t>(expression.find('\0'), 256);
  throw Kiv::RangeException("bad regular expression \"" + expression.substr(0, shown) +
                            "\": " + Kiv::String(reason));
}

void checkCost(const Kiv::String& expression) {
  if (expression.find('\0') != expression.npos) refuse(expression, "NUL character");
  if (expression.size() > expressionSizeMax) refuse(expression, "too long");
  if (CostEstimate(expression).isTooMuch()) refuse(expression, "too complex");
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
  if (error != 0) refuse(expression_, messageOf(error, *compiled));  // and nothing to free
  compiled_.reset(compiled.release());
}

int PosixRegex::execute(const char* text) const {
  return regexec(compiled_.get(), text, 0, nullptr, 0);
}

void PosixRegex::Free::operator()(regex_t* compiled) const {
  regfree(compiled);
  delete compiled;
}

}  // namespace Routing::RouteMap
