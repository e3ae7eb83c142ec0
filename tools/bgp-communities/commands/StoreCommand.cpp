#include "tools/bgp-communities/commands/StoreCommand.h"

#include <array>
#include <cstdio>
#include <ostream>
#include <thread>

#include "KivStash/StoreManager.h"
#include "KivStash/StoreWriter.h"
#include "Stash/StoreException.h"
#include "tools/bgp-communities/commands/Running.h"
#include "tools/bgp-communities/mrt/MrtFiles.h"
#include "tools/bgp-communities/output/ErrorLines.h"
#include "tools/bgp-communities/output/SummaryLines.h"
#include "tools/bgp-communities/store/Interruption.h"
#include "tools/bgp-communities/store/StoreReading.h"
#include "tools/bgp-communities/store/StoredLists.h"

namespace CommTool {

namespace {

using Clock = std::chrono::steady_clock;

// Runs a command with the store `name`, and reports what the store throws.
template <class Command>
ExitStatus storing(const std::string& name, std::ostream& errors, const Command& command) {
  return writing(errors, [&] {
    try {
      return command(Stash::StoreName(name));
    } catch (const Stash::StoreException& reason) {
      printError(errors, name + ": " + reason.what());
      return ExitStatus::impossible;
    }
  });
}

// The summary of `store write`.
void printStored(const StoredLists& lists, const KivStash::StoreWriter& writer, U64 rewritten,
                 TextOutput& out) {
  SummaryLines lines(out);
  lines.printKinds("communities", [](const auto& row) { return std::string(row.name); });
  lines.printKinds("  lists",
                   [&](const auto& row) { return std::to_string(lists.lists(row.kind)); });
  lines.print("images", writer.images());
  lines.print("used, bytes", writer.used());
  lines.print("size of the store, bytes", writer.length());
  lines.print("lists rewritten", rewritten);
}

// Rewrites lists until the time is over or a signal arrives. Returns the number of rewritten
// images. Ends at once if there is no list.
U64 churn(StoredLists& lists, KivStash::StoreWriter& writer, std::chrono::seconds time) {
  const Interruption interruption;
  U64 rewritten = 0;
  for (const auto until = Clock::now() + time; Clock::now() < until && !interruption.noted();) {
    const U64 more = lists.churn(writer);
    if (more == 0) break;
    rewritten += more;
  }
  return rewritten;
}

// The summary of `store read`.
void printRead(const StoreReading& reading, TextOutput& out) {
  const StoreReadCounts& counts = reading.counts();
  SummaryLines lines(out);
  const auto kinds = [&](std::string_view name, auto figure) {
    lines.printKinds(name, [&](const CommunityKindRow& row) {
      return std::to_string(figure(counts.kinds[indexOf(row.kind)]));
    });
  };
  // Counters of kinds are totals of all walks; only the distinct lists are those of the last walk.
  using Kind = StoreReadCounts::Kind;
  lines.print("walks", counts.walks);
  lines.printKinds("communities read", [](const auto& row) { return std::string(row.name); });
  kinds("  lists", [](const Kind& kind) { return kind.lists; });
  kinds("  communities of all lists", [](const Kind& kind) { return kind.communities; });
  kinds("  lists marked sorted but unsorted", [](const Kind& kind) { return kind.outOfOrder; });
  lines.printKinds("  distinct lists in the last walk", [&](const CommunityKindRow& row) {
    return std::to_string(reading.distinct(row.kind));
  });
  lines.print("retries", counts.retries);
  lines.print("lists removed meanwhile", counts.gone);
  lines.print("lists always being changed", counts.unsettled);
  lines.print("damaged", counts.damaged);
}

// Says on `errors` why the store is not sound; every reason that leads to status 3 has its line.
void printReasons(const StoreReading& reading, const std::string& name, std::ostream& errors) {
  const StoreReadCounts& counts = reading.counts();
  if (!reading.firstDamage().empty()) printError(errors, name + ": " + reading.firstDamage());
  if (counts.unsettled > 0) {
    printError(errors, name + ": lists always being changed: " + std::to_string(counts.unsettled) +
                           "; their writer died, or is very slow");
  }
  if (counts.outOfOrder() > 0) {
    printError(errors,
               name + ": lists marked sorted but unsorted: " + std::to_string(counts.outOfOrder()));
  }
}

// After a walk of `--follow`: whether there is a store for another walk. If the store was removed,
// waits until another one has its name, or until a signal arrives.
bool continues(StoreReading& reading, const std::string& name, const Interruption& interruption,
               std::ostream& errors) {
  if (interruption.noted()) return false;
  if (!reading.isRemoved()) return true;
  printError(errors, name + ": the store was removed; waiting for a new one");
  while (!reading.reopen()) {
    if (interruption.noted()) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  printError(errors, name + ": reading the new store");
  return true;
}

// The number of images of each kind, and the first damage, if any.
struct Contents {
  std::array<U64, Stash::imageKinds.size()> images{};
  std::string damage;
};

// Visits all images without reading them. The cursor continues after an image of an unknown kind.
Contents contentsOf(const KivStash::StoreManager::Ptr& manager) {
  Contents contents;
  KivStash::StoreCursor cursor(manager);
  for (;;) {
    try {
      const auto image = cursor.next();
      if (!image) return contents;
      ++contents.images[static_cast<std::size_t>(image->kind)];
    } catch (const Stash::StoreException& reason) {
      // Later damage is often a consequence of the first, so only the first is reported.
      if (contents.damage.empty()) contents.damage = reason.what();
    }
  }
}

// The name of a kind of image without its article and in the plural: "a large list" to "large
// lists".
std::string pluralOf(std::string_view name) {
  return std::string(name.substr(name.find(' ') + 1)).append("s");
}

// The fields of the header. The address is the one at which the writer has mapped the store.
void printHeader(const Stash::StoreHeader& header, std::size_t length, SummaryLines& lines) {
  char base[2 + 16 + 1];
  std::snprintf(base, sizeof base, "0x%llx", static_cast<unsigned long long>(header.base));
  lines.print("layout version", header.version);
  lines.print("word size, bits", U64{header.wordSize} * 8);
  lines.print("address in the writer", std::string(base));
  lines.print("maximum size, bytes", header.maximum);
  lines.print("current size, bytes", length);
  lines.print("used, bytes", header.used);
  lines.print("images", header.images);
}

}  // namespace

// The files are read completely before the store is created, so that a wrong file name leaves no
// store behind.
ExitStatus runStoreWrite(const StoreWriteOptions& options, int out, std::ostream& errors) {
  return storing(options.name, errors, [&](const Stash::StoreName& name) {
    StoredLists lists;
    ErrorLines errorLines(errors);
    MrtFiles files(lists);
    files.observerAdd(errorLines);
    for (const std::string& path : options.files) files.read(path);
    const ExitStatus status = statusOf(files.counts());
    // Without any input there is nothing to store.
    if (status == ExitStatus::impossible) return status;
    // Throws if a store of this name exists.
    KivStash::StoreWriter writer(name, {.maximum = options.size});
    lists.put(writer);
    const U64 rewritten = churn(lists, writer, options.churn);
    TextOutput text(out);
    printStored(lists, writer, rewritten, text);
    text.flush();
    return status;
  });
}

// A signal ends the loop after the current walk, so the summary is always printed.
ExitStatus runStoreRead(const StoreReadOptions& options, int out, std::ostream& errors) {
  return storing(options.name, errors, [&](const Stash::StoreName& name) {
    TextOutput text(out);
    StoreReading reading(name, options.lists, text);
    const Interruption interruption;
    do {
      if (!reading.walk()) break;
      text.flush();
    } while (options.follow && continues(reading, options.name, interruption, errors));
    printRead(reading, text);
    text.flush();
    printReasons(reading, options.name, errors);
    return reading.counts().sound() ? ExitStatus::fine : ExitStatus::damaged;
  });
}

// The first row of imageKinds stands for no image at all and is not printed.
ExitStatus runStoreInfo(const std::string& name, int out, std::ostream& errors) {
  return storing(name, errors, [&](const Stash::StoreName& store) {
    const auto manager = KivStash::storeManagerFactory(store);
    const Contents contents = contentsOf(manager);
    TextOutput text(out);
    SummaryLines lines(text);
    printHeader(manager->store().header(), manager->store().lengthNow(), lines);
    for (std::size_t i = 1; i < contents.images.size(); ++i) {
      lines.print("  " + pluralOf(Stash::imageKinds[i].name), contents.images[i]);
    }
    text.flush();
    if (contents.damage.empty()) return ExitStatus::fine;
    printError(errors, name + ": " + contents.damage);
    return ExitStatus::damaged;
  });
}

ExitStatus runStoreRemove(const std::string& name, std::ostream& errors) {
  return storing(name, errors, [](const Stash::StoreName& store) {
    Stash::storeRemove(store);
    return ExitStatus::fine;
  });
}

}  // namespace CommTool
