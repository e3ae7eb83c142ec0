// Arbitrary text as a regular expression, and lists of all kinds to match the expression with.
// - The expression compiles if and only if the C library compiles it, unless it is refused before:
//   it costs too much, or it has a NUL character or a back-reference.
// - A list matches if and only if the C library finds the expression in one of the list's texts.
//   Here each text is put together from the texts of the members.
//
// Input: the expression up to the first line end, and then the octets of members.
#include <regex.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Kiv/Exception.h"
#include "Routing/RouteMap/PosixRegex.h"
#include "fuzz/support/Input.h"
#include "fuzz/support/Lists.h"
#include "fuzz/support/Require.h"

namespace {

using namespace Routing::Bgp;
using Fuzz::require;
using Routing::RouteMap::PosixRegex;

// Matching may take exponential time in the length of the text.
constexpr std::size_t membersMax = 6;

// The same expression, compiled and matched directly by the C library.
class Expression {
 public:
  explicit Expression(const std::string& text)
      : isRight_(::regcomp(&compiled_, text.c_str(), REG_EXTENDED | REG_NOSUB) == 0) {}
  ~Expression() {
    if (isRight_) ::regfree(&compiled_);
  }
  Expression(const Expression&) = delete;
  Expression& operator=(const Expression&) = delete;

  bool isRight() const { return isRight_; }
  bool isIn(const std::string& text) const {
    return ::regexec(&compiled_, text.c_str(), 0, nullptr, 0) == 0;
  }

 private:
  regex_t compiled_{};
  const bool isRight_;
};

// ---- The texts of a list

using Texts = std::vector<std::string>;

Texts textsOf(const CommList& list) {
  const auto number = [](U32 community) { return CommList::getStringValue(community); };
  const auto name = [number](U32 community) {
    const std::string known = CommList::wellKnownName(community);
    return known.empty() ? number(community) : known;
  };
  return {Fuzz::textOf<Fuzz::Standard>(list, number), Fuzz::textOf<Fuzz::Standard>(list, name)};
}

Texts textsOf(const LargeCommList& list) {
  return {Fuzz::textOf<Fuzz::Large>(
      list, [](const Acl::CommunityValue& value) { return LargeCommList::getStringValue(value); })};
}

// A community that policies match by its user-interface text. The library has no such class, so
// the plugin below makes every sixteenth EVPN community one.
class Marked final : public ExtCommSubtyped {
  KIV_OBJECT(Marked)

 public:
  explicit Marked(const ExtCommContent& content)
      : ExtCommSubtyped(extCommClassificationEvpn, content) {}
  bool policyMatchStrepUI() const override { return getContent().value() % 16 == 7; }
  void appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat format) const override {
    to.append(format.isUI() ? "marked:" : "evpn:");
    to.append(std::to_string(getContent().value() & 0xFF));
  }
};
KIV_OBJECT_DEFINE(Marked)

class MarkedRule final : public BgpParseExtendedCommunityTypeRuleBase {
  KIV_OBJECT(MarkedRule)

 public:
  MarkedRule()
      : BgpParseExtendedCommunityTypeRuleBase(BgpParseExtCommControl(), extCommPktTypeTransEvpn) {}
  ExtComm::Ptr inhale(const ExtCommContent& content) const override {
    return ExtComm::Ptr(new Marked(content));
  }
};
KIV_OBJECT_DEFINE(MarkedRule)

Texts textsOf(const ExtCommList& list) {
  ExtComm::StrepFormat policy;
  policy.strepFormatDefaultIs(true);
  ExtComm::StrepFormat classification;
  classification.strepFormatClassificationIs(true);
  ExtComm::StrepFormat ui = classification;
  ui.strepFormatUIIs(true);
  Texts texts;
  for (const ExtComm::StrepFormat format : {policy, classification}) {
    texts.push_back(Fuzz::textOf<Fuzz::Extended>(
        list, [format](const auto& member) { return member->toStrepForPolicy(format); }));
  }
  std::vector<std::string> marked;
  for (const auto& member : list.commVector()) {
    if (member->policyMatchStrepUI()) marked.push_back(member->toStrepForPolicy(ui));
  }
  if (!marked.empty()) texts.push_back(Fuzz::joined(marked));
  return texts;
}

// ---- The comparison

template <class Kind>
void checkMatching(const PosixRegex& regex, const Expression& expression, Fuzz::Octets octets) {
  const std::size_t size = std::min(octets.size() / Kind::memberSize, membersMax);
  const auto list = Kind::ofAttribute(Fuzz::tables(), octets.first(size * Kind::memberSize));
  const Texts texts = textsOf(*list);
  const bool isFound = std::ranges::any_of(
      texts, [&expression](const std::string& text) { return expression.isIn(text); });
  require(list->matchCommunitiesRegex(&regex) == isFound, "another answer: " + texts[0]);
}

// IPv6 extended lists have no match function of their own. Policies match their only text.
void checkIp6Matching(const PosixRegex& regex, const Expression& expression, Fuzz::Octets octets) {
  using Kind = Fuzz::Ip6Extended;
  const std::size_t size = std::min(octets.size() / Kind::memberSize, membersMax);
  const auto list = Kind::ofAttribute(Fuzz::tables(), octets.first(size * Kind::memberSize));
  ExtCommIp6::StrepFormat format;
  format.strepFormatClassificationIs(true);
  const std::string text = Fuzz::textOf<Kind>(
      *list, [format](const auto& member) { return member->toStrepForPolicy(format); });
  const bool isFound = regex.execute(list->commsStringForm().c_str()) == 0;
  require(isFound == expression.isIn(text), "another answer: " + text);
}

// Whether the expression was refused before the C library saw it. The C library might need minutes
// or gigabytes for it.
bool isRefusedBefore(std::string_view what) {
  return what.ends_with(": too long") || what.ends_with(": too complex") ||
         what.ends_with(": NUL character") || what.ends_with(": back-reference");
}

// The compiled expression; nothing if the expression is refused.
std::optional<PosixRegex> compiled(const std::string& text) {
  try {
    return PosixRegex(text);
  } catch (const Kiv::RangeException& error) {
    require(isRefusedBefore(error.what()) || !Expression(text).isRight(), error.what());
    return std::nullopt;
  }
}

const Fuzz::Tables& tablesWithMarks() {
  static const bool isHung = [] {
    const auto& root = Fuzz::tables().parser->extCommParser();
    root->typeRuleIs(MarkedRule::Ptr(new MarkedRule));
    return true;
  }();
  (void)isHung;
  return Fuzz::tables();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  const Fuzz::Tables& tables = tablesWithMarks();
  Fuzz::Input input(data, size);
  const std::string text(input.textUpTo('\n'));
  const std::optional<PosixRegex> regex = compiled(text);
  if (!regex) return 0;
  const Expression expression(text);
  require(expression.isRight(), "compiled, though it is wrong");
  Fuzz::requireSame(regex->expression(), text, "expression");
  const auto octets = input.rest();
  checkMatching<Fuzz::Standard>(*regex, expression, octets);
  checkMatching<Fuzz::Large>(*regex, expression, octets);
  checkMatching<Fuzz::Extended>(*regex, expression, octets);
  checkIp6Matching(*regex, expression, octets);
  require(tables.members() == 0, "interned and left");
  return 0;
}
