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

void printMemory(const HeldFigures& held, SummaryLines& lines) {
  lines.print("octets of all, with tables", held.bytes);
  lines.print("  saved by sharing, factor", factor(held.bytesUnshared(), held.bytes));
}

}  // namespace

void printSummary(const InputCounts& input, const HeldRoutes& routes,
                  std::chrono::nanoseconds elapsed, TextOutput& out) {
  const HeldFigures held = figuresOf(routes);
  SummaryLines lines(out);
  printInput(input, lines);
  printRoutes(routes.counts(), held, lines);
  printCommunities(held, lines);
  printMemory(held, lines);
  lines.print("seconds", decimal(std::chrono::duration<double>(elapsed).count(), 3));
}

}  // namespace CommTool
