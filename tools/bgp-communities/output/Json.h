// Writing of JSON (RFC 8259) that is valid whatever values are written.
#ifndef TOOLS_BGP_COMMUNITIES_OUTPUT_JSON_H
#define TOOLS_BGP_COMMUNITIES_OUTPUT_JSON_H

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <string>
#include <string_view>

#include "tools/bgp-communities/input/Octets.h"

namespace CommTool {

// Writes one JSON text from front to back into a buffer. The caller is responsible for the
// structure: begins and ends must match, and each member needs a key before its value. Take the
// text with view() and reuse the object after clear(), which keeps the memory.
//
// Text may be any octets. Valid UTF-8 is kept; in other text each octet becomes the Unicode
// character of that number (Latin-1). Numbers from 2^53 on cannot be represented exactly by many
// readers, so they become null, as do numbers that are not finite. Owner thread only.
class Json {
 public:
  // Begins an object.
  void objectBegin() { writer_.StartObject(); }
  // Ends the innermost object.
  void objectEnd() { writer_.EndObject(); }
  // Begins an array.
  void arrayBegin() { writer_.StartArray(); }
  // Ends the innermost array.
  void arrayEnd() { writer_.EndArray(); }
  // Writes the name of the next member. `name` must be ASCII; it is not checked.
  void key(std::string_view name) {
    writer_.Key(name.data(), static_cast<rapidjson::SizeType>(name.size()));
  }

  // Writes a string, see above for octets that are not UTF-8.
  void text(std::string_view octets);
  // Writes a string of two lower-case hexadecimal digits for each octet.
  void hex(Octets octets);
  // Writes an integer, or null from 2^53 on.
  void number(U64 value);
  // Writes a number, or null if it is not finite.
  void number(double value);
  // Writes true or false.
  void boolean(bool value) { writer_.Bool(value); }
  // Writes null.
  void null() { writer_.Null(); }
  // Writes a value that is JSON text already. It is not checked.
  void written(std::string_view value, rapidjson::Type type) {
    writer_.RawValue(value.data(), value.size(), type);
  }

  // Writes a member that is a string.
  void add(std::string_view name, std::string_view octets) {
    key(name);
    text(octets);
  }
  // Writes a member that is an integer.
  void add(std::string_view name, U64 value) {
    key(name);
    number(value);
  }

  // The text so far, which is valid until the next change.
  std::string_view view() const { return {buffer_.GetString(), buffer_.GetSize()}; }
  // The length of the text so far, in octets.
  std::size_t size() const { return buffer_.GetSize(); }
  // Removes the text and keeps its memory.
  void clear() {
    buffer_.Clear();
    writer_.Reset(buffer_);
  }

 private:
  rapidjson::StringBuffer buffer_;
  rapidjson::Writer<rapidjson::StringBuffer> writer_{buffer_};
  std::string room_;  // for hex(), so that its memory is reused
};

// Appends two lower-case hexadecimal digits for each octet.
void appendHex(std::string& to, Octets octets);

// Whether the octets are valid UTF-8 (RFC 3629), so without surrogates and without overlong forms.
bool isUtf8(std::string_view octets);

}  // namespace CommTool

#endif
