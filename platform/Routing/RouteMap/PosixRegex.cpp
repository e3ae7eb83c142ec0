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

// The limits. With them, compiling an accepted expression takes some tenths of a second and 50 MB
// at most; ordinary expressions of operators stay far below.
constexpr std::size_t expressionSizeMax = 4096;
constexpr std::size_t nestingMax = 100;
constexpr U64 copiesMax = 2000;
constexpr U64 timesMax = 100'000;       // a repetition count above the C library's own limit
constexpr U64 emptyWalksMax = 200'000;  // empty ways through a loop, times items
constexpr U64 borderWalksMax = 500;     // the same, for a loop that contains borders
constexpr U64 loopBordersMax = 4;
constexpr U64 runCostMax = 200'000;
constexpr U64 waysMax = 1'000'000;  // saturation: products of two such numbers fit 64 bits

// A sequence that can be passed without consuming text. Its steps are borders (^ $ \b and the like)
// and parts that may be empty.
struct Run {
  U64 steps = 0;
  U64 borders = 0;

  // One run after the other.
  Run operator+(const Run& next) const { return {steps + next.steps, borders + next.borders}; }
  // The run repeated.
  Run operator*(U64 times) const { return {steps * times, borders * times}; }
  // The maximum of each number, as an upper bound of either run.
  Run orLonger(const Run& other) const {
    return {std::max(steps, other.steps), std::max(borders, other.borders)};
  }
  // The C library copies, for each border, everything that can be reached from it without text;
  // each copied border does the same again.
  U64 cost() const { return steps * steps * borders; }
};

// One element of an expression with its repetition: a character, a border or a group. An item is a
// node of the automaton that the C library builds; an empty way is a path through the part that
// consumes no text.
struct Part {
  U64 items = 0;
  U64 emptyWays = 1;  // through the whole part; 0 if it always consumes text
  U64 walks = 1;      // the most empty ways that lead to one place inside it, or through it
  Run run = {};       // the longest run inside
};
constexpr Part character{.items = 1, .emptyWays = 0};
constexpr Part border{.items = 1, .run = {.steps = 1, .borders = 1}};
// The C library expands \b and \B to an alternation of two borders.
constexpr Part wordBorder{.items = 3, .emptyWays = 2, .run = {.steps = 2, .borders = 2}};

// A group that is being read: the sums over its finished alternatives, and the state of the current
// alternative (branch). The last part of the branch is kept apart, because a repetition that
// follows applies to this part alone.
struct Group {
  U64 items = 0;
  U64 emptyWays = 0;
  U64 branchEmptyWays = 1;
  U64 walks = 1;        // empty ways to the place before `last`
  U64 longestWalk = 1;  // the maximum of walks in the group
  Run emptyRuns;        // the runs of all alternatives that may be empty, one after the other
  Run longestRun;       // the longest run in an alternative that always consumes text
  Run run;              // the run that ends before `last`
  Run branchRun;        // the longest run in the current alternative
  Part last;
};

// Estimates what it costs the C library to compile an expression. Three causes make the cost
// explode, and the C library limits none of them:
//
// - It recurses into groups and copies repeated parts: a{100} has 100 copies of a. Time grows with
//   up to the third power of the copies, memory with the second.
// - If a loop can repeat without consuming text, as (a*|b*)*, it follows every empty way through
//   the loop from every item of the expression.
// - For each border it copies everything that can be reached from the border without text, and the
//   borders among the copies do the same again.
//
// The estimate reads the expression once, octet by octet, keeps one Group per open parenthesis, and
// stops as soon as a limit is exceeded. It does not check the syntax: the C library does that
// later, and the estimate of a malformed expression has no meaning but is finite.
class CostEstimate {
 public:
  explicit CostEstimate(std::string_view expression) : text_(expression) {
    for (at_ = 0; at_ < text_.size() && !tooExpensive_; ++at_) takeOne();
    while (groups_.size() > 1) closeGroup();
    endBranch();
    if (longestWalk_ * groups_.back().items > walksMax_) tooExpensive_ = true;
  }
  bool tooExpensive() const { return tooExpensive_; }

 private:
  // Saturates, so that no product below overflows.
  static U64 bounded(U64 ways) { return std::min(ways, waysMax); }

  // Reads one element. On return, at_ is at the last octet of that element.
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

  // The octet behind a backslash. Back references count as borders, because the referenced text may
  // be empty. The others are extensions of the C library: borders of words and of the buffer.
  Part escaped() const {
    const auto isOneOf = [this](std::string_view these) {
      return at_ < text_.size() && these.find(text_[at_]) != these.npos;
    };
    if (isOneOf("bB")) return wordBorder;
    return isOneOf("<>`'123456789") ? border : character;
  }

  // Begins a new part: the last part will not be repeated any more.
  void addPart(const Part& part) {
    joinLast();
    groups_.back().last = part;
  }

  // Adds the last part to the sums of its branch. Behind a part that always consumes text, the
  // empty ways start again, with those inside that part.
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

