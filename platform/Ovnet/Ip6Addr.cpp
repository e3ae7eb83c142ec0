#include "Ovnet/Ip6Addr.h"

#include <optional>
#include <ostream>

#include "Kiv/Exception.h"

namespace Ovnet {
namespace {

constexpr std::size_t groupsMax = 8;

// --- Reading ---

// The value of a digit in `base`, 10 or 16. Independent of the locale, unlike isxdigit.
std::optional<U32> digitValue(char c, U32 base) {
  U32 value = base;
  if (c >= '0' && c <= '9') value = static_cast<U32>(c - '0');
  if (c >= 'a' && c <= 'f') value = static_cast<U32>(c - 'a') + 10;
  if (c >= 'A' && c <= 'F') value = static_cast<U32>(c - 'A') + 10;
  return value < base ? std::optional(value) : std::nullopt;
}

// Parses one address. Groups are filled in from the left; when the text is read, the groups behind
// "::" are moved to the right end. Every take function removes what it accepts from the begin of
// `rest_`, and returns false or nothing for a syntax error.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  std::optional<Ip6Addr::Octets> read() {
    if (rest_.substr(0, 2) == "::") takeGap();
    while (!rest_.empty()) {
      if (!takeItem()) return std::nullopt;
      if (!rest_.empty() && !takeSeparator()) return std::nullopt;
    }
    return placed();
  }

 private:
  void takeGap() {
    rest_.remove_prefix(2);
    gapAt_ = groups_;
  }

  // The separator behind a group: "::", at most once per address, or ":" with a group behind it.
  bool takeSeparator() {
    if (rest_.substr(0, 2) == "::") {
      if (gapAt_) return false;
      takeGap();
      return true;
    }
    if (rest_.front() != ':' || rest_.size() == 1) return false;
    rest_.remove_prefix(1);
    return true;
  }

  // One group, or the IPv4 address that may end the text. A rest without a colon but with a dot can
  // only be the latter.
  bool takeItem() {
    if (rest_.find(':') == rest_.npos && rest_.find('.') != rest_.npos) return takeIp4();
    const std::optional<U32> value = takeNumber(16, 4);
    return value && put(*value);
  }

  // Four decimal numbers, which fill two groups. Leading zeros are refused, because some parsers
  // read such numbers as octal.
  bool takeIp4() {
    U32 value = 0;
    for (int i = 0; i < 4; ++i) {
      if (i != 0 && !takeDot()) return false;
      const bool hasZeroInFront = rest_.size() > 1 && rest_[0] == '0' && digitValue(rest_[1], 10);
      const std::optional<U32> octet = takeNumber(10, 3);
      if (!octet || *octet > 255 || hasZeroInFront) return false;
      value = value << 8 | *octet;
    }
    return rest_.empty() && put(value >> 16) && put(value & 0xffff);
  }

  bool takeDot() {
    if (rest_.empty() || rest_.front() != '.') return false;
    rest_.remove_prefix(1);
    return true;
  }

  // At least one digit, at most `digitsMax`; further digits stay in rest_ and end in a syntax
  // error.
  std::optional<U32> takeNumber(U32 base, std::size_t digitsMax) {
    U32 value = 0;
    std::size_t digits = 0;
    for (; digits < rest_.size() && digits < digitsMax; ++digits) {
      const std::optional<U32> digit = digitValue(rest_[digits], base);
      if (!digit) break;
      value = value * base + *digit;
    }
    if (digits == 0) return std::nullopt;
    rest_.remove_prefix(digits);
    return value;
  }

  // Appends one group; false if there are eight already.
  bool put(U32 group) {
    if (groups_ == groupsMax) return false;
    octets_[2 * groups_] = static_cast<U8>(group >> 8);
    octets_[2 * groups_ + 1] = static_cast<U8>(group);
    ++groups_;
    return true;
  }

