#include "Kiv/Enum.h"

#include <algorithm>

#include "Kiv/Exception.h"
#include "Kiv/Strep.h"

namespace Kiv {
namespace {

// A message quotes at most this many characters of an unknown name. Every name of an enumeration is
// shorter; a text of the network could be of any length.
constexpr std::size_t maxQuoted = 80;

[[noreturn]] void throwNoMember(std::string_view enumeration, const char* what,
                                const String& which) {
  throw RangeException(String(enumeration) + ": no member " + what + " " + which);
}

[[noreturn]] void throwNoName(std::string_view enumeration, std::string_view name) {
  throwNoMember(enumeration, "named", "\"" + String(name.substr(0, maxQuoted)) + "\"");
}

}  // namespace

const EnumRow* EnumInfo::findValue(U64 value) const noexcept {
  // `value` has 64 bits: a number beyond 32 bits compares greater than every row and is not found,
  // where a conversion to U32 would find the member with the same low half.
  const auto at = std::ranges::lower_bound(byValue_, value, {}, &EnumRow::value);
  return at != byValue_.end() && at->value == value ? &*at : nullptr;
}

const EnumRow* EnumInfo::findName(std::string_view name) const noexcept {
  // Linear, because rows are not ordered by name, and names are looked up for texts only.
  const auto at = std::ranges::find(rows_, name, &EnumRow::name);
  return at != rows_.end() ? &*at : nullptr;
}

const EnumRow& EnumInfo::rowOfValue(U64 value) const {
  if (const EnumRow* row = findValue(value)) return *row;
  throwNoMember(name_, "with value", std::to_string(value));
}

const EnumRow& EnumInfo::rowOfName(std::string_view name) const {
  if (const EnumRow* row = findName(name)) return *row;
  throwNoName(name_, name);
}

const EnumRow& EnumInfo::rowAt(std::size_t position) const {
  if (position < rows_.size()) return rows_[position];
  throwNoMember(name_, "at position", std::to_string(position));
}

EnumInfo::Member EnumInfo::memberAt(std::size_t position) const {
  const EnumRow& row = rowAt(position);
  return {this, row.value, row.name, row.valid};
}

String EnumInfo::text(U32 value) const {
  // The parentheses keep the text of an unnamed number apart from every identifier.
  if (const EnumRow* row = findValue(value)) return String(row->name);
  return String(name_) + "(" + std::to_string(value) + ")";
}

const EnumRow& EnumInfo::read(const char*& it, const char* end) const {
  // Take the whole identifier first: names may begin alike ("tone", "toneHigh"), and the longest
  // one is meant.
  const std::string_view name = identifierAt(it, end);
  const EnumRow& row = rowOfName(name);
  it += name.size();
  return row;
}

}  // namespace Kiv
