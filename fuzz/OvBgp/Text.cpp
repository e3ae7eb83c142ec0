// Arbitrary text for every reader of values.
// - A reader that refuses moves nothing and changes nothing.
// - What it takes can be written, and is read back whole as the same value; where a
//   value has one text only, that is the one that was read.
// And the other way round: what is written of any value is read back.
//
// The first octet chooses the reader.
#include <arpa/inet.h>

#include <array>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

#include "Dorn/MaybeU63.h"
#include "Kiv/EnumRegistry.h"
#include "Kiv/Exception.h"
#include "Kiv/RawPointer.h"
#include "Kiv/Strep.h"
#include "Kiv/Trace.h"
#include "OvBgp/OvBgpCommunity.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/OvBgpMiscTypes.h"
#include "OvBgp/Parse/ExtComm.h"
#include "OvBgp/RouteTargetPrefix.h"
#include "OvBgp/Value/ExtCommContent.h"
#include "OvBgp/Value/ExtCommIp6Content.h"
#include "Ovnet/Ip6Addr.h"
#include "Routing/Bgp/RouteTarget.h"
#include "fuzz/support/Input.h"
#include "fuzz/support/Require.h"

namespace {

using namespace Routing::Bgp;
using Fuzz::require;
using Fuzz::requireSame;

// Whether a value has more than one text: numbers may have zeros in front, and
// hexadecimal digits be of either case.
enum class Texts : bool { one, several };

template <class T>
bool same(const T& one, const T& other) {
  return one == other;
}
bool same(const Dorn::MaybeU63& one, const Dorn::MaybeU63& other) {
  return one.isUnspecified() ? other.isUnspecified() : one.word() == other.word();
}
bool same(const Kiv::RawPointer& one, const Kiv::RawPointer& other) {
  return one.address == other.address;
}

// The text of a value, and of one whose text is not what its reader reads.
template <class T>
std::string written(const T& value) {
  using Kiv::valueToStrep;
  return valueToStrep(value);
}
std::string written(const ExtCommIp6Content& content) {
  return "type=" + std::to_string(content.type()) +
         ";subtype=" + std::to_string(content.subtype()) + ";addr=" + content.addr().stringValue() +
         ";localAdmin=" + std::to_string(content.localAdmin());
}

template <class T>
bool takes(const char*& it, const char* end, T* target) {
  try {
    using Kiv::sequenceToValue;
    sequenceToValue(it, end, target);
    return true;
  } catch (const Kiv::RangeException&) {
    return false;
  }
}

template <class T>
void checkWritten(const T& value, T again) {
  const std::string text = written(value);
  const char* it = text.data();
  const char* const end = it + text.size();
  require(takes(it, end, &again), "not read back: " + text);
  require(it == end && same(again, value), "read back as another: " + text);
}

template <class T, Texts texts>
void checkReader(std::string_view text) {
  T value{};
  const char* it = text.data();
  const char* const end = it + text.size();
  if (!takes(it, end, &value)) {
    require(it == text.data() && same(value, T{}), "a change by a text that was refused");
    return;
  }
  require(it > text.data() && it <= end, "a value of nothing");
  checkWritten(value, T{});
  if (texts == Texts::one) {
    requireSame(written(value), {text.data(), static_cast<std::size_t>(it - text.data())}, "text");
  }
}

// As checkReader, and the value that the text's octets are.
template <class T>
void checkWord(std::string_view text) {
  checkReader<T, Texts::several>(text);
  Fuzz::Input input(reinterpret_cast<const U8*>(text.data()), text.size());
  checkWritten(T(input.u64()), T{});
}

template <std::unsigned_integral T>
void checkNumber(std::string_view text) {
  checkReader<T, Texts::several>(text);
  Fuzz::Input input(reinterpret_cast<const U8*>(text.data()), text.size());
  checkWritten(static_cast<T>(input.u64()), T{});
}

// ---- Classes that read a whole text.

// As T has a constructor from text; nothing else may stand there.
template <class T>
bool isWhole(std::string_view text) {
  try {
    const T value{Kiv::String(text)};
    require(same(T{written(value)}, value), "read back as another: " + written(value));
    return true;
  } catch (const Kiv::RangeException&) {
    return false;
  }
}

template <class Flags>
void checkFlags(std::string_view text) {
  checkReader<Flags, Texts::one>(text);
  if (isWhole<Flags>(text)) requireSame(text, valueToStrep(Flags{Kiv::String(text)}), "flags");
  const U8 bits = text.empty() ? U8{0} : static_cast<U8>(text[0]);
  try {
    checkWritten(Flags(bits), Flags{});
  } catch (const Kiv::RangeException&) {
    unsigned named = 0;
    for (const Kiv::FlagRow& row : Flags::flagRows) named |= row.bit;
    require((bits & ~named) != 0, "a flag refused");
  }
}

template <class T>
void checkWhole(std::string_view text) {
  isWhole<T>(text);
}

void checkRouteTarget(std::string_view text) {
  checkWord<RouteTarget>(text);
  try {
    const RouteTarget value(text);
    for (const bool asdot : {false, true}) {
      const std::string again = value.toStrep(asdot);
      requireSame(again, RouteTarget(again).toStrep(asdot), "text of a route target");
    }
  } catch (const Kiv::RangeException&) {
  }
}

void checkRouteTargetPrefix(std::string_view text) {
  checkReader<RouteTargetPrefix, Texts::several>(text);
  isWhole<RouteTargetPrefix>(text);
  Fuzz::Input input(reinterpret_cast<const U8*>(text.data()), text.size());
  const U64 bits = input.u64();
  RouteTargetPrefix prefix(bits, static_cast<U8>(input.below(65)));
  checkWritten(prefix, RouteTargetPrefix());
  prefix.bitlenIs(prefix.bitlen());
  for (U32 i = 0; i < 64; ++i) {
    require(prefix.extractBit(i) == (i < prefix.bitlen() && (bits >> (63 - i) & 1) != 0), "a bit");
  }
}

// Against the C library.
void checkAddress(std::string_view text) {
  const std::string terminated(text);
  Ovnet::Ip6Addr::Octets octets{};
  const bool isOne = terminated.find('\0') == std::string::npos &&
                     ::inet_pton(AF_INET6, terminated.c_str(), octets.data()) == 1;
  try {
    const Ovnet::Ip6Addr address(text);
    require(isOne && address.octets() == octets, "an address: " + terminated);
    const std::string again = address.stringValue();
    require(again.size() <= Ovnet::Ip6Addr::textSizeMax, "a long text of an address");
    require(Ovnet::Ip6Addr(again) == address, "read back as another: " + again);
    char usual[INET6_ADDRSTRLEN];
    ::inet_ntop(AF_INET6, octets.data(), usual, sizeof usual);
    // The C library writes all addresses as IPv4 that begin with 96 zeros.
    const bool isOfIp4 = std::strchr(usual, '.') != nullptr;
    if (!isOfIp4 || address.isIp4Mapped()) requireSame(again, usual, "text of an address");
  } catch (const Kiv::RangeException&) {
    require(!isOne, "no address: " + terminated);
  }
}

// All enumerations that are registered.
void checkEnums(std::string_view text) {
  const auto check = [text](const Kiv::EnumInfo& info) {
    const char* it = text.data();
    try {
      const Kiv::EnumRow& row = info.read(it, it + text.size());
      requireSame(row.name, {text.data(), row.name.size()}, "a member's name");
      require(it == text.data() + row.name.size(), "a part of a name");
      requireSame(info.text(row.value), row.name, "a name that is not written");
    } catch (const Kiv::RangeException&) {
      const std::string_view word = Kiv::identifierAt(text.data(), text.data() + text.size());
      require(it == text.data() && info.findName(word) == nullptr, "a name refused");
    }
  };
  for (const Kiv::EnumModule* const module : Kiv::EnumRegistry::modules()) {
    for (const Kiv::EnumInfo* const info : module->enums()) check(*info);
  }
}

// ---- Optional integers.

// A kind with bounds.
class Percentage final : public BgpMaybeU63 {
 public:
  static constexpr U64 least = 10;
  static constexpr U64 most = 1000;

