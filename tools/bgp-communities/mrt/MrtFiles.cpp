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
    bytesBefore_ += input.bytesRead();
  } catch (const CannotOpen& reason) {
    ++counts_.unopened;
    errorCounts_.add(reason.what());
    complain(name + ": " + reason.what());
  }
}

// A record that cannot be decoded is reported and the next one read; where the frame
// is broken, this file has ended.
void MrtFiles::readRecords(Input& input, const std::string& name) {
  MrtReader reader(input);
  MrtDecoder decoder(sink_, counts_);
  try {
    while (const MrtRecord* record = reader.next()) {
      decode(*record, decoder, name);
      if (progress_ != nullptr) {
        progress_->update(bytesBefore_ + input.bytesRead(), counts_.records);
      }
    }
  } catch (const Malformed& malformed) {
    ++counts_.damaged;
    errorCounts_.add(malformed.what());
    report(name, reader.position(), malformed.what());
  }
}

void MrtFiles::decode(const MrtRecord& record, MrtDecoder& decoder, const std::string& name) {
  if (output_ != nullptr) output_->recordBegins(name, record);
  decoder.decode(record, problems_);
  if (output_ != nullptr) output_->recordEnds(problems_);
  if (problems_.empty()) return;
  errorCounts_.add(problems_);
  report(name, record, problems_.text());
  problems_.clear();
}

void MrtFiles::complain(const std::string& text) {
  if (progress_ != nullptr) progress_->erase();
  printError(errors_, text);
}

void MrtFiles::report(const std::string& name, const MrtRecord& record, const std::string& what) {
  complain(name + ": record " + std::to_string(record.number) + " at octet " +
           std::to_string(record.offset) + ": " + what);
}

ExitStatus MrtFiles::status() const {
  if (counts_.files == 0 && counts_.unopened > 0) return ExitStatus::impossible;
  return counts_.damaged + counts_.unopened > 0 ? ExitStatus::damaged : ExitStatus::fine;
}

}  // namespace CommTool
