#include "tools/bgp-communities/output/Summary.h"

#include <cstdio>
#include <string>

#include "tools/bgp-communities/output/Figures.h"
#include "tools/bgp-communities/output/SummaryLines.h"
#include "tools/bgp-communities/output/TimeText.h"

namespace CommTool {

namespace {

// A number with a fixed number of decimal places.
std::string decimal(double value, int places) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", places, value);
  return text;
}

// The lengths of a class: "1", "2", "3 to 4" and so on, up to "65 and more".
std::string lengthText(std::size_t lengthClass) {
  const U64 least = lengthClass == 0 ? 1 : (U64{1} << (lengthClass - 1)) + 1;
  const U64 most = U64{1} << lengthClass;
  if (lengthClass + 1 == lengthClasses) return std::to_string(least) + " and more";
  return least == most ? std::to_string(most)
                       : std::to_string(least) + " to " + std::to_string(most);
}

// Shortens a long list for the screen, at a blank between two communities. JSON has the whole list.
std::string shortened(const std::string& text) {
  constexpr std::size_t enough = 100;
  if (text.size() <= enough) return text;
  return text.substr(0, text.rfind(' ', enough)) + " ...";
}

// What was read, by type. An indented line counts a part of the line above it.
void printInput(const InputCounts& input, SummaryLines& lines) {
  lines.print("files", input.files);
  lines.print("records", input.records);
  lines.print("  damaged", input.damaged);
  lines.print("  session state changes", input.stateChanges);
  lines.print("  of types not decoded", input.recordsSkipped);
  lines.print("BGP messages", input.messages);
  lines.print("  updates", input.updates);
  lines.print("  address families not decoded", input.familiesSkipped);
}

// Archives cover a known period, so the times show at a glance whether these are the right files.
void printTimes(const InputCounts& input, SummaryLines& lines) {
  if (input.records == 0) return;
  lines.print("first record", timeText(input.firstSeconds));
  lines.print("last record", timeText(input.lastSeconds));
  lines.print("  time between them", durationText(input.lastSeconds - input.firstSeconds));
}

// The first three lines count events of the whole run, the last one the routes that remain.
void printRoutes(const RouteCounts& counts, const HeldFigures& held, SummaryLines& lines) {
  lines.print("routes announced", counts.announced);
  lines.print("routes withdrawn", counts.withdrawn);
  lines.print("routes in tables", counts.tableEntries);
  lines.print("routes at the end", held.routes);
}

// How many times as much memory unshared copies would need.
std::string factor(U64 unshared, U64 shared) {
  if (shared == 0) return "-";
  return decimal(static_cast<double>(unshared) / static_cast<double>(shared), 1);
}

// A table with a column for each kind. Its head is a line like the others.
void printCommunities(const HeldFigures& held, SummaryLines& lines) {
  const auto print = [&](std::string_view name, const auto& figure) {
    lines.printKinds(name, [&](const CommunityKindRow& row) {
      return std::to_string(figure(held.of(row.kind)));
    });
  };
  lines.printKinds("communities at the end", [](const auto& row) { return std::string(row.name); });
  print("  routes with a list", [](const KindFigures& kind) { return kind.lists.occurrences; });
  print("  distinct lists", [](const KindFigures& kind) { return kind.lists.unique; });
  print("  distinct sub-lists", [](const KindFigures& kind) { return kind.subLists.unique; });
  print("  communities of all routes",
        [](const KindFigures& kind) { return kind.values.occurrences; });
  print("  distinct communities", [](const KindFigures& kind) { return kind.values.unique; });
  print("  memory, bytes", [](const KindFigures& kind) { return kind.bytes(); });
  print("  memory without sharing, bytes",
        [](const KindFigures& kind) { return kind.bytesUnshared(); });
  lines.printKinds("  saved by sharing, factor", [&](const CommunityKindRow& row) {
    return factor(held.of(row.kind).bytesUnshared(), held.of(row.kind).bytes());
  });
}

// Classes without any list have no line.
void printLengths(const HeldFigures& held, SummaryLines& lines) {
  for (std::size_t i = 0; i < lengthClasses; ++i) {
    U64 lists = 0;
    for (const KindFigures& kind : held.kinds) lists += kind.lengths[i];
    if (lists == 0) continue;
    lines.printKinds(
        "  distinct lists of length " + lengthText(i),
        [&](const CommunityKindRow& row) { return std::to_string(held.of(row.kind).lengths[i]); });
  }
}

// Unlike the memory of each kind, this figure includes the tables and the parser's rules.
void printMemory(const HeldFigures& held, SummaryLines& lines) {
  lines.print("memory of lists and tables, bytes", held.bytes);
  lines.print("  saved by sharing, factor", factor(held.bytesUnshared(), held.bytes));
}

// Attributes with these flags, by kind. Counted only during verification.
void printFlags(const FlagCounts& flags, SummaryLines& lines) {
  lines.printKinds("attributes with flag Partial", [&](const CommunityKindRow& row) {
    return std::to_string(flags.partial[indexOf(row.kind)]);
  });
  lines.printKinds("  with flag Extended Length", [&](const CommunityKindRow& row) {
    return std::to_string(flags.extendedLength[indexOf(row.kind)]);
  });
}

// Does nothing if no list is to be named or no route has one.
void printTop(const HeldFigures& held, SummaryLines& lines) {
  if (held.top.empty()) return;
  lines.print("most used lists (number of routes)");
  for (const ListUse& use : held.top) {
    std::string line = std::to_string(use.references);
    // The number of routes is right-aligned.
    line.insert(0, line.size() < 10 ? 10 - line.size() : 0, ' ');
    line.append("  ").append(rowOf(use.kind).name).append(": ").append(shortened(use.text));
    lines.print(line);
  }
}

}  // namespace

// The statistics are computed here, because they take longer than all the printing.
void printSummary(const SummaryData& data, TextOutput& out) {
  const HeldFigures held = figuresOf(data.routes, data.top);
  SummaryLines lines(out, data.kinds);
  printInput(data.input, lines);
  printTimes(data.input, lines);
  printRoutes(data.routes.counts(), held, lines);
  printCommunities(held, lines);
  printLengths(held, lines);
  if (data.flags != nullptr) printFlags(*data.flags, lines);
  printMemory(held, lines);
  lines.print("run time, seconds", decimal(std::chrono::duration<double>(data.elapsed).count(), 3));
  printTop(held, lines);
}

}  // namespace CommTool
