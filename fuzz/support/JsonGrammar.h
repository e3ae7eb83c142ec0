// Whether a text is JSON, by a reader that forgives nothing.
#ifndef FUZZ_SUPPORT_JSON_GRAMMAR_H
#define FUZZ_SUPPORT_JSON_GRAMMAR_H

#include <rapidjson/error/error.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <string_view>

namespace Fuzz {

// Passes what `text` says to `handler`, an extension of rapidjson::BaseReaderHandler.
// False if it is not one value of JSON in UTF-8, with nothing behind it.
// `more` are further flags of its parser.
template <unsigned more = 0, class Handler>
bool readJson(std::string_view text, Handler& handler) {
  // The reader would take a NUL for the end of the text.
  if (text.find('\0') != text.npos) return false;
  rapidjson::MemoryStream stream(text.data(), text.size());
  rapidjson::Reader reader;
  constexpr unsigned strictly =
      rapidjson::kParseValidateEncodingFlag | rapidjson::kParseIterativeFlag | more;
  return !reader.Parse<strictly>(stream, handler).IsError();
}

inline bool isJson(std::string_view text) {
  rapidjson::BaseReaderHandler<> nobody;
  return readJson(text, nobody);
}

}  // namespace Fuzz

#endif
