#include "Routing/Rib/LinkBandwidth.h"

#include <array>
#include <charconv>
#include <string_view>

namespace Routing::Rib {
namespace {

static_assert(sizeof(float) == sizeof(U32), "the wire carries IEEE 754 single precision");

// Octets for one number; the longest text is "-1.17549e-38".
constexpr std::size_t numberRoom = 16;

struct Unit {
  double bitsPerSecond;
  std::string_view name;
};
constexpr std::array units{Unit{1e12, "Tbps"}, Unit{1e9, "Gbps"}, Unit{1e6, "Mbps"},
                           Unit{1e3, "Kbps"}, Unit{1, "bps"}};

// The least number that six digits show as 1. A bandwidth of 1 Tbps is slightly less than that in
// single precision, and would otherwise be written as "1000Gbps".
constexpr double nearlyOne = 0.9999995;

// The largest unit that is not larger than the bandwidth; the smallest unit for bandwidths below
// it.
const Unit& unitFor(double bitsPerSecond) {
  for (const Unit& unit : units) {
    if (std::fabs(bitsPerSecond) >= nearlyOne * unit.bitsPerSecond) return unit;
  }
  return units.back();
}

// The same text as a stream's default format (%g), but independent of the locale.
void appendNumber(OvFmt::DynamicBufferInterface& to, double number) {
  char* const at = to.reserve(numberRoom);
  to.advanceTo(std::to_chars(at, at + numberRoom, number, std::chars_format::general, 6).ptr);
}

}  // namespace

// The bits per second are computed in double precision, because eight times the largest float is
// infinite.
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
