#include "bench/ratios/Report.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cstdio>
#include <ostream>

namespace Bench {
namespace {

std::string number(double value, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

// Prints about three significant digits.
std::string number(double value) { return number(value, value < 10 ? 2 : value < 100 ? 1 : 0); }

// The memory of a row is always in bytes; its time has the unit of the row.
std::string unitOf(const Row& row, Measure measure) {
  return measure == Measure::bytes ? "bytes" : row.unit;
}

// A goal without a peer bounds our figure itself, so its cells for peer and ratio stay empty.
// Memory is measured once and has no quartiles.
void printGoal(std::ostream& out, const Row& row, const GoalResult& result) {
  const std::string unit = " " + unitOf(row, result.goal.measure);
  const bool isRatio = !result.peer.empty();
  out << "| " << row.name << (result.goal.measure == Measure::bytes ? ", memory" : "") << " | "
      << number(result.ours) << unit << " | ";
  if (isRatio) out << result.peer << ": " << number(result.theirs) << unit;
  out << " | ";
  if (isRatio) out << number(result.figure.median, 2);
  if (isRatio && result.goal.measure == Measure::time) {
    out << " (" << number(result.figure.low, 2) << " to " << number(result.figure.high, 2) << ")";
  }
  out << " | " << (isRatio ? number(result.goal.atMost, 2) : number(result.goal.atMost) + unit)
      << " | " << (result.met() ? "met" : "**missed**") << " |\n";
}

using Writer = rapidjson::Writer<rapidjson::StringBuffer>;

void member(Writer& to, const char* name, const std::string& value) {
  to.Key(name);
  to.String(value.c_str());
}

void member(Writer& to, const char* name, double value) {
  to.Key(name);
  to.Double(value);
}

// Prints one JSON object as a line. `write` adds its members after the first two.
template <class Write>
void line(std::ostream& out, const char* kind, const Row& row, const Write& write) {
  rapidjson::StringBuffer text;
  Writer to(text);
  to.StartObject();
  member(to, "kind", kind);
  member(to, "row", row.name);
  write(to);
  to.EndObject();
  out << text.GetString() << '\n';
}

void spreadWrite(Writer& to, const Spread& spread) {
  member(to, "median", spread.median);
  member(to, "low", spread.low);
  member(to, "high", spread.high);
}

void contenderLine(std::ostream& out, const Row& row, const ContenderResult& result) {
  line(out, "time", row, [&](Writer& to) {
    member(to, "contender", result.name);
    member(to, "unit", row.unit);
    if (!row.series.empty()) {
      member(to, "series", row.series);
      member(to, "x", row.x);
    }
    spreadWrite(to, spreadOf(result.samples));
    if (result.bytes > 0) member(to, "bytes", result.bytes);
  });
}

void goalLine(std::ostream& out, const Row& row, const GoalResult& result) {
  line(out, "goal", row, [&](Writer& to) {
    member(to, "measure", unitOf(row, result.goal.measure));
    member(to, "peer", result.peer);
    member(to, "at_most", result.goal.atMost);
    spreadWrite(to, result.figure);
    to.Key("met");
    to.Bool(result.met());
  });
}

}  // namespace

void printGoals(std::ostream& out, const std::vector<RowResult>& results) {
  out << "| work | ours | peer | ratio, median (quartiles) | goal: at most | "
         "|\n|---|---|---|---|---|---|\n";
  for (const RowResult& result : results) {
    for (const GoalResult& goal : result.goals) printGoal(out, result.row, goal);
  }
}

void printContenders(std::ostream& out, const std::vector<RowResult>& results) {
  out << "| work | contender | median | ratio of ours | bytes |\n|---|---|---|---|---|\n";
  for (const RowResult& result : results) {
    if (result.contenders.empty()) continue;
    // With --contender the first contender is that one, and the ratio is 1.
    const double ours = spreadOf(result.contenders.front().samples).median;
    for (const ContenderResult& one : result.contenders) {
      const double median = spreadOf(one.samples).median;
      out << "| " << result.row.name << " | " << one.name << " | " << number(median) << ' '
          << result.row.unit << " | " << number(ours / median, 2) << " | "
          << (one.bytes > 0 ? number(one.bytes, 1) : "") << " |\n";
    }
  }
}

void printJson(std::ostream& out, const std::vector<RowResult>& results) {
  for (const RowResult& result : results) {
    for (const ContenderResult& one : result.contenders) contenderLine(out, result.row, one);
    for (const GoalResult& goal : result.goals) goalLine(out, result.row, goal);
  }
}

}  // namespace Bench
