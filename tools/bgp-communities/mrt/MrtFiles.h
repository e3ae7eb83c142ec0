// The reading of MRT files, whoever takes their routes.
#ifndef TOOLS_BGP_COMMUNITIES_MRT_FILES_H
#define TOOLS_BGP_COMMUNITIES_MRT_FILES_H

#include <iosfwd>
#include <string>

#include "tools/bgp-communities/Counts.h"
#include "tools/bgp-communities/ErrorCounts.h"
#include "tools/bgp-communities/ExitStatus.h"
#include "tools/bgp-communities/MrtReader.h"
#include "tools/bgp-communities/Problems.h"
#include "tools/bgp-communities/Progress.h"
#include "tools/bgp-communities/Route.h"
#include "tools/bgp-communities/RouteOutput.h"

namespace CommTool {

class MrtDecoder;

// A line to `errors` for each damage; what is good is delivered all the same.
class MrtFiles {
 public:
  MrtFiles(RouteSink& sink, std::ostream& errors) : sink_(sink), errors_(errors) {}

  // Both are told of each record; null tells nobody.
  void outputIs(RouteOutput* output) { output_ = output; }
  void progressIs(Progress* progress) { progress_ = progress; }

  // "-" is standard input.
  void read(const std::string& path);

  const InputCounts& counts() const { return counts_; }
  const ErrorCounts& errorCounts() const { return errorCounts_; }
  // Of the record that is being decoded; a sink may add to them.
  Problems& problems() { return problems_; }
  // impossible: no file could be opened; damaged: some could not, or were.
  ExitStatus status() const;

 private:
  void readRecords(Input& input, const std::string& name);
  void decode(const MrtRecord& record, MrtDecoder& decoder, const std::string& name);
  void complain(const std::string& text);
  void report(const std::string& name, const MrtRecord& record, const std::string& what);

  RouteSink& sink_;
  std::ostream& errors_;
  RouteOutput* output_ = nullptr;
  Progress* progress_ = nullptr;
  InputCounts counts_;
  ErrorCounts errorCounts_;
  Problems problems_;
  U64 bytesBefore_ = 0;  // read from the files before this one
};

}  // namespace CommTool

#endif
