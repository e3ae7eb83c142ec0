// JSON that is valid whatever is put into it.
#ifndef TOOLS_BGP_COMMUNITIES_JSON_H
#define TOOLS_BGP_COMMUNITIES_JSON_H

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <string>
#include <string_view>

#include "tools/bgp-communities/Octets.h"

namespace CommTool {

// Text of JSON, written front to back; no document is ever held. What comes out is
// to be passed on with view() and forgotten with clear(), which keeps the memory.
//
// Any octets may be given as text: UTF-8 stays as it is, and in any other text each
// octet becomes the character of its number. Numbers that readers may not be able
// to tell from their neighbours (2^53 and above) and those that are not finite
// become null.
class Json {
 public:
  void objectBegin() { writer_.StartObject(); }
  void objectEnd() { writer_.EndObject(); }
  void arrayBegin() { writer_.StartArray(); }
  void arrayEnd() { writer_.EndArray(); }
  // Names are ours, and plain ASCII.
  void key(std::string_view name) {
    writer_.Key(name.data(), static_cast<rapidjson::SizeType>(name.size()));
  }

  void text(std::string_view octets);
  void hex(Octets octets);
  void number(U64 value);
  void number(double value);
  void boolean(bool value) { writer_.Bool(value); }
  void null() { writer_.Null(); }
  // Text of JSON that was written before.
  void written(std::string_view value, rapidjson::Type type) {
    writer_.RawValue(value.data(), value.size(), type);
  }

  void add(std::string_view name, std::string_view octets) {
    key(name);
    text(octets);
  }
  void add(std::string_view name, U64 value) {
    key(name);
    number(value);
  }

  std::string_view view() const { return {buffer_.GetString(), buffer_.GetSize()}; }
  std::size_t size() const { return buffer_.GetSize(); }
  void clear() {
    buffer_.Clear();
    writer_.Reset(buffer_);
  }

 private:
  rapidjson::StringBuffer buffer_;
  rapidjson::Writer<rapidjson::StringBuffer> writer_{buffer_};
  std::string room_;  // of hex(), to reuse the memory
};

// Two lower-case digits an octet, appended.
void appendHex(std::string& to, Octets octets);

// Whether the octets are UTF-8 (RFC 3629: neither surrogates nor longer forms than
// need be).
bool isUtf8(std::string_view octets);

}  // namespace CommTool

#endif
