// Arbitrary text as a toggle file.  It is taken exactly if a general reader of JSON
// finds an object of booleans there, each name once; names and states are the same;
// and a complaint names a place in the text.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "OvToggles/OvToggles.h"
#include "fuzz/support/JsonGrammar.h"
#include "fuzz/support/MemoryFile.h"
#include "fuzz/support/Require.h"
#include "tools/bgp-communities/output/Json.h"

namespace {

using Fuzz::require;
using ToggleStates = std::map<std::string, bool>;

// Takes one flat object of booleans, and nothing else.
class FlatObject : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, FlatObject> {
 public:
  bool Default() { return false; }
  bool StartObject() { return !std::exchange(begun_, true); }
  bool EndObject(rapidjson::SizeType) { return true; }
  bool Key(const char* name, rapidjson::SizeType length, bool) {
    name_.assign(name, length);
    return true;
  }
  bool Bool(bool state) { return begun_ && states.emplace(name_, state).second; }

  ToggleStates states;

 private:
  bool begun_ = false;
  std::string name_;
};

// The reader takes the second half of a surrogate pair alone, which is no character.
bool hasHalfPair(const ToggleStates& states) {
  return std::ranges::any_of(states, [](const auto& toggle) {
    const std::string& name = toggle.first;
    for (std::size_t i = 0; i + 1 < name.size(); ++i) {
      if (name[i] == '\xED' && static_cast<U8>(name[i + 1]) >= 0xA0) return true;
    }
    return false;
  });
}

// Nothing if the text is no toggle file.
std::optional<ToggleStates> statesBySlowReader(std::string_view text) {
  FlatObject object;
  if (!Fuzz::readJson(text, object) || hasHalfPair(object.states)) return std::nullopt;
  return object.states;
}

std::string textOf(const ToggleStates& states) {
  CommTool::Json json;
  json.objectBegin();
  for (const auto& [name, state] : states) {
    json.key(name);
    json.boolean(state);
  }
  json.objectEnd();
  return std::string(json.view());
}

// While there is one, what is printed to standard error is kept here; what a
// sanitizer has to say goes to the descriptor.
class Reports {
 public:
  Reports() : stream_(::open_memstream(&text_, &size_)) { stderr = stream_; }
  ~Reports() {
    stderr = before_;
    std::fclose(stream_);
    std::free(text_);
  }
  Reports(const Reports&) = delete;
  Reports& operator=(const Reports&) = delete;

  std::string text() const {
    std::fflush(stream_);
    return {text_, size_};
  }

 private:
  char* text_ = nullptr;
  std::size_t size_ = 0;
  std::FILE* const before_ = stderr;
  std::FILE* const stream_;
};

// A toggle file, and what was reported of it.
class ToggleFile {
 public:
  explicit ToggleFile(std::string_view text)
      : file_({reinterpret_cast<const U8*>(text.data()), text.size()}), path_(file_.path()) {
    OvToggles::togglePathIs(path_.substr(0, path_.rfind('/')));
  }

  bool state(const std::string& name, bool defaultState) {
    const Reports reports;
    const bool state =
        OvToggles::getToggleState(name, path_.substr(path_.rfind('/') + 1), defaultState);
    report = reports.text();
    return state;
  }
  const std::string& path() const { return path_; }

  std::string report;

 private:
  const Fuzz::MemoryFile file_;
  const std::string path_;
};

void requireStates(std::string_view text, const ToggleStates& states) {
  ToggleFile file(text);
  std::size_t left = 8;  // as each is looked for in the file anew
  for (const auto& [name, state] : states) {
    if (left-- == 0) break;
    require(file.state(name, !state) == state, "a state");
    require(file.report.empty(), "a report of what is right");
  }
  const std::string absent = states.empty() ? "absent" : states.rbegin()->first + "x";
  for (const bool state : {false, true}) {
    require(file.state(absent, state) == state, "a default");
    require(file.report.empty(), "a report of what is right");
  }
}

// A place in the text is its line and, within that, its octet; both from 1.
void requirePlace(std::string_view text, std::size_t line, std::size_t column) {
  std::size_t begin = 0;
  for (std::size_t before = 1; before < line; ++before) {
    begin = text.find('\n', begin);
    require(begin != text.npos, "a line behind the end");
    ++begin;
  }
  const std::size_t end = std::min(text.find('\n', begin), text.size());
  require(line >= 1 && column >= 1 && column <= end - begin + 1, "a column");
}

void requireRefused(std::string_view text) {
  ToggleFile file(text);
  for (const bool state : {false, true}) {
    require(file.state("OvBgpLlgr", state) == state, "a state from what is no toggle file");
    std::size_t line = 0;
    std::size_t column = 0;
    const std::string format = "OvToggles: " + file.path() + ":%zu:%zu: expected ";
    require(std::sscanf(file.report.c_str(), format.c_str(), &line, &column) == 2, "no report");
    require(std::ranges::count(file.report, '\n') == 1, "a report of more than a line");
    requirePlace(text, line, column);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  // Names are octets for the one reader, and UTF-8 for the other.
  if (!CommTool::isUtf8(text)) {
    ToggleFile file(text);
    require(!file.state("OvBgpLlgr", false) || file.report.empty(), "a state and a report");
    return 0;
  }
  if (const auto states = statesBySlowReader(text)) {
    requireStates(text, *states);
    requireStates(textOf(*states), *states);
  } else {
    requireRefused(text);
  }
  return 0;
}
