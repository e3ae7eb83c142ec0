#include "OvBgp/Value/RouteTargetPrefix.h"

#include <algorithm>
#include <bit>
#include <ostream>

#include "Kiv/Assert.h"
#include "Kiv/AttributeReader.h"
#include "Kiv/Exception.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {
namespace {

// The fixed texts of the value form, around its two attributes.
constexpr const char* valueBegin = "Value('Routing::Bgp::RouteTargetPrefix', ** {";
constexpr const char* prefixLabel = "'prefix': ";
constexpr const char* lengthLabel = ", 'length': ";
constexpr const char* valueEnd = "})";

// Constructors, readers and bitlenIs throw the same text, which the interface gives.
[[noreturn]] void throwLength() {
  throw Kiv::RangeException("RouteTargetPrefix::length < 0 or > 64 not allowed");
}

// Reads the value form at the reader's position. Throws Kiv::RangeException on any other text.
RouteTargetPrefix readPrefix(Kiv::AttributeReader& reader) {
  RouteTarget prefix;
  U64 length = 0;  // not a U8, so that a number above 255 is refused like 65
  reader.expect(valueBegin);
  reader.expect(prefixLabel);
  reader.value("prefix", &prefix);
  reader.expect(lengthLabel);
  reader.value("length", &length);
  reader.expect(valueEnd);
  if (length > RouteTargetPrefix::bitlenMax) throwLength();
  return RouteTargetPrefix(prefix.value(), static_cast<U8>(length));
}

}  // namespace

// *this is assigned only after the end of the text has been checked.
RouteTargetPrefix::RouteTargetPrefix(const Kiv::String& valueForm) {
  const char* it = valueForm.data();
  Kiv::AttributeReader reader(it, it + valueForm.size());
  const RouteTargetPrefix read = readPrefix(reader);
  reader.expectEnd();
  *this = read;
}

void RouteTargetPrefix::checkLength() const {
  if (length_ > bitlenMax) throwLength();
}

// The length is stored before the check, because the interface keeps a refused length; storing it a
// second time is then no change and not checked. The bits are cleared even if the length is
// unchanged, since the constructors leave them.
void RouteTargetPrefix::bitlenIs(std::size_t bitlen) {
  KIV_ASSERT(bitlen >> 8 == 0, "0 == ( bitlen >> 8 )", "OvBgp/RouteTargetPrefix");
  if (bitlen != length_) {
    length_ = static_cast<U8>(bitlen);
    checkLength();
  }
  prefix_ &= mask();
}

// The XOR of the prefixes has its highest 1 at the first bit in which they differ.
U8 RouteTargetPrefix::commonPrefixLen(const RouteTargetPrefix& other) const {
  const auto agreeing = static_cast<U8>(std::countl_zero(prefix_ ^ other.prefix_));
  return std::min({length_, other.length_, agreeing});
}

// 48 octets hold the longest route target, "/" and two digits.
Kiv::String RouteTargetPrefix::toStrep(bool asdot) const {
  if (length_ == 0) return "0/0";
  OvFmt::StackBackedBuffer<48> text;
  RouteTarget(prefix_).appendText(text, asdot);
  text.append('/');
  text.appendDecimal(length_);
  return text.str();
}

Kiv::String valueToStrep(const RouteTargetPrefix& prefix) {
  return Kiv::String(valueBegin) + prefixLabel + valueToStrep(RouteTarget(prefix.prefixBits())) +
         lengthLabel + Kiv::valueToStrep(prefix.bitlen()) + valueEnd;
}

// `it` moves only after the whole text has been read.
void sequenceToValue(const char*& it, const char* end, RouteTargetPrefix* target) {
  const char* at = it;
  Kiv::AttributeReader reader(at, end);
  *target = readPrefix(reader);
  it = at;
}

std::ostream& operator<<(std::ostream& out, const RouteTargetPrefix& prefix) {
  const Kiv::String text = prefix.toStrep(false);
  return out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

}  // namespace Routing::Bgp
