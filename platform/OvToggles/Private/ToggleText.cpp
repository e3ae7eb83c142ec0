#include "OvToggles/Private/ToggleText.h"

#include <algorithm>

#include "Kiv/Types.h"

namespace OvToggles {
namespace {

// A recursive-descent parser without recursion, since the object is flat. `at_` is the position of
// the next octet; a failing function leaves it where the error is to be reported.
class ToggleReader {
 public:
  explicit ToggleReader(std::string_view text) : text_(text) {}

  ToggleStates read() {
    take('{', "'{'");
    skipBlanks();
    if (peek() != '}') {
      do takeMember();
      while (takeIf(','));
    }
    take('}', "',' or '}'");
    skipBlanks();
    if (at_ != text_.size()) fail("the end of the file");
    return std::move(states_);
  }

 private:
  // Differs from every octet, because peek() returns octets as unsigned.
  static constexpr int endOfText = -1;

  int peek() const {
    return at_ < text_.size() ? static_cast<unsigned char>(text_[at_]) : endOfText;
  }

  // The four blanks of RFC 8259, section 2.
  void skipBlanks() { at_ = std::min(text_.find_first_not_of(" \t\r\n", at_), text_.size()); }

  bool takeIf(char wanted) {
    skipBlanks();
    if (peek() != wanted) return false;
    ++at_;
    return true;
  }

  void take(char wanted, const char* expected) {
    if (!takeIf(wanted)) fail(expected);
  }

  // One name with its state. For a name that occurs twice, the error is reported at the name: a
  // silent choice between two states would be a trap for the operator.
  void takeMember() {
    skipBlanks();
    const std::size_t nameAt = at_;
    Kiv::String name = takeName();
    take(':', "':'");
    skipBlanks();
    if (!states_.emplace(std::move(name), takeState()).second) {
      at_ = nameAt;
      fail("a name that has not been given before");
    }
  }

  bool takeState() {
    for (const bool state : {true, false}) {
      const std::string_view word = state ? "true" : "false";
      if (text_.substr(at_, word.size()) != word) continue;
      at_ += word.size();
      return state;
    }
    fail("true or false");
  }

  // A string. Control characters must be escaped (RFC 8259, section 7).
  Kiv::String takeName() {
    if (peek() != '"') fail("a name in double quotes");
    ++at_;
    Kiv::String name;
    while (peek() != '"') {
      // True for control characters, and for endOfText, which is negative.
      if (peek() < ' ') fail("'\"' at the end of the name");
      if (peek() == '\\') {
        takeEscape(name);
      } else {
        name += text_[at_++];
      }
    }
    ++at_;
    return name;
  }

  // A backslash and what follows it. The last of `letters`, u, has no entry in `meanings`.
  void takeEscape(Kiv::String& name) {
    constexpr std::string_view letters = "\"\\/bfnrtu";
    constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
    ++at_;
    const std::size_t index = at_ < text_.size() ? letters.find(text_[at_]) : letters.npos;
    if (index == letters.npos) fail("one of \"\\/bfnrtu after '\\'");
    ++at_;
    if (index < meanings.size()) {
      name += meanings[index];
    } else {
      appendUtf8(name, takeCodePoint());
    }
  }

  // The text behind "\u": four digits of one UTF-16 code unit, or a surrogate pair written as two
  // escapes (RFC 8259, section 7). A lone surrogate is an error, because it has no UTF-8 form. at_
  // is then set back, so that the error names the place of the first unit.
  U32 takeCodePoint() {
    const std::size_t unitAt = at_;
    const U32 unit = takeCodeUnit();
    if (unit < 0xd800 || unit > 0xdfff) return unit;
    if (unit < 0xdc00 && text_.substr(at_, 2) == "\\u") {
      at_ += 2;
      const U32 low = takeCodeUnit();
      if (low >= 0xdc00 && low <= 0xdfff) return 0x10000 + ((unit - 0xd800) << 10) + (low - 0xdc00);
    }
    at_ = unitAt;
    fail("a character or a whole surrogate pair");
  }

  // Four hexadecimal digits in either case.
  U32 takeCodeUnit() {
    U32 unit = 0;
    for (int i = 0; i < 4; ++i, ++at_) {
      constexpr std::string_view digits = "0123456789abcdef";
      const int c = peek() >= 'A' && peek() <= 'F' ? peek() - 'A' + 'a' : peek();
      const std::size_t digit = c == endOfText ? digits.npos : digits.find(static_cast<char>(c));
      if (digit == digits.npos) fail("a hexadecimal digit");
      unit = unit << 4 | static_cast<U32>(digit);
    }
    return unit;
  }

  // Appends a code point as one to four octets (RFC 3629).
  static void appendUtf8(Kiv::String& name, U32 codePoint) {
    const auto put = [&name](U32 octet) { name += static_cast<char>(octet); };
    if (codePoint < 0x80) return put(codePoint);
    if (codePoint < 0x800) {
      put(0xc0 | codePoint >> 6);
    } else {
      if (codePoint < 0x10000) {
        put(0xe0 | codePoint >> 12);
      } else {
        put(0xf0 | codePoint >> 18);
        put(0x80 | (codePoint >> 12 & 0x3f));
      }
      put(0x80 | (codePoint >> 6 & 0x3f));
    }
    put(0x80 | (codePoint & 0x3f));
  }

  // Describes the next octet for an error; octets that are not printable ASCII as numbers.
  Kiv::String found() const {
    const int c = peek();
    if (c == endOfText) return "the end of the file";
    if (c > ' ' && c < 0x7f) return Kiv::String("'") + static_cast<char>(c) + "'";
    return "octet " + std::to_string(c);
  }

  // Raises the error for the current place. Line and column are only counted here, so that reading
  // does not pay for them.
  [[noreturn]] void fail(const char* expected) const {
    const std::string_view before = text_.substr(0, at_);
    const auto lineEnds = std::count(before.begin(), before.end(), '\n');
    const std::size_t lineStart = before.rfind('\n') + 1;  // npos + 1 is 0: the first line
    throw ToggleTextError(Kiv::String("expected ") + expected + ", found " + found(),
                          static_cast<std::size_t>(lineEnds) + 1, at_ - lineStart + 1);
  }

  const std::string_view text_;
  std::size_t at_ = 0;
  ToggleStates states_;
};

}  // namespace

ToggleStates readToggleText(std::string_view text) { return ToggleReader(text).read(); }

}  // namespace OvToggles