  Percentage() = default;
  explicit Percentage(U64 word) : BgpMaybeU63(word, Unchecked{}) { checkValue(); }
  U64 min() const override { return least; }
  U64 max() const override { return most; }
};

void checkPercentage(std::string_view text) {
  Percentage value(U64{77});
  const char* it = text.data();
  if (takes<BgpMaybeU63>(it, it + text.size(), &value)) {
    require(value.isUnspecified() || (value >= U64{10} && value <= U64{1000}), "out of bounds");
    requireSame(value.toStrep(), written(static_cast<const Dorn::MaybeU63&>(value)), "text");
  } else {
    require(it == text.data() && (value.isUnspecified() || value.word() == 77), "half a value");
  }
  checkReader<Dorn::MaybeU63, Texts::several>(text);
}

// ---- Settings.

// Nothing is traced meanwhile.
void checkTraceLevels(std::string_view text) {
  try {
    Kiv::traceLevelsIs(text);
    Kiv::traceLevelsIs("");
  } catch (const Kiv::RangeException&) {
  }
}

constexpr auto checks = std::to_array<void (*)(std::string_view)>({
    checkEnums,
    checkNumber<U8>,
    checkNumber<U16>,
    checkNumber<U32>,
    checkNumber<U64>,
    checkReader<bool, Texts::one>,
    checkReader<Kiv::RawPointer, Texts::several>,
    checkWord<ExtCommContent>,
    checkReader<ExtCommIp6Content, Texts::several>,
    checkRouteTarget,
    checkRouteTargetPrefix,
    checkAddress,
    checkPercentage,
    checkWhole<BgpDenseU32Attr>,
    checkWhole<BgpParseExtendedCommunityRuleKey>,
    checkFlags<ExtComm::StrepFormat>,
    checkFlags<ExtCommIp6::StrepFormat>,
    checkFlags<ExtCommList::CommVectorAttrs>,
    checkFlags<ExtCommList::Serialization>,
    checkFlags<ExtCommClassificationList::CommVectorAttrs>,
    checkTraceLevels,
});

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const auto check = checks[input.below(checks.size())];
  // Of exactly that length, so that a sanitizer sees what reads beyond it.
  const std::string_view text = input.text();
  check(text);
  return 0;
}
