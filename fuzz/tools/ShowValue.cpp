// Arbitrary text as what a person writes on the command line: communities, AS numbers
// and prefixes.  What is taken for one of them can be written and is read back as the
// same, and the command takes what the reader does.
//
// The first octet has the options; after it, an argument a line.
#include <sstream>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "fuzz/support/Input.h"
#include "fuzz/support/JsonGrammar.h"
#include "fuzz/support/Lists.h"
#include "fuzz/support/MemoryFile.h"
#include "fuzz/support/Require.h"
#include "tools/bgp-communities/bgp/AddressText.h"
#include "tools/bgp-communities/commands/CommunityArgument.h"
#include "tools/bgp-communities/commands/ShowCommand.h"
#include "tools/bgp-communities/output/Json.h"
#include "tools/bgp-communities/rib/RouteFilter.h"

namespace {

using namespace CommTool;
using Fuzz::require;
using Fuzz::Wire;

// ---- Communities.

Wire wireOf(const StandardCommunity& community) { return Fuzz::Standard::wire(community.value); }
Wire wireOf(const Acl::CommunityValue& community) { return Fuzz::Large::wire(community); }
Wire wireOf(const Routing::Bgp::ExtCommContent& content) {
  return Fuzz::wireOf(content.value(), Fuzz::Extended::memberSize);
}
Wire wireOf(const Routing::Bgp::ExtCommIp6Content& content) {
  return Fuzz::Ip6Extended::wire(
      Routing::Bgp::extCommIp6Factory(Routing::Bgp::extCommClassificationUnSpecified, content));
}
// Every kind is told by its size.
Wire wireOf(const CommunityArgument& community) {
  return std::visit([](const auto& value) { return wireOf(value); }, community);
}

std::string hexOf(const Wire& wire) {
  std::string text = "0x";
  appendHex(text, {reinterpret_cast<const U8*>(wire.data()), wire.size()});
  return text;
}

void requireReads(const std::string& text, const Wire& wire) {
  const auto community = readCommunity(text);
  require(community && wireOf(*community) == wire, "community read back: " + text);
}

// Everything that the community is printed as and that stands for itself.
void checkForms(const Wire& wire) {
  if (wire.size() == Fuzz::Large::memberSize) {
    return requireReads(Routing::Bgp::LargeCommList::getStringValue(Fuzz::Large::key(wire)), wire);
  }
  requireReads(hexOf(wire), wire);
  if (wire.size() != Fuzz::Standard::memberSize) return;
  const U32 community = Fuzz::Standard::key(wire);
  requireReads(Routing::Bgp::CommList::getStringValue(community), wire);
  const std::string name = Routing::Bgp::CommList::wellKnownName(community);
  if (!name.empty()) requireReads(name, wire);
}

// ---- What routes are chosen by.

void checkFilters(std::string_view text) {
  if (const auto as = readAsText(text)) {
    require(readAsText(std::to_string(*as)) == as, "AS number");
    const auto halves = std::to_string(*as >> 16) + "." + std::to_string(*as & 0xFFFF);
    require(readAsText(halves) == as, "AS number in halves");
  }
  if (const auto prefix = readPrefixText(text)) {
    require(readPrefixText(AddressText(*prefix).view()) == prefix, "prefix");
    require(isWithin(*prefix, *prefix), "a prefix within itself");
  }
}

// ---- The command.

std::string run(const ShowOptions& options, bool isGood) {
  const Fuzz::MemoryFile out;
  std::ostringstream errors;
  const ExitStatus status = runShow(options, out.fd(), errors);
  require(status == (isGood ? ExitStatus::fine : ExitStatus::wrongUsage), "another status");
  require(isGood == errors.str().empty(), "an error without a message");
  const std::string output = out.contents();
  require(isGood != output.empty(), "output of something else");
  return output;
}

void checkCommand(ShowOptions options, bool isGood) {
  options.json = false;
  run(options, isGood);
  options.json = true;
  std::istringstream lines(run(options, isGood));
  std::size_t count = 0;
  for (std::string line; std::getline(lines, line); ++count) {
    require(Fuzz::isJson(line), "a line that is no JSON");
  }
  require(!isGood || count == options.values.size(), "an object a value");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const Fuzz::NothingLeft guard;
  ShowOptions options;
  const U8 flags = input.u8();
  options.asdot = (flags & 1) != 0;
  options.weighted = (flags & 2) != 0;
  bool isGood = true;
  while (!input.atEnd()) {
    const std::string_view text = input.textUpTo('\n');
    options.values.emplace_back(text);
    const auto community = readCommunity(text);
    isGood &= community.has_value();
    if (community) checkForms(wireOf(*community));
    checkFilters(text);
  }
  if (!options.values.empty()) checkCommand(options, isGood);
  return 0;
}
