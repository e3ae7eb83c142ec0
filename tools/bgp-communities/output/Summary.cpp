#include "tools/bgp-communities/Summary.h"

#include <cstdio>
#include <string>

#include "tools/bgp-communities/Figures.h"
#include "tools/bgp-communities/SummaryLines.h"

namespace CommTool {

namespace {

std::string decimal(double value, int places) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", places, value);
  return text;
}

// "1", "2", "3 to 4" and so on to "65 and more".
std::string lengthText(std::size_t lengthClass) {
  const U64 least = lengthClass == 0 ? 1 : (U64{1} << (lengthClass - 1)) + 1;
  const U64 most = U64{1} << lengthClass;
  if (lengthClass + 1 == lengthClasses) return std::to_string(least) + " and more";
  return least == most ? std::to_string(most)
                       : std::to_string(least) + " to " + std::to_string(most);
}

// Cut where a reader has seen enough of it; JSON has all.
std::string shortened(const std::string& text) {
  constexpr std::size_t enough = 100;
  if (text.size() <= enough) return text;
  return text.substr(0, text.rfind(' ', enough)) + " ...";
}

void printInput(const InputCounts& input, SummaryLines& lines) {
  lines.print("files", input.files);
  lines.print("records", input.records);
  lines.print("  damaged", input.damaged);
  lines.print("  session state changes", input.stateChanges);
  lines.print("  of kinds not decoded", input.recordsSkipped);
  lines.print("BGP messages", input.messages);
  lines.print("  updates", input.updates);
  lines.print("  address families not decoded", input.familiesSkipped);
}

void printRoutes(const RouteCounts& counts, const HeldFigures& held, SummaryLines& lines) {
  lines.print("routes announced", counts.announced);
  lines.print("routes withdrawn", counts.withdrawn);
  lines.print("routes in tables", counts.tableEntries);
  lines.print("routes held", held.routes);
}

std::string factor(U64 unshared, U64 shared) {
  if (shared == 0) return "-";
  return decimal(static_cast<double>(unshared) / static_cast<double>(shared), 1);
}

void printCommunities(const HeldFigures& held, SummaryLines& lines) {
  const auto print = [&](std::string_view name, const auto& figure) {
    lines.printKinds(name, [&](const CommunityKindRow& row) {
      return std::to_string(figure(held.of(row.kind)));
    });
  };
  lines.printKinds("communities held", [](const auto& row) { return std::string(row.name); });
  print("  routes with a list", [](const KindFigures& kind) { return kind.lists.occurrences; });
  print("  distinct lists", [](const KindFigures& kind) { return kind.lists.unique; });
  print("  distinct sub-lists", [](const KindFigures& kind) { return kind.subLists.unique; });
  print("  communities of all routes",
        [](const KindFigures& kind) { return kind.values.occurrences; });
  print("  distinct communities", [](const KindFigures& kind) { return kind.values.unique; });
  print("  octets", [](const KindFigures& kind) { return kind.bytes(); });
  print("  octets of unshared copies",
        [](const KindFigures& kind) { return kind.bytesUnshared(); });
  lines.printKinds("  saved by sharing, factor", [&](const CommunityKindRow& row) {
    return factor(held.of(row.kind).bytesUnshared(), held.of(row.kind).bytes());
  });
}

void printLengths(const HeldFigures& held, SummaryLines& lines) {
  for (std::size_t i = 0; i < lengthClasses; ++i) {
    U64 lists = 0;
    for (const KindFigures& kind : held.kinds) lists += kind.lengths[i];
    if (lists == 0) continue;
    lines.printKinds("  distinct lists of " + lengthText(i), [&](const CommunityKindRow& row) {
      return std::to_string(held.of(row.kind).lengths[i]);
    });
  }
}

void printMemory(const HeldFigures& held, SummaryLines& lines) {
  lines.print("octets of all, with tables", held.bytes);
  lines.print("  saved by sharing, factor", factor(held.bytesUnshared(), held.bytes));
}

void printFlags(const FlagCounts& flags, SummaryLines& lines) {
  lines.printKinds("attributes flagged partial", [&](const CommunityKindRow& row) {
    return std::to_string(flags.partial[indexOf(row.kind)]);
  });
  lines.printKinds("  flagged extended length", [&](const CommunityKindRow& row) {
    return std::to_string(flags.extendedLength[indexOf(row.kind)]);
  });
}

void printTop(const HeldFigures& held, SummaryLines& lines) {
  if (held.top.empty()) return;
  lines.print("lists in most use, and by how many routes");
  for (const ListUse& use : held.top) {
    std::string line = std::to_string(use.references);
    line.insert(0, line.size() < 10 ? 10 - line.size() : 0, ' ');
    line.append("  ").append(rowOf(use.kind).name).append(": ").append(shortened(use.text));
    lines.print(line);
  }
}

}  // namespace

void printSummary(const InputCounts& input, const FlagCounts& flags, const HeldRoutes& routes,
                  std::chrono::nanoseconds elapsed, const MrtOptions& options, TextOutput& out) {
  const HeldFigures held = figuresOf(routes, options.top);
  SummaryLines lines(out, options.filter.kinds.value_or(KindSet::all()));
  printInput(input, lines);
  printRoutes(routes.counts(), held, lines);
  printCommunities(held, lines);
  printLengths(held, lines);
  if (options.verify) printFlags(flags, lines);
  printMemory(held, lines);
  lines.print("seconds", decimal(std::chrono::duration<double>(elapsed).count(), 3));
  printTop(held, lines);
}

}  // namespace CommTool
