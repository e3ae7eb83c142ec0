#include "Kiv/FlagSet.h"

#include "Kiv/AttributeReader.h"
#include "Kiv/Exception.h"
#include "Kiv/Strep.h"

namespace Kiv {

String flagsToStrep(std::string_view typeName, std::span<const FlagRow> rows, U8 bits) {
  String text = "Value('" + String(typeName) + "', ** {";
  // `separator` includes the quote that opens the next name.
  const char* separator = "'";
  for (const FlagRow& row : rows) {
    text.append(separator).append(row.name).append("': ").append(
        boolToStrep((bits & row.bit) != 0));
    separator = ", '";
  }
  return text += "})";
}

U8 readFlags(const char*& it, const char* end, std::string_view typeName,
             std::span<const FlagRow> rows) {
  // Read with a copy of the iterator, because `it` must not move if the text turns out to be bad.
  const char* at = it;
  AttributeReader reader(at, end);
  reader.expect("Value('" + String(typeName) + "', ** {");
  // The format is strict: every flag must appear, in row order and with the exact punctuation, so
  // that two different texts never mean the same set.
  unsigned bits = 0;
  const char* separator = "'";
  for (const FlagRow& row : rows) {
    reader.expect(separator + String(row.name) + "': ");
    bool isSet = false;
    reader.value(row.name, &isSet);
    if (isSet) bits |= row.bit;
    separator = ", '";
  }
  reader.expect("})");
  it = at;
  return static_cast<U8>(bits);
}

U8 flagsFromText(const String& text, std::string_view typeName, std::span<const FlagRow> rows) {
  const char* it = text.data();
  const char* const end = it + text.size();
  const U8 bits = readFlags(it, end, typeName, rows);
  // A text as a whole is given, so trailing characters are an error here, unlike in readFlags().
  AttributeReader(it, end).expectEnd();
  return bits;
}

void throwDenseEnumBoolSetRangeException(std::string_view typeName, U8 bits) {
  throw RangeException(String(typeName) + ": value " + std::to_string(bits) +
                       " has bits that are no flag");
}

}  // namespace Kiv