  // Extends the current run by the last part. A part that always consumes text ends the run, and a
  // new run begins inside it.
  void joinRun(Group& group, const Part& last) {
    group.run = group.run + last.run;
    group.branchRun = group.branchRun.orLonger(group.run);
    if (group.run.cost() > runCostMax) tooExpensive_ = true;
    if (last.emptyWays == 0) group.run = last.run;
  }

  // Ends one alternative. Alternatives that may be empty are added, because all of them can be
  // passed from the same place; of the others only the longest run counts.
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
    if (groups_.size() > nestingMax) tooExpensive_ = true;
  }

  // A closed group becomes one part of the group around it. A parenthesis too many is a character.
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

  // Repeats the last part `least` to `most` times; the C library makes `copies` copies of it. The
  // product fits 64 bits: the items are bounded by the expression's size and copiesMax, and
  // `copies` by timesMax.
  void repeatLast(U64 copies, U64 least, U64 most) {
    Part& last = groups_.back().last;
    const U64 added = last.items * (copies - 1);
    last.items += added;
    // Copies of a part that may be empty count twice, because each is connected to all behind it.
    copies_ += last.emptyWays > 0 ? 2 * added : added;
    if (copies_ > copiesMax) tooExpensive_ = true;
    if (most == timesMax && last.emptyWays > 0) emptyLoop(last.run.borders);
    last.run = last.emptyWays > 0 ? (last.run + Run{.steps = 1}) * copies : last.run * 2;
    // If the part is optional, a border before it also leads directly to all copies.
    if (least == 0) last.run.steps += 1 + copies / 8;
    last.emptyWays = emptyWaysOf(last.emptyWays, least, most == timesMax ? least + 1 : most);
    last.walks = bounded(std::max(last.walks, last.emptyWays));
  }

  // A loop that can repeat without consuming text. With a border inside, items are copied for each
  // empty way to the border, so the limit is lower then.
  void emptyLoop(U64 borders) {
    if (borders > loopBordersMax) tooExpensive_ = true;
    walksMax_ = std::min(walksMax_, borders > 0 ? borderWalksMax : emptyWalksMax);
  }

  // The empty ways through a repetition: the sum of once^n over n = least .. most, saturated. The
  // loop ends early for 0 and by saturation; for 1 it runs `most` times, which timesMax bounds.
  static U64 emptyWaysOf(U64 once, U64 least, U64 most) {
    U64 ways = least == 0 ? 1 : 0;
    U64 power = 1;
    for (U64 times = 1; times <= most && power > 0 && ways < waysMax; ++times) {
      power = bounded(power * once);
      if (times >= least) ways += power;
    }
    return bounded(ways);
  }

  // An interval: {m}, {m,}, {m,n} and, as an extension of the C library, {,n}. The larger number
  // determines the copies. Anything else between the braces is malformed and read somehow.
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

  // Skips a bracket expression. A ']' directly behind '[' or '[^', or inside [: :], [. .] or [= =],
  // does not close it (IEEE Std 1003.1, section 9.3.5).
  void skipBracket() {
    std::size_t at = at_ + 1;
    if (at < text_.size() && text_[at] == '^') ++at;
    if (at < text_.size() && text_[at] == ']') ++at;
    for (; at < text_.size() && text_[at] != ']'; ++at) at = skipClass(at);
    at_ = at;
  }

  // Returns the last octet of [:class:] and the like if one begins at `at`, else `at`.
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
  std::vector<Group> groups_{1};  // the open groups; the first is the whole expression
  U64 copies_ = 0;                // items that are copies of others, in all groups
  U64 longestWalk_ = 1;           // the maximum of Group::longestWalk
  U64 walksMax_ = ~U64{0};        // for longestWalk_ times items; no limit without empty loops
  bool tooExpensive_ = false;
};

// The message has the expression up to a NUL, which would end the text of what(), and at most 256
// octets of it.
[[noreturn]] void refuse(const Kiv::String& expression, std::string_view reason) {
  const std::size_t shown = std::min<std::size_t>(expression.find('\0'), 256);
  throw Kiv::RangeException("bad regular expression \"" + expression.substr(0, shown) +
                            "\": " + Kiv::String(reason));
}

// The size is checked before the estimate, so the estimate itself is cheap for any input. A NUL
// would end the expression for the C library, which would then match more than was written.
void checkCost(const Kiv::String& expression) {
  if (expression.find('\0') != expression.npos) refuse(expression, "NUL character");
  if (expression.size() > expressionSizeMax) refuse(expression, "too long");
  if (CostEstimate(expression).tooExpensive()) refuse(expression, "too complex");
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
  if (error != 0) refuse(expression_, messageOf(error, *compiled));
  compiled_.reset(compiled.release());
}

// Without sub-matches: the expression was compiled with REG_NOSUB.
int PosixRegex::execute(const char* text) const {
  return regexec(compiled_.get(), text, 0, nullptr, 0);
}

void PosixRegex::Free::operator()(regex_t* compiled) const {
  regfree(compiled);
  delete compiled;
}

}  // namespace Routing::RouteMap
