#include "tools/bgp-communities/StoreCommand.h"

#include <array>
#include <cstdio>
#include <ostream>

#include "KivStash/StoreManager.h"
#include "KivStash/StoreWriter.h"
#include "Stash/StoreException.h"
#include "tools/bgp-communities/Interruption.h"
#include "tools/bgp-communities/MrtFiles.h"
#include "tools/bgp-communities/Running.h"
#include "tools/bgp-communities/StoreReading.h"
#include "tools/bgp-communities/StoredLists.h"
#include "tools/bgp-communities/SummaryLines.h"

namespace CommTool {

namespace {

using Clock = std::chrono::steady_clock;

// Runs a command that needs the store `name`.
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

void printStored(const StoredLists& lists, const KivStash::StoreWriter& writer, U64 rewritten,
                 TextOutput& out) {
  SummaryLines lines(out);
  lines.printKinds("communities", [](const auto& row) { return std::string(row.name); });
  lines.printKinds("  lists",
                   [&](const auto& row) { return std::to_string(lists.lists(row.kind)); });
  lines.print("images", writer.images());
  lines.print("octets used", writer.used());
  lines.print("octets of the store", writer.length());
  lines.print("lists rewritten", rewritten);
}

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

void printRead(const StoreReading& reading, TextOutput& out) {
  const StoreReadCounts& counts = reading.counts();
  SummaryLines lines(out);
  const auto kinds = [&](std::string_view name, auto figure) {
    lines.printKinds(name, [&](const CommunityKindRow& row) {
      return std::to_string(figure(counts.kinds[indexOf(row.kind)]));
    });
  };
  using Kind = StoreReadCounts::Kind;
  lines.print("walks", counts.walks);
  lines.printKinds("communities read", [](const auto& row) { return std::string(row.name); });
  kinds("  lists", [](const Kind& kind) { return kind.lists; });
  kinds("  communities of all lists", [](const Kind& kind) { return kind.communities; });
  kinds("  lists not in order as said", [](const Kind& kind) { return kind.outOfOrder; });
  lines.printKinds("  distinct lists, last walk", [&](const CommunityKindRow& row) {
    return std::to_string(reading.distinct(row.kind));
  });
  lines.print("retries", counts.retries);
  lines.print("lists gone meanwhile", counts.gone);
  lines.print("lists that never settled", counts.unsettled);
  lines.print("damaged", counts.damaged);
}

// Images there are, by kind; and whether there is anything else.
struct Contents {
  std::array<U64, Stash::imageKinds.size()> images{};
  std::string damage;
};

Contents contentsOf(const KivStash::StoreManager::Ptr& manager) {
  Contents contents;
  KivStash::StoreCursor cursor(manager);
  for (;;) {
    try {
      const auto image = cursor.next();
      if (!image) return contents;
      ++contents.images[static_cast<std::size_t>(image->kind)];
    } catch (const Stash::StoreException& reason) {
      if (contents.damage.empty()) contents.damage = reason.what();
    }
  }
}

void printHeader(const Stash::StoreHeader& header, std::size_t length, SummaryLines& lines) {
  char base[2 + 16 + 1];
  std::snprintf(base, sizeof base, "0x%llx", static_cast<unsigned long long>(header.base));
  lines.print("layout version", header.version);
  lines.print("bits of a word", U64{header.wordSize} * 8);
  lines.print("writer's address", std::string(base));
  lines.print("octets, at most", header.maximum);
  lines.print("octets, now", length);
  lines.print("octets used", header.used);
  lines.print("images", header.images);
}

}  // namespace

ExitStatus runStoreWrite(const StoreWriteOptions& options, int out, std::ostream& errors) {
  return storing(options.name, errors, [&](const Stash::StoreName& name) {
    StoredLists lists;
    MrtFiles files(lists, errors);
    for (const std::string& path : options.files) files.read(path);
    if (files.status() == ExitStatus::impossible) return ExitStatus::impossible;
    KivStash::StoreWriter writer(name, {.maximum = options.size});
    lists.put(writer);
    const U64 rewritten = churn(lists, writer, options.churn);
    TextOutput text(out);
    printStored(lists, writer, rewritten, text);
    text.flush();
    return files.status();
  });
}

ExitStatus runStoreRead(const StoreReadOptions& options, int out, std::ostream& errors) {
  return storing(options.name, errors, [&](const Stash::StoreName& name) {
    TextOutput text(out);
    StoreReading reading(name, options.lists, text);
    const Interruption interruption;
    do {
      if (!reading.walk()) break;
      text.flush();
    } while (options.follow && !interruption.noted());
    printRead(reading, text);
    text.flush();
    if (!reading.firstDamage().empty())
      printError(errors, options.name + ": " + reading.firstDamage());
    return reading.counts().sound() ? ExitStatus::fine : ExitStatus::damaged;
  });
}

ExitStatus runStoreInfo(const std::string& name, int out, std::ostream& errors) {
  return storing(name, errors, [&](const Stash::StoreName& store) {
    const auto manager = KivStash::storeManagerFactory(store);
    const Contents contents = contentsOf(manager);
    TextOutput text(out);
    SummaryLines lines(text);
    printHeader(manager->store().header(), manager->store().lengthNow(), lines);
    for (std::size_t i = 1; i < contents.images.size(); ++i) {
      lines.print("  " + std::string(Stash::imageKinds[i].name), contents.images[i]);
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
