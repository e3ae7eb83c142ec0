// The reading of MRT files, whoever takes their routes.
#ifndef TOOLS_BGP_COMMUNITIES_MRT_FILES_H
#define TOOLS_BGP_COMMUNITIES_MRT_FILES_H

#include <iosfwd>
#include <string>

#include "tools/bgp-communities/Counts.h"
#include "tools/bgp-communities/ExitStatus.h"
#include "tools/bgp-communities/MrtReader.h"
#include "tools/bgp-communities/Problems.h"
#include "tools/bgp-communities/Route.h"

namespace CommTool {

// A line to `errors` for each damage; what is good is delivered all the same.
class MrtFiles {
 public:
  MrtFiles(RouteSink& sink, std::ostream& errors) : sink_(sink), errors_(errors) {}

  // "-" is standard input.
  void read(const std::string& path);

  const InputCounts& counts() const { return counts_; }
  // Of the record that is being decoded; a sink may add to them.
  Problems& problems() { return problems_; }
  // impossible: no file could be opened; damaged: some could not, or were.
  ExitStatus status() const;

 private:
  void readRecords(Input& input, const std::string& name);
  void report(const std::string& name, const MrtRecord& record, const std::string& what);

  RouteSink& sink_;
  std::ostream& errors_;
  InputCounts counts_;
  Problems problems_;
};

}  // namespace CommTool

#endif
