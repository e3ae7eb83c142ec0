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
constexpr U64 timesMax = 100'000;       // more than the C library takes
constexpr U64 emptyWalksMax = 200'000;  // ways past a place, times items
constexpr U64 borderWalksMax = 500;
constexpr U64 loopBordersMax = 4;
constexpr U64 runCostMax = 200'000;
constexpr U64 waysMax = 1'000'000;

// What follows each other with no text between: borders, such as ^, and whatever may be
// empty, each a step.
struct Run {
  U64 steps = 0;
  U64 borders = 0;

  Run operator+(const Run& next) const { return {steps + next.steps, borders + next.borders}; }
  Run operator*(U64 times) const { return {steps * times, borders * times}; }
  Run orLonger(const Run& other) const {
    return {std::max(steps, other.steps), std::max(borders, other.borders)};
  }
  U64 cost() const { return steps * steps * borders; }
};

// What an expression is put together from.
struct Part {
  U64 items = 0;
  U64 emptyWays = 1;  // of getting past it without an octet of text
  U64 walks = 1;      // the most such ways inside, or past all of it
  Run run = {};       // the longest inside
};
constexpr Part character{.items = 1, .emptyWays = 0};
constexpr Part border{.items = 1, .run = {.steps = 1, .borders = 1}};
// The C library makes two of it: where a word begins, or ends.
constexpr Part wordBorder{.items = 3, .emptyWays = 2, .run = {.steps = 2, .borders = 2}};

// The group being read: its alternatives so far, and the one that is being read, of
// which the last part stands apart, as a repetition repeats it.
struct Group {
  U64 items = 0;
  U64 emptyWays = 0;
  U64 branchEmptyWays = 1;
  U64 walks = 1;  // that lead to the place before `last`
  U64 longestWalk = 1;
  Run emptyRuns;   // of the alternatives that may be empty, taken together
  Run longestRun;  // in one that may not
  Run run;         // that leads to the place before `last`
  Run branchRun;   // the longest
  Part last;
};

// Estimates what compiling an expression costs.  The C library recurses into
// groups and copies what is repeated, with no bound of its own; time grows with up
// to the third power of the copies, and memory with the second.  And where a loop
// can go round without an octet of text, (a*|b*)*, it walks every such way from
// every place.  Each border copies what can be reached from it with no text between,
// and so does each border among the copies.  Whether the expression is right is left
// to the C library: what is malformed merely gives an estimate of no meaning.
class CostEstimate {
 public:
  explicit CostEstimate(std::string_view expression) : text_(expression) {
    for (at_ = 0; at_ < text_.size() && !isTooMuch_; ++at_) takeOne();
    while (groups_.size() > 1) closeGroup();
    endBranch();
    if (longestWalk_ * groups_.back().items > walksMax_) isTooMuch_ = true;
  }
  bool isTooMuch() const { return isTooMuch_; }

 private:
  static U64 bounded(U64 ways) { return std::min(ways, waysMax); }

  void takeOne() {
    switch (text_[at_]) {
      case '\\':
        ++at_;
        return addPart(escaped());
      case '^':
      case '$':
        return addPart(border);
      case '[':
        skipBracket();
        return addPart(character);
      case '(':
        return openGroup();
      case ')':
        return closeGroup();
      case '|':
        return endBranch();
      case '{':
        return repeat();
      case '*':
        return repeatLast(2, 0, timesMax);
      case '+':
        return repeatLast(2, 1, timesMax);
      case '?':
        return repeatLast(2, 0, 1);
      default:
        return addPart(character);
    }
  }

  // References to groups count as borders: what they stand for may be empty.
  Part escaped() const {
    const auto isOneOf = [this](std::string_view these) {
      return at_ < text_.size() && these.find(text_[at_]) != these.npos;
    };
    if (isOneOf("bB")) return wordBorder;
    return isOneOf("<>`'123456789") ? border : character;
  }

  void addPart(const Part& part) {
    joinLast();
    groups_.back().last = part;
  }

  // Puts the last part, which nothing more repeats, to the others of its branch.
  void joinLast() {
    Group& group = groups_.back();
    const Part& last = group.last;
    group.items += last.items;
    group.branchEmptyWays = bounded(group.branchEmptyWays * last.emptyWays);
    group.longestWalk = std::max(group.longestWalk, bounded(group.walks * last.walks));
    group.walks = last.emptyWays == 0 ? last.walks : bounded(group.walks * last.emptyWays);
    longestWalk_ = std::max(longestWalk_, group.longestWalk);
    joinRun(group, last);
    group.last = Part();
  }

