#include "OvToggles/OvToggles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <system_error>

#include "OvToggles/Private/ToggleText.h"

namespace OvToggles {
namespace {

// Far more octets than toggles need. A wrong path, such as a large log file, must not fill the
// memory.
constexpr std::size_t fileSizeMax = 1 << 20;

// Protects pathSet().
std::mutex pathMutex;

// The folder set by togglePathIs. Never destroyed, because destructors of static objects may still
// read toggles.
Kiv::String& pathSet() {
  static Kiv::String& path = *new Kiv::String;
  return path;
}

// Owns the descriptor of an open file.
class File {
 public:
  // O_NONBLOCK: opening a named pipe without a writer would otherwise block.
  explicit File(const char* path) : fd_(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
  ~File() {
    if (fd_ >= 0) close(fd_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  bool isOpen() const { return fd_ >= 0; }
  bool isRegular() const {
    struct stat status;
    return fstat(fd_, &status) == 0 && S_ISREG(status.st_mode);
  }
  ssize_t readSome(char* at, std::size_t size) const {
    ssize_t count = 0;
    do count = read(fd_, at, size);
    while (count < 0 && errno == EINTR);
    return count;
  }

 private:
  const int fd_;
};

// The system's text for an errno value.
[[noreturn]] void refuse(int error) {
  throw Kiv::Exception(std::generic_category().message(error));
}

// The content of the file, or nothing if the file does not exist, which is the ordinary case of an
// agent without toggles. Raises Kiv::Exception.
std::optional<Kiv::String> contentOf(const Kiv::String& path) {
  const File file(path.c_str());
  if (!file.isOpen()) {
    if (errno == ENOENT) return std::nullopt;
    refuse(errno);
  }
  if (!file.isRegular()) throw Kiv::Exception("not a regular file");
  Kiv::String content;
  char block[4096];
  while (const ssize_t count = file.readSome(block, sizeof block)) {
    if (count < 0) refuse(errno);
    content.append(block, static_cast<std::size_t>(count));
    if (content.size() > fileSizeMax) throw Kiv::Exception("larger than 1048576 octets");
  }
  return content;
}

// Writes one line to standard error, in one call, so that lines of several threads do not mix. An
// exception instead could stop an agent from starting because of a typing error in a toggle file.
void report(const Kiv::String& place, const char* what, const Kiv::String& name, bool state) {
  const Kiv::String line = "OvToggles: " + place + ": " + what + "; toggle " + name +
                           " keeps its default (" + (state ? "on" : "off") + ")\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace

bool getToggleState(const Kiv::String& name, const Kiv::String& file, bool defaultState) {
  const Kiv::String folder = togglePath();
  if (folder.empty()) return defaultState;
  const Kiv::String path = folder + "/" + file;
  try {
    const std::optional<Kiv::String> content = contentOf(path);
    if (!content) return defaultState;
    const ToggleStates states = readToggleText(*content);
    const auto found = states.find(name);
    return found == states.end() ? defaultState : found->second;
  } catch (const ToggleTextError& error) {
    report(path + ":" + std::to_string(error.line) + ":" + std::to_string(error.column),
           error.what(), name, defaultState);
  } catch (const Kiv::Exception& error) {
    report(path, error.what(), name, defaultState);
  }
  return defaultState;
}

// getenv under the lock does not protect against setenv in other threads: the host must not change
// its environment while it uses the library.
Kiv::String togglePath() {
  const std::lock_guard lock(pathMutex);
  if (!pathSet().empty()) return pathSet();
  const char* const fromEnvironment = std::getenv("OV_TOGGLES_PATH");
  return fromEnvironment == nullptr ? "" : fromEnvironment;
}

void togglePathIs(const Kiv::String& folder) {
  const std::lock_guard lock(pathMutex);
  pathSet() = folder;
}

}  // namespace OvToggles
