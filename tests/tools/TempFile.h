// Temporary files that are deleted at the end of a test.
#ifndef TESTS_TOOLS_TEMP_FILE_H
#define TESTS_TOOLS_TEMP_FILE_H

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string>

#include "Kiv/Types.h"

namespace CommTool {

class TempFile {
 public:
  TempFile() : path_("/tmp/bgp-communities-test-XXXXXX"), fd_(::mkstemp(path_.data())) {
    if (fd_ < 0) {
      throw std::runtime_error("no temporary file");
    }
  }
  explicit TempFile(std::span<const U8> contents) : TempFile() {
    std::ofstream(path_, std::ios::binary)
        .write(reinterpret_cast<const char*>(contents.data()),
               static_cast<std::streamsize>(contents.size()));
  }
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;
  ~TempFile() {
    ::close(fd_);
    ::unlink(path_.c_str());
  }

  const std::string& path() const { return path_; }
  int fd() const { return fd_; }
  std::string contents() const {
    std::ifstream file(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  std::string path_;
  int fd_;
};

}  // namespace CommTool

#endif
