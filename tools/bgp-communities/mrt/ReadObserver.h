// An observer of the reading of MRT files.
#ifndef TOOLS_BGP_COMMUNITIES_MRT_READ_OBSERVER_H
#define TOOLS_BGP_COMMUNITIES_MRT_READ_OBSERVER_H

#include <string>

#include "tools/bgp-communities/input/Problems.h"
#include "tools/bgp-communities/mrt/MrtReader.h"

namespace CommTool {

// Notified by MrtFiles while it reads. Outputs, the progress line and the printing of errors
// implement this interface, so that the reader depends on none of them. Each function does
// nothing unless it is overridden. All calls are made on the thread that reads.
class ReadObserver {
 public:
  virtual ~ReadObserver() = default;

  // Called before a record is decoded. `file` (a path, or "standard input") and `record` are
  // borrowed until recordEnds() returns.
  virtual void recordBegins(const std::string& /*file*/, const MrtRecord& /*record*/) {}
  // Called after the record was decoded and all its routes were delivered. `problems` are all
  // problems found in this record; usually there are none.
  virtual void recordEnds(const Problems& /*problems*/) {}
  // Called after each record with the totals of all files so far: `bytes` read from the files,
  // still compressed, and `records` decoded.
  virtual void bytesRead(U64 /*bytes*/, U64 /*records*/) {}
  // Called for each file that cannot be opened, each record with problems, and each file that
  // ends early. `text` is one line without its end; it names the file and the position.
  virtual void errorFound(const std::string& /*text*/) {}
};

}  // namespace CommTool

#endif
