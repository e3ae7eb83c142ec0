#include "Routing/Bgp/RouteTarget.h"

#include <algorithm>
#include <charconv>
#include <ostream>

#include "Kiv/Exception.h"
#include "Routing/Bgp/Detail/AdministratorText.h"

namespace Routing::Bgp {
namespace {

constexpr std::string_view hexPrefix = "0x";
constexpr unsigned hexDigits = 16;
// The longest text: an IPv4 address, a colon and five digits.
using Text = OvFmt::StackBackedBuffer<48>;

constexpr U32 octetMax = 0xff;
constexpr U32 halfMax = 0xffff;

// The value form: every number has the same length, so the texts also sort like the numbers.
void appendHex(OvFmt::DynamicBufferInterface& to, U64 value) {
  to.append(hexPrefix);
  to.appendHex(value, hexDigits);
}

// At most 64 octets of the text are repeated, because it may come from an untrusted source.
[[noreturn]] void throwNoRouteTarget(std::string_view text) {
  throw Kiv::RangeException("\"" + Kiv::String(text.substr(0, 64)) + "\" is not a route target");
}

// Parses `text` as one decimal number of at most `max`. Throws Kiv::RangeException if any octet is
// left over; from_chars accepts neither a plus sign nor blanks.
U32 number(std::string_view text, U32 max) {
  U32 value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc{} || stop != end || value > max) throwNoRouteTarget(text);
  return value;
}

// Removes the text up to the next dot from `rest`, with the dot, and returns it without the dot.
std::string_view takePart(std::string_view& rest) {
  const std::string_view part = rest.substr(0, rest.find('.'));
  rest.remove_prefix(part.size() == rest.size() ? part.size() : part.size() + 1);
  return part;
}

// Parses `parts` numbers with dots between them, each of `bits` bits. The caller has counted the
// dots.
U32 dotted(std::string_view text, int parts, unsigned bits, U32 max) {
  U32 value = 0;
  std::string_view rest = text;
  for (int i = 0; i < parts; ++i) value = value << bits | number(takePart(rest), max);
  return value;
}

}  // namespace

// Errors from parts of the text are raised again with the whole text, which is what the user typed.
RouteTarget::RouteTarget(std::string_view text) {
  try {
    *this = fromText(text);
  } catch (const Kiv::RangeException&) {
    throwNoRouteTarget(text);
  }
}

// The number of dots in the administrator selects the form: none for a plain AS number, one for
// asdot, three for an IPv4 address. A plain AS number above 65535 needs the four-octet form.
RouteTarget RouteTarget::fromText(std::string_view text) {
  if (text.starts_with(hexPrefix)) {
    RouteTarget value;
    const char* it = text.data();
    sequenceToValue(it, text.data() + text.size(), &value);
    if (it != text.data() + text.size()) throwNoRouteTarget(text);
    return value;
  }
  const std::size_t colon = text.find(':');
  if (colon == text.npos) throwNoRouteTarget(text);
  const std::string_view administrator = text.substr(0, colon);
  const std::string_view local = text.substr(colon + 1);
  switch (std::count(administrator.begin(), administrator.end(), '.')) {
    case 0:
      break;
    case 1:
      return wide(typeFourOctetAs, dotted(administrator, 2, 16, halfMax), local);
    case 3:
      return wide(typeIpv4Address, dotted(administrator, 4, 8, octetMax), local);
    default:
      throwNoRouteTarget(text);
  }
  const U32 as = number(administrator, ~U32{0});
  if (as > halfMax) return wide(typeFourOctetAs, as, local);
  return RouteTarget(typeTwoOctetAs << 56 | subtype << 48 | U64{as} << 32 | number(local, ~U32{0}));
}

// The two forms with an administrator of four octets and a local number of two octets.
RouteTarget RouteTarget::wide(U64 type, U64 administrator, std::string_view local) {
  return RouteTarget(type << 56 | subtype << 48 | administrator << 16 | number(local, halfMax));
}

// The two-octet form has a local number of 32 bits, the others one of 16 bits.
void RouteTarget::appendText(OvFmt::DynamicBufferInterface& to, bool asdot) const {
  if (!isRouteTarget()) return appendHex(to, value_);
  const U64 type = value_ >> 56;
  const U32 administrator = static_cast<U32>(value_ >> 16);
  if (type == typeTwoOctetAs) {
    to.appendDecimal(static_cast<U16>(value_ >> 32));
  } else if (type == typeIpv4Address) {
    appendIpv4Address(to, administrator);
  } else {
    appendAsNumber(to, administrator, asdot);
  }
  to.append(':');
  to.appendDecimal(static_cast<U32>(value_) & (type == typeTwoOctetAs ? ~U32{0} : halfMax));
}

Kiv::String RouteTarget::toStrep(bool asdot) const {
  Text text;
  appendText(text, asdot);
  return text.str();
}

Kiv::String valueToStrep(const RouteTarget& routeTarget) {
  Text text;
  appendHex(text, routeTarget.value());
  return text.str();
}

// from_chars alone would accept fewer digits, so its end is compared. Upper-case digits are
// accepted.
void sequenceToValue(const char*& it, const char* end, RouteTarget* target) {
  const std::string_view text(it, static_cast<std::size_t>(end - it));
  const std::size_t size = hexPrefix.size() + hexDigits;
  U64 value = 0;
  if (text.size() >= size && text.starts_with(hexPrefix)) {
    const char* const digits = it + hexPrefix.size();
    if (std::from_chars(digits, it + size, value, 16).ptr == it + size) {
      it += size;
      *target = RouteTarget(value);
      return;
    }
  }
  throw Kiv::RangeException("0x and 16 hexadecimal digits expected");
}

// write() rather than <<, which would apply width and fill of the stream.
std::ostream& operator<<(std::ostream& out, const RouteTarget& routeTarget) {
  Text text;
  routeTarget.appendText(text, false);
  return out.write(text.view().data(), static_cast<std::streamsize>(text.size()));
}

}  // namespace Routing::Bgp
