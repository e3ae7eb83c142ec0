#include "tools/bgp-communities/mrt/MrtFiles.h"

#include "tools/bgp-communities/mrt/MrtDecoder.h"

namespace CommTool {

// Only a failure to open is caught here; readRecords() handles damage. A file counts as read as
// soon as it is open, even if its first record is damaged.
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
    report(name + ": " + reason.what());
  }
}

// Two kinds of damage differ here. A record whose contents are broken is reported by decode(),
// and reading continues at the next record, because the header still says where that one
// starts. A broken header loses that position, so the rest of the file cannot be read.
void MrtFiles::readRecords(Input& input, const std::string& name) {
  MrtReader reader(input);
  MrtDecoder decoder(sink_, counts_);
  try {
    while (const MrtRecord* record = reader.next()) {
      decode(*record, decoder, name);
      const U64 bytes = bytesBefore_ + input.bytesRead();
      for (ReadObserver* observer : observers_) observer->bytesRead(bytes, counts_.records);
    }
  } catch (const Malformed& malformed) {
    ++counts_.damaged;
    errorCounts_.add(malformed.what());
    report(name, reader.position(), malformed.what());
  }
}

// Observers see the record before its routes, and its problems before they are reported. The
// problems are one object that is reused, because the sink adds to it through problems().
void MrtFiles::decode(const MrtRecord& record, MrtDecoder& decoder, const std::string& name) {
  for (ReadObserver* observer : observers_) observer->recordBegins(name, record);
  decoder.decode(record, problems_);
  for (ReadObserver* observer : observers_) observer->recordEnds(problems_);
  if (problems_.empty()) return;
  errorCounts_.add(problems_);
  report(name, record, problems_.text());
  problems_.clear();
}

// The program's name is added by whoever prints the text.
void MrtFiles::report(const std::string& text) {
  for (ReadObserver* observer : observers_) observer->errorFound(text);
}

void MrtFiles::report(const std::string& name, const MrtRecord& record, const std::string& what) {
  report(name + ": record " + std::to_string(record.number) + " at octet " +
         std::to_string(record.offset) + ": " + what);
}

}  // namespace CommTool
