// Runs a fuzz target on files, for compilers without a fuzzer and for replaying what
// one has found: each argument is a file, or a folder of them at any depth.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Path = std::filesystem::path;

std::vector<Path> filesOf(int argc, char** argv) {
  std::vector<Path> files;
  for (int i = 1; i < argc; ++i) {
    if (!std::filesystem::is_directory(argv[i])) {
      files.emplace_back(argv[i]);
      continue;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i])) {
      if (entry.is_regular_file()) files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

// Exactly as long as the file, so that a sanitizer sees what reads beyond it.
std::vector<std::uint8_t> contentsOf(const Path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::filesystem::filesystem_error("cannot read", path, std::error_code());
  std::vector<std::uint8_t> octets{std::istreambuf_iterator<char>(file), {}};
  octets.shrink_to_fit();
  return octets;
}

int run(int argc, char** argv) {
  const std::vector<Path> files = filesOf(argc, argv);
  for (const Path& file : files) {
    // Says, if the next line does not come, which file it was.
    std::printf("%s\n", file.c_str());
    std::fflush(stdout);
    const std::vector<std::uint8_t> octets = contentsOf(file);
    LLVMFuzzerTestOneInput(octets.data(), octets.size());
  }
  std::printf("%zu files\n", files.size());
  return files.empty() ? 1 : 0;  // a corpus that is not there tests nothing
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