  // The address: either exactly eight groups, or fewer groups and a gap "::", which stands for at
  // least one group.
  std::optional<Ip6Addr::Octets> placed() {
    if ((groups_ == groupsMax) == gapAt_.has_value()) return std::nullopt;
    if (!gapAt_) return octets_;
    Ip6Addr::Octets result{};
    const auto gap = octets_.begin() + static_cast<std::ptrdiff_t>(2 * *gapAt_);
    const auto end = octets_.begin() + static_cast<std::ptrdiff_t>(2 * groups_);
    std::copy(octets_.begin(), gap, result.begin());
    std::copy_backward(gap, end, result.end());
    return result;
  }

  std::string_view rest_;
  Ip6Addr::Octets octets_{};
  std::size_t groups_ = 0;
  std::optional<std::size_t> gapAt_;  // the number of groups before "::"
};

// --- Writing ---

// The groups [begin, end) that "::" replaces; empty if no run is long enough.
struct ZeroRun {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::size_t size() const { return end - begin; }
};

// RFC 5952, sections 4.2.2 and 4.2.3: one single group of zeros is not shortened, and of runs of
// equal length the first one is.
ZeroRun longestZeroRun(const Ip6Addr& addr, std::size_t groups) {
  ZeroRun longest;
  ZeroRun run;
  for (std::size_t i = 0; i < groups; ++i) {
    if (addr.group(i) != 0) continue;
    if (run.end != i) run.begin = i;
    run.end = i + 1;
    if (run.size() > longest.size()) longest = run;
  }
  return longest.size() >= 2 ? longest : ZeroRun();
}

// One group without leading zeros.
char* writeHex(char* at, U32 group) {
  const char* const digits = "0123456789abcdef";
  if (group > 0xfff) *at++ = digits[group >> 12];
  if (group > 0xff) *at++ = digits[group >> 8 & 0xf];
  if (group > 0xf) *at++ = digits[group >> 4 & 0xf];
  *at++ = digits[group & 0xf];
  return at;
}

// The first `groups` groups. No colon before the first group, nor directly behind "::", which has
// both of its colons.
char* writeGroups(char* at, const Ip6Addr& addr, std::size_t groups) {
  const ZeroRun zeros = longestZeroRun(addr, groups);
  for (std::size_t i = 0; i < groups;) {
    if (i == zeros.begin && zeros.size() != 0) {
      *at++ = ':';
      *at++ = ':';
      i = zeros.end;
      continue;
    }
    if (i != 0 && i != zeros.end) *at++ = ':';
    at = writeHex(at, addr.group(i++));
  }
  return at;
}

// ":a.b.c.d", the last 32 bits of an IPv4-mapped address.
char* writeIp4(char* at, const U8* octets) {
  for (int i = 0; i < 4; ++i) {
    *at++ = i == 0 ? ':' : '.';
    at = OvFmt::writeDecimal(at, U16{octets[i]});
  }
  return at;
}

}  // namespace

Ip6Addr::Ip6Addr(std::string_view text) {
  const std::optional<Octets> octets = Reader(text).read();
  if (!octets) {
    throw Kiv::RangeException("\"" + Kiv::String(text.substr(0, 64)) + "\" is not an IPv6 address");
  }
  octets_ = *octets;
}

void Ip6Addr::printToBuffer(OvFmt::DynamicBufferInterface& buffer) const {
  // The IPv4-mapped form must fit as well, with the octets that writeDecimal touches behind it.
  static_assert(textSizeMax > sizeof "::ffff:255.255.255.255" - 1 + OvFmt::decimalRoomU16);
  char* at = buffer.reserve(textSizeMax);
  if (isIp4Mapped()) {
    at = writeIp4(writeGroups(at, *this, 6), octets_.data() + 12);
  } else {
    at = writeGroups(at, *this, groupsMax);
  }
  buffer.advanceTo(at);
}

Kiv::String Ip6Addr::stringValue() const {
  OvFmt::StackBackedBuffer<textSizeMax> buffer;
  printToBuffer(buffer);
  return buffer.str();
}

Kiv::String valueToStrep(const Ip6Addr& addr) { return addr.stringValue(); }

std::ostream& operator<<(std::ostream& out, const Ip6Addr& addr) {
  return out << addr.stringValue();
}

}  // namespace Ovnet
