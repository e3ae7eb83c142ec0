// Reads MRT files one after another and delivers their routes to a sink.
#ifndef TOOLS_BGP_COMMUNITIES_MRT_MRT_FILES_H
#define TOOLS_BGP_COMMUNITIES_MRT_MRT_FILES_H

#include <string>
#include <vector>

#include "tools/bgp-communities/bgp/Counts.h"
#include "tools/bgp-communities/bgp/Route.h"
#include "tools/bgp-communities/input/ErrorCounts.h"
#include "tools/bgp-communities/input/Problems.h"
#include "tools/bgp-communities/mrt/MrtReader.h"
#include "tools/bgp-communities/mrt/ReadObserver.h"

namespace CommTool {

class MrtDecoder;

// Damaged input is counted and reported to the observers, and never ends the run: the reader
// continues with the next record, or with the next file where the framing is lost. Owner thread
// only.
class MrtFiles {
 public:
  // `sink` receives the routes of all files. It must live as long as this object.
  explicit MrtFiles(RouteSink& sink) : sink_(sink) {}

  // Adds an observer, which must live as long as this object or until observerDel(). Observers
  // are notified in the order in which they were added.
  void observerAdd(ReadObserver& observer) { observers_.push_back(&observer); }
  // Removes an observer. Must not be called during read().
  void observerDel(const ReadObserver& observer) { std::erase(observers_, &observer); }

  // Reads a file, or standard input for "-", to its end. Errors of the input are reported to
  // the observers; exceptions of the sink and of the observers pass through.
  void read(const std::string& path);

  // What was read so far, over all files.
  const InputCounts& counts() const { return counts_; }
  // How often each kind of error was found so far, over all files.
  const ErrorCounts& errorCounts() const { return errorCounts_; }
  // The problems of the record that is being decoded. The sink may add to them while it handles
  // a route of that record.
  Problems& problems() { return problems_; }

 private:
  void readRecords(Input& input, const std::string& name);
  void decode(const MrtRecord& record, MrtDecoder& decoder, const std::string& name);
  void report(const std::string& text);
  void report(const std::string& name, const MrtRecord& record, const std::string& what);

  RouteSink& sink_;
  std::vector<ReadObserver*> observers_;
  InputCounts counts_;
  ErrorCounts errorCounts_;
  Problems problems_;
  U64 bytesBefore_ = 0;  // read from the files before the current one
};

}  // namespace CommTool

#endif
