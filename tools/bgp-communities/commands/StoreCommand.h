// `bgp-communities store`, which shares lists with other processes through a store in shared
// memory: the options structs and the commands. Options are parsed in main.cpp.
#ifndef TOOLS_BGP_COMMUNITIES_COMMANDS_STORE_COMMAND_H
#define TOOLS_BGP_COMMUNITIES_COMMANDS_STORE_COMMAND_H

#include <chrono>
#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "tools/bgp-communities/commands/ExitStatus.h"

namespace CommTool {

// The arguments of `store write`. The name of a store that has no slash is the name of POSIX shared
// memory; with a slash it is the path of a file.
struct StoreWriteOptions {
  // The name of the store to create.
  std::string name;
  // MRT files; "-" is standard input.
  std::vector<std::string> files;
  // The time for which the lists are rewritten after all of them were written.
  std::chrono::seconds churn{0};
  // The size that the store may grow to, in octets.
  std::size_t size = std::size_t{1} << 28;
};

// The arguments of `store read`.
struct StoreReadOptions {
  // The name of the store.
  std::string name;
  // Print a line for each list, and not only the summary.
  bool lists = false;
  // Read the store again and again, until interrupted. If the store is removed, wait for a new
  // store of the same name, and read the new store.
  bool follow = false;
};

// Creates a store with each different list of the files once, and leaves it for other processes.
// This function and the next two print their output to the descriptor `out`, and errors to
// `errors`. The status is `impossible` if no file could be read, or if the store cannot be created
// or is too small for all lists.
ExitStatus runStoreWrite(const StoreWriteOptions& options, int out, std::ostream& errors);
// Rebuilds and interns all lists of a store and prints their number. The status is `damaged` if a
// correct writer cannot have left the store as it is; `errors` then has the reasons. It is
// `impossible` if no such store exists.
ExitStatus runStoreRead(const StoreReadOptions& options, int out, std::ostream& errors);
// Prints the header of a store, and how many images of each kind it has. The status is `damaged`
// if an image is not valid, and `impossible` if no such store exists.
ExitStatus runStoreInfo(const std::string& name, int out, std::ostream& errors);
// Deletes a store. Processes that have opened it can still read it. The status is `impossible`, and
// nothing is deleted, if no such store exists or if the file does not begin with the mark of a
// store.
ExitStatus runStoreRemove(const std::string& name, std::ostream& errors);

}  // namespace CommTool

#endif
