// `bgp-communities store`: lists kept in shared memory for other processes.
#ifndef TOOLS_BGP_COMMUNITIES_STORE_COMMAND_H
#define TOOLS_BGP_COMMUNITIES_STORE_COMMAND_H

#include <chrono>
#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "tools/bgp-communities/ExitStatus.h"

namespace CommTool {

struct StoreWriteOptions {
  std::string name;
  std::vector<std::string> files;           // MRT files; "-" is standard input
  std::chrono::seconds churn{0};            // for how long to go on rewriting the lists
  std::size_t size = std::size_t{1} << 28;  // octets that the store may grow to
};

struct StoreReadOptions {
  std::string name;
  bool lists = false;   // a line a list, rather than the summary alone
  bool follow = false;  // read again and again, until interrupted
};

// Text goes to the descriptor `out`, what is wrong to `errors`. A name without a
// slash is POSIX shared memory's, another a file's.

// Makes a store of the lists of the files, each once, and leaves it behind.
ExitStatus runStoreWrite(const StoreWriteOptions& options, int out, std::ostream& errors);
// Rebuilds and interns all lists that a store has.
ExitStatus runStoreRead(const StoreReadOptions& options, int out, std::ostream& errors);
// What the header says, and what there is.
ExitStatus runStoreInfo(const std::string& name, int out, std::ostream& errors);
ExitStatus runStoreRemove(const std::string& name, std::ostream& errors);

}  // namespace CommTool

#endif
