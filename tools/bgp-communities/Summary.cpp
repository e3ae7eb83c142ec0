#include "tools/bgp-communities/Summary.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace CommTool {

namespace {

class Lines {
 public:
  explicit Lines(TextOutput& out) : out_(out) {}

  void print(std::string_view name, U64 value, std::string_view remark = "") {
    print(name, std::to_string(value), remark);
  }
  void print(std::string_view name, const std::string& value, std::string_view remark = "") {
    const std::string filled(valueEnd - std::min(valueEnd, name.size() + value.size()), ' ');
    out_.append(name);
    out_.append(filled);
    out_.append(value);
    out_.append(remark);
    out_.append('\n');
  }

 private:
  static constexpr std::size_t valueEnd = 44;  // column

  TextOutput& out_;
};

std::string decimal(double value, int places) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", places, value);
  return text;
}

void printInput(const InputCounts& input, Lines& lines) {
  lines.print("files", input.files);
  lines.print("records", input.records);
  lines.print("  damaged", input.damaged);
  lines.print("  session state changes", input.stateChanges);
  lines.print("  of kinds not decoded", input.recordsSkipped);
  lines.print("BGP messages", input.messages);
  lines.print("  updates", input.updates);
  lines.print("  address families not decoded", input.familiesSkipped);
}

void printRoutes(const RouteCounts& counts, const HeldFigures& held, Lines& lines) {
  lines.print("routes announced", counts.announced);
  lines.print("routes withdrawn", counts.withdrawn);
  lines.print("routes in tables", counts.tableEntries);
  lines.print("routes held", held.routes);
  lines.print("  with communities", held.routesWithList);
}

void printLists(const HeldFigures& held, Lines& lines) {
  lines.print("community lists held", held.lists);
  lines.print("  distinct values in them", held.values);
  lines.print("extended communities held", held.extendedValues);
  lines.print("IPv6 extended communities held", held.ip6ExtendedValues);
  lines.print("memory of all, with their tables", held.bytes, " octets");
  lines.print("  of unshared copies", held.bytesUnshared, " octets");
  if (held.bytes != 0) {
    const double factor = static_cast<double>(held.bytesUnshared) / static_cast<double>(held.bytes);
    lines.print("  saved by sharing, factor", decimal(factor, 1));
  }
}

}  // namespace

void printSummary(const InputCounts& input, const HeldRoutes& routes,
                  std::chrono::nanoseconds elapsed, TextOutput& out) {
  const HeldFigures held = routes.figures();
  Lines lines(out);
  printInput(input, lines);
  printRoutes(routes.counts(), held, lines);
  printLists(held, lines);
  lines.print("time", decimal(std::chrono::duration<double>(elapsed).count(), 3), " s");
}

}  // namespace CommTool
