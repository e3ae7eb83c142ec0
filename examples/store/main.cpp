// Two processes share a store in memory. An agent keeps its lists in the store, and a show command
// rebuilds them, even while the agent changes them.
#include <sys/wait.h>
#include <unistd.h>

#include <initializer_list>
#include <iostream>
#include <string>

#include "KivStash/StoreManager.h"
#include "KivStash/StoreWriter.h"
#include "OvBgp/OvBgpCommunityList.h"
#include "OvBgp/Store/StashLists.h"
#include "Stash/StoreException.h"

namespace {

using namespace Routing::Bgp;

// [reader]
// Runs in the other process. Walks through the store, prints its standard lists and returns their
// number.
int show(const Stash::StoreName& name) {
  int lists = 0;
  const auto manager = KivStash::storeManagerFactory(name);
  KivStash::StoreCursor cursor(manager);
  while (const auto found = cursor.next()) {
    if (found->kind != Stash::ImageKind::standardList) continue;
    try {
      const CommList::Ptr list = CommList::destash(found->stored, manager.ptr());
      std::cout << "process " << ::getpid() << " read " << list->toStrep() << std::endl;
      ++lists;
    } catch (const Stash::StoreException& problem) {
      // The list was removed or changed meanwhile. The partly built list is destroyed.
      std::cerr << problem.what() << "\n";
    }
  }
  return lists;
}
// [/reader]

// Runs show() in a child process and returns the number of lists that it saw.
int shown(const Stash::StoreName& name) {
  const pid_t child = ::fork();
  if (child == 0) {
    int lists = 99;
    try {
      lists = show(name);
    } catch (const std::exception& problem) {
      std::cerr << problem.what() << "\n";
    }
    ::_exit(lists);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

CommList::PtrConst listOf(std::initializer_list<U32> values) {
  const CommList::Ptr list = commListFactory();
  for (const U32 value : values) list->commIs(value);
  return list;
}

int run(const Stash::StoreName& name) {
  // [writer]
  KivStash::StoreWriter writer(name);
  const auto id = stashPut(writer, *listOf({31424u << 16 | 256, 31424u << 16 | 1260}));
  const int before = shown(name);

  stashReplace(writer, id, *listOf({0xFFFFFF01}));
  const int changed = shown(name);

  writer.remove(id);
  // [/writer]
  const int after = shown(name);
  return before == 1 && changed == 1 && after == 0 ? 0 : 1;
}

}  // namespace

int main() {
  // A name without a slash means POSIX shared memory; a name with a slash would be a file.
  const Stash::StoreName name("ovbgp-example-" + std::to_string(::getpid()));
  int status = 1;
  try {
    status = run(name);
  } catch (const std::exception& problem) {
    std::cerr << problem.what() << "\n";
  }
  Stash::storeRemove(name);
  return status;
}