  void joinRun(Group& group, const Part& last) {
    group.run = group.run + last.run;
    group.branchRun = group.branchRun.orLonger(group.run);
    if (group.run.cost() > runCostMax) isTooMuch_ = true;
    if (last.emptyWays == 0) group.run = last.run;
  }

  void endBranch() {
    joinLast();
    Group& group = groups_.back();
    ++group.items;
    if (group.branchEmptyWays == 0) {
      group.longestRun = group.longestRun.orLonger(group.branchRun);
    } else {
      group.emptyRuns = group.emptyRuns + group.run + Run{.steps = 1};
    }
    group.run = group.branchRun = Run();
    group.emptyWays = bounded(group.emptyWays + group.branchEmptyWays);
    group.branchEmptyWays = 1;
    group.walks = 1;
  }

  void openGroup() {
    joinLast();
    groups_.emplace_back();
    if (groups_.size() > nestingMax) isTooMuch_ = true;
  }

  void closeGroup() {
    if (groups_.size() == 1) return addPart(character);
    endBranch();
    const Group group = groups_.back();
    groups_.pop_back();
    addPart({.items = group.items,
             .emptyWays = group.emptyWays,
             .walks = std::max(group.longestWalk, group.emptyWays),
             .run = group.emptyRuns + group.longestRun});
  }

  // From `least` to `most` times, of which the C library makes `copies`.  The factors
  // are small enough for the product: items by the expression's size and copiesMax,
  // `copies` by timesMax.
  void repeatLast(U64 copies, U64 least, U64 most) {
    Part& last = groups_.back().last;
    const U64 added = last.items * (copies - 1);
    last.items += added;
    // What may be empty leads from each of its copies to all that follow.
    copies_ += last.emptyWays > 0 ? 2 * added : added;
    if (copies_ > copiesMax) isTooMuch_ = true;
    if (most == timesMax && last.emptyWays > 0) emptyLoop(last.run.borders);
    last.run = last.emptyWays > 0 ? (last.run + Run{.steps = 1}) * copies : last.run * 2;
    // Where it need not be, a border before it leads to all copies at once, too.
    if (least == 0) last.run.steps += 1 + copies / 8;
    last.emptyWays = emptyWaysOf(last.emptyWays, least, most == timesMax ? least + 1 : most);
    last.walks = bounded(std::max(last.walks, last.emptyWays));
  }

  // Round a border, places are copied for each way to it.
  void emptyLoop(U64 borders) {
    if (borders > loopBordersMax) isTooMuch_ = true;
    walksMax_ = std::min(walksMax_, borders > 0 ? borderWalksMax : emptyWalksMax);
  }

  // One way for each number of times, if each time there is but one.
  static U64 emptyWaysOf(U64 once, U64 least, U64 most) {
    U64 ways = least == 0 ? 1 : 0;
    U64 power = 1;
    for (U64 times = 1; times <= most && power > 0 && ways < waysMax; ++times) {
      power = bounded(power * once);
      if (times >= least) ways += power;
    }
    return bounded(ways);
  }

  // {m}, {m,}, {m,n} and, as an extension, {,n}: the largest number counts.
  void repeat() {
    U64 least = 0;
    U64 number = 0;
    bool hasComma = false;
    bool hasMost = false;
    U64 times = 0;
    for (++at_; at_ < text_.size() && text_[at_] != '}'; ++at_) {
      const char c = text_[at_];
      const bool isDigit = c >= '0' && c <= '9';
      if (!isDigit && !hasComma) least = number;
      number = isDigit ? std::min(number * 10 + static_cast<U64>(c - '0'), timesMax) : 0;
      hasMost = isDigit && hasComma;
      hasComma = hasComma || !isDigit;
      times = std::max(times, number);
    }
    if (!hasComma) least = times;
    repeatLast(std::max<U64>(times, 1) + 1, least, hasComma && !hasMost ? timesMax : times);
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
  U64 longestWalk_ = 1;
  U64 walksMax_ = ~U64{0};
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
