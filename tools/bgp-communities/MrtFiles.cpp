#include "tools/bgp-communities/MrtFiles.h"

#include "tools/bgp-communities/MrtDecoder.h"
#include "tools/bgp-communities/Running.h"

namespace CommTool {

void MrtFiles::read(const std::string& path) {
  const std::string name = path == "-" ? "standard input" : path;
  try {
    Input input(path);
    ++counts_.files;
    readRecords(input, name);
  } catch (const CannotOpen& reason) {
    ++counts_.unopened;
    printError(errors_, name + ": " + reason.what());
  }
}

// A record that cannot be decoded is reported and the next one read; where the frame
// is broken, this file has ended.
void MrtFiles::readRecords(Input& input, const std::string& name) {
  MrtReader reader(input);
  MrtDecoder decoder(sink_, counts_);
  try {
    while (const MrtRecord* record = reader.next()) {
      decoder.decode(*record, problems_);
      if (!problems_.empty()) {
        report(name, *record, problems_.text());
        problems_.clear();
      }
    }
  } catch (const Malformed& malformed) {
    ++counts_.damaged;
    report(name, reader.position(), malformed.what());
  }
}

void MrtFiles::report(const std::string& name, const MrtRecord& record, const std::string& what) {
  printError(errors_, name + ": record " + std::to_string(record.number) + " at octet " +
                          std::to_string(record.offset) + ": " + what);
}

ExitStatus MrtFiles::status() const {
  if (counts_.files == 0 && counts_.unopened > 0) return ExitStatus::impossible;
  return counts_.damaged + counts_.unopened > 0 ? ExitStatus::damaged : ExitStatus::fine;
}

}  // namespace CommTool
