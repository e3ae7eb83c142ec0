#include "Routing/Rib/LinkBandwidth.h"

#include <array>
#include <charconv>
#include <string_view>

namespace Routing::Rib {
namespace {

static_assert(sizeof(float) == sizeof(U32), "the wire carries IEEE 754 single precision");

// "-1.17549e-38" is as long as it gets.
constexpr std::size_t numberRoom = 16;

struct Unit {
  double bitsPerSecond;
  std::string_view name;
};
constexpr std::array units{Unit{1e12, "Tbps"}, Unit{1e9, "Gbps"}, Unit{1e6, "Mbps"},
                           Unit{1e3, "Kbps"}, Unit{1, "bps"}};

// What six digits show as a whole one: 1 Tbps, which single precision cannot hold,
// is not to be "1000Gbps".
constexpr double nearlyOne = 0.9999995;

// The largest unit of which there is at least one; the smallest if there is none.
const Unit& unitFor(double bitsPerSecond) {
  for (const Unit& unit : units) {
    if (std::fabs(bitsPerSecond) >= nearlyOne * unit.bitsPerSecond) return unit;
  }
  return units.back();
}

// What a stream writes by default, without its locale.
void appendNumber(OvFmt::DynamicBufferInterface& to, double number) {
  char* const at = to.reserve(numberRoom);
  to.advanceTo(std::to_chars(at, at + numberRoom, number, std::chars_format::general, 6).ptr);
}

}  // namespace

void LinkBandwidth::appendText(OvFmt::DynamicBufferInterface& to, bool weighted) const {
  if (weighted || !std::isfinite(bytesPerSecond_)) return appendNumber(to, bytesPerSecond_);
  const double bitsPerSecond = double{bytesPerSecond_} * 8;
  const Unit& unit = unitFor(bitsPerSecond);
  appendNumber(to, bitsPerSecond / unit.bitsPerSecond);
  to.append(unit.name);
}

Kiv::String LinkBandwidth::toStrep(bool weighted) const {
  OvFmt::StackBackedBuffer<32> text;
  appendText(text, weighted);
  return text.str();
}

}  // namespace Routing::Rib
