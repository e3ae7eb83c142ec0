#include <regex.h>

#include <algorithm>
#include <charconv>
#include <random>
#include <stdexcept>

#include "OvBgp/OvBgpCommunityList.h"
#include "Routing/RouteMap/PosixRegex.h"
#include "bench/peers/Names.h"
#include "bench/peers/Peers.h"
#include "bench/ratios/Rows.h"

namespace Bench {
namespace {

constexpr U32 noExport = 0xFFFFFF01;

// A sorted list of random communities that look like real ones: AS numbers with 1 to 5 digits
// and small local parts. The number of digits determines the cost of the text.
Comms commsOf(std::size_t length) {
  std::mt19937 random(7);
  Comms comms;
  while (comms.size() < length) {
    const U32 as = static_cast<U32>(random()) >> (16 + random() % 10);
    comms.push_back(as << 16 | static_cast<U32>(random() % 3000));
    std::sort(comms.begin(), comms.end());
    comms.erase(std::unique(comms.begin(), comms.end()), comms.end());
  }
  return comms;
}

Routing::Bgp::CommList::PtrConst listOf(const Comms& comms) {
  static const auto table = Routing::Bgp::commListDedupTableFactory();
  const auto list = Routing::Bgp::commListFactory();
  for (const U32 c : comms) list->commIs(c);
  return list->dedup(table.ptr());
}

// Keeps the compiler from removing the work that computed the result.
void use(const std::string& text) { asm volatile("" : : "r"(text.data()) : "memory"); }
void use(bool answer) { asm volatile("" : : "r"(answer)); }

// Prints the peer's text with std::to_chars: "AS:local" for each community, or the name of a
// well-known community if `named`. Returns the end of the text.
char* printed(const Comms& comms, bool named, char* at, char* end) {
  const char* const begin = at;
  for (const U32 c : comms) {
    if (at != begin) *at++ = ' ';
    if (named && c == noExport) {
      at = std::ranges::copy(std::string_view("no-export"), at).out;
      continue;
    }
    at = std::to_chars(at, end, c >> 16).ptr;
    *at++ = ':';
    at = std::to_chars(at, end, c & 0xFFFF).ptr;
  }
  return at;
}

// The text as a new string, as from toStrep(): one allocation of the largest possible size.
std::string printedText(const Comms& comms) {
  std::string text(comms.size() * 12, '\0');
  char* const end = printed(comms, false, text.data(), text.data() + text.size());
  text.resize(static_cast<std::size_t>(end - text.data()));
  return text;
}

template <class Work>
Contender repeated(const char* name, U32 times, Work work) {
  return {name, [=] { return std::make_unique<Repeat<Work>>(times, work); }};
}

Row textRow(U32 length, const Scale& scale) {
  const Comms comms = commsOf(length);
  const U32 times = scale.of(400'000) / length;
  const auto list = listOf(comms);
  return {"list text, length " + std::to_string(length),
          [=]() -> std::vector<Contender> {
            return {repeated(Name::ours, times, [=] { use(list->toStrep()); }),
                    repeated("to_chars", times, [=] { use(printedText(comms)); })};
          },
          {{Measure::time, 0.7, {"to_chars"}}}};
}

// The peer for matching: the C library's regexec() on text in a local array. It tries the text
// with numbers first. If that does not match and a community has a name, it tries the text with
// names.
class PlainMatch {
 public:
  PlainMatch(const char* expression, Comms comms)
      : comms_(std::move(comms)), hasName_(std::ranges::count(comms_, noExport) != 0) {
    if (regcomp(&compiled_, expression, REG_EXTENDED | REG_NOSUB) != 0) {
      throw std::logic_error("invalid expression");
    }
  }
  PlainMatch(const PlainMatch&) = delete;
  PlainMatch& operator=(const PlainMatch&) = delete;
  ~PlainMatch() { regfree(&compiled_); }

  bool operator()() const { return matches(false) || (hasName_ && matches(true)); }

 private:
  bool matches(bool named) const {
    char room[512];
    *printed(comms_, named, room, room + sizeof room) = '\0';
    return regexec(&compiled_, room, 0, nullptr, 0) == 0;
  }

  const Comms comms_;
  const bool hasName_;
  regex_t compiled_;
};

// Compares the two results before any measurement, so that a wrong answer is not timed.
Row matchRow(const char* name, const char* expression, const Comms& comms, const Scale& scale) {
  const U32 times = scale.of(20'000);
  const auto list = listOf(comms);
  const auto regex = std::make_shared<const Routing::RouteMap::PosixRegex>(expression);
  const auto plain = std::make_shared<const PlainMatch>(expression, comms);
  if (list->matchCommunitiesRegex(regex.get()) != (*plain)()) {
    throw std::logic_error("ours and the C library disagree");
  }
  return {name,
          [=]() -> std::vector<Contender> {
            return {
                repeated(Name::ours, times, [=] { use(list->matchCommunitiesRegex(regex.get())); }),
                repeated("regexec", times, [=] { use((*plain)()); })};
          },
          {{Measure::time, 1.1, {"regexec"}}}};
}

}  // namespace

std::vector<Row> textRows(const Scale& scale) {
  std::vector<Row> rows;
  for (const U32 length : {1U, 8U, 32U}) rows.push_back(textRow(length, scale));
  const Comms ten = commsOf(10);
  Comms named = commsOf(9);
  named.push_back(noExport);
  constexpr const char* absent = "(^| )64999:[0-9]+( |$)";
  const std::string present = "(^| )" + std::to_string(ten[5] >> 16) + ":[0-9]+( |$)";
  rows.push_back(matchRow("list of ten matches", present.c_str(), ten, scale));
  rows.push_back(matchRow("list of ten does not match", absent, ten, scale));
  rows.push_back(matchRow("list of ten, one with a name, does not match", absent, named, scale));
  return rows;
}

}  // namespace Bench
