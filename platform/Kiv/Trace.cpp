#include "Kiv/Trace.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <utility>
#include <vector>

#include "Kiv/Exception.h"

namespace Kiv {
namespace {

// One entry of a level text: the levels (bit n: level n) of one handle, or of all with "*".
struct LevelSetting {
  Kiv::String handle;
  U32 levels;

  U32 levelsFor(std::string_view name) const {
    return handle == "*" || handle == name ? levels : 0;
  }
};
using LevelSettings = std::vector<LevelSetting>;

// Removes the part before the first `separator`, and the separator itself, from `text`; returns
// this part. Without a separator, the part is the whole text.
std::string_view takePart(std::string_view& text, char separator) {
  const std::size_t end = text.find(separator);
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(end == text.npos ? text.size() : end + 1);
  return part;
}

[[noreturn]] void refuse(std::string_view entry) {
  throw RangeException("\"" + Kiv::String(entry) +
                       "\" is no trace setting such as BgpParse/8 or OvBgp/0-3+9");
}

bool isLevel(char c) { return c >= '0' && c <= '9'; }

// Converts "*", "8" or "0-3" to bits. `entry` is for the message only.
U32 readLevelRange(std::string_view range, std::string_view entry) {
  if (range == "*") range = "0-9";
  const bool isOne = range.size() == 1 && isLevel(range[0]);
  const bool isRange = range.size() == 3 && isLevel(range[0]) && range[1] == '-' &&
                       isLevel(range[2]) && range[0] <= range[2];
  if (!isOne && !isRange) refuse(entry);
  const auto first = static_cast<unsigned>(range.front() - '0');
  const auto last = static_cast<unsigned>(range.back() - '0');
  return (U32{2} << last) - (U32{1} << first);
}

LevelSetting readSetting(std::string_view entry) {
  std::string_view ranges = entry;
  LevelSetting setting{Kiv::String(takePart(ranges, '/')), 0};
  // A trailing "+" must be tested here, since takePart() would not return an empty last part.
  if (setting.handle.empty() || ranges.empty() || ranges.back() == '+') refuse(entry);
  while (!ranges.empty()) setting.levels |= readLevelRange(takePart(ranges, '+'), entry);
  return setting;
}

LevelSettings readSettings(std::string_view text) {
  LevelSettings settings;
  while (!text.empty()) settings.push_back(readSetting(takePart(text, ',')));
  return settings;
}

// A malformed variable must not stop the process: the host did not choose it. So it is reported and
// ignored.
LevelSettings settingsOfEnvironment() {
  const char* const text = std::getenv("KIV_TRACE");
  if (text == nullptr) return {};
  try {
    return readSettings(text);
  } catch (const RangeException& error) {
    std::fprintf(stderr, "KIV_TRACE ignored: %s\n", error.what());
    return {};
  }
}

}  // namespace

// All handles on which enabled() was called, and the settings for handles that register later. Its
// mutex is never held while user code runs.
class TraceRegister {
 public:
  // Created on first use and never destroyed, because the order in which static handles are
  // destroyed is not known.
  static TraceRegister& instance() {
    static TraceRegister& theRegister = *new TraceRegister;
    return theRegister;
  }

  void add(const TraceHandle& handle) {
    const std::lock_guard lock(mutex_);
    // Test again with the mutex: another thread may have registered the handle meanwhile.
    if (handle.levels_.load(std::memory_order_relaxed) != TraceHandle::notRegistered) return;
    handle.next_ = std::exchange(first_, &handle);
    handle.levels_.store(levelsFor(handle), std::memory_order_relaxed);
  }

  void del(const TraceHandle& handle) {
    const std::lock_guard lock(mutex_);
    for (const TraceHandle** at = &first_; *at != nullptr; at = &(*at)->next_) {
      if (*at != &handle) continue;
      *at = handle.next_;
      // Destructors that run later may still call enabled(); 0 keeps the handle off and
      // unregistered.
      handle.levels_.store(0, std::memory_order_relaxed);
      return;
    }
  }

  void settingsIs(LevelSettings settings) {
    const std::lock_guard lock(mutex_);
    settings_ = std::move(settings);
    for (const TraceHandle* handle = first_; handle != nullptr; handle = handle->next_) {
      handle->levels_.store(levelsFor(*handle), std::memory_order_relaxed);
    }
  }

 private:
  // Reads the environment once, at the first use of any handle.
  TraceRegister() : settings_(settingsOfEnvironment()) {}

  U32 levelsFor(const TraceHandle& handle) const {
    U32 levels = 0;
    for (const LevelSetting& setting : settings_) levels |= setting.levelsFor(handle.name());
    return levels;
  }

  std::mutex mutex_;
  LevelSettings settings_;
  const TraceHandle* first_ = nullptr;
};

TraceHandle::~TraceHandle() {
  if (levels_.load(std::memory_order_relaxed) != notRegistered)
    TraceRegister::instance().del(*this);
}

bool TraceHandle::enabledOnceRegistered(unsigned level) const {
  TraceRegister::instance().add(*this);
  return (levels_.load(std::memory_order_relaxed) & bitOf(level)) != 0;
}

void traceLevelsIs(std::string_view text) {
  TraceRegister::instance().settingsIs(readSettings(text));
}

namespace {

// The sink and the mutex that is held while the sink runs. Apart from the register, so that a sink
// may call traceLevelsIs().
struct SinkState {
  std::mutex mutex;
  TraceSink sink;
};

SinkState& sinkState() {
  static SinkState& state = *new SinkState;  // never destroyed, like the register
  return state;
}

// Whether this thread is inside the sink. A message of the sink itself would otherwise wait for the
// mutex that the thread already holds.
thread_local bool isInSink = false;

// Writes the line with its end in one call. Standard error is unbuffered, so lines of other writers
// are not mixed into it.
void writeToStandardError(Kiv::String line) {
  line += '\n';
  std::fwrite(line.data(), 1, line.size(), stderr);
}

// Keeps a message of several lines in one line of output.
void appendOneLine(Kiv::String& line, std::string_view message) {
  for (const char c : message) {
    if (c == '\n') {
      line += "\\n";
    } else {
      line += c;
    }
  }
}

void send(const Kiv::String& line) {
  // Resets the mark also if the sink throws.
  struct InSink {
    InSink() { isInSink = true; }
    ~InSink() { isInSink = false; }
  };
  SinkState& state = sinkState();
  const std::lock_guard lock(state.mutex);
  const InSink inSink;
  if (state.sink) {
    state.sink(line);
  } else {
    writeToStandardError(line);
  }
}

}  // namespace

void traceSinkIs(TraceSink sink) {
  SinkState& state = sinkState();
  // Waits for a running call of the former sink. The former sink is destroyed after the mutex has
  // been released, with the parameter, because its captures may run code that traces.
  const std::lock_guard lock(state.mutex);
  state.sink.swap(sink);
}

void traceMessage(const TraceHandle& handle, unsigned level, std::string_view file, int line,
                  std::string_view message) {
  if (isInSink) return;
  const std::string_view fileName = file.substr(file.rfind('/') + 1);
  Kiv::String text = Kiv::String(handle.name()) + "/" + std::to_string(level) + " " +
                     Kiv::String(fileName) + ":" + std::to_string(line) + " ";
  appendOneLine(text, message);
  send(text);
}

}  // namespace Kiv
