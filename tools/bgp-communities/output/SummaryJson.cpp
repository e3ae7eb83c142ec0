#include "tools/bgp-communities/output/SummaryJson.h"

#include "tools/bgp-communities/output/Figures.h"
#include "tools/bgp-communities/output/Json.h"
#include "tools/bgp-communities/output/TimeText.h"

namespace CommTool {

namespace {

// The statistics of the values or the lists of one kind.
void writeFigures(Json& json, std::string_view name, const ObjectFigures& figures) {
  json.key(name);
  json.objectBegin();
  json.add("occurrences", figures.occurrences);
  json.add("unique", figures.unique);
  json.add("references", figures.references);
  json.add("bytes", figures.bytes);
  json.add("bytes_unshared", figures.bytesUnshared);
  json.objectEnd();
}

// The kinds of errors are texts from the tool, not names, so they are written as strings and
// escaped.
void writeErrors(Json& json, const ErrorCounts& errors) {
  json.key("errors");
  json.objectBegin();
  for (const auto& [kind, count] : errors.counts()) {
    json.text(kind);
    json.number(count);
  }
  json.objectEnd();
}

// The time of a record, which does not exist if there are no records.
void writeTime(Json& json, std::string_view name, const InputCounts& input, U32 seconds) {
  json.key(name);
  if (input.records == 0) {
    json.null();
  } else {
    json.text(timeText(seconds));
  }
}

void writeTop(Json& json, const std::vector<ListUse>& top) {
  json.key("top");
  json.arrayBegin();
  for (const ListUse& use : top) {
    json.objectBegin();
    json.add("kind", rowOf(use.kind).member);
    json.add("text", use.text);
    json.add("references", use.references);
    json.objectEnd();
  }
  json.arrayEnd();
}

// How many attributes of each kind had a flag.
void writeFlags(Json& json, std::string_view name, const std::array<U64, communityKinds>& counts) {
  json.key(name);
  json.objectBegin();
  for (const CommunityKindRow& row : communityKindRows) {
    json.add(row.member, counts[indexOf(row.kind)]);
  }
  json.objectEnd();
}

}  // namespace

// All kinds are written, whatever the filter, so that readers find the same members in each run.
void printSummaryJson(const SummaryData& data, TextOutput& out) {
  const HeldFigures held = figuresOf(data.routes, data.top);
  Json json;
  json.objectBegin();
  json.add("v", U64{1});
  json.add("records", data.input.records);
  writeTime(json, "first_record", data.input, data.input.firstSeconds);
  writeTime(json, "last_record", data.input, data.input.lastSeconds);
  json.add("routes", held.routes);
  writeErrors(json, data.errors);
  for (const CommunityKindRow& row : communityKindRows) {
    json.key(row.member);
    json.objectBegin();
    writeFigures(json, "values", held.of(row.kind).values);
    writeFigures(json, "lists", held.of(row.kind).lists);
    json.objectEnd();
  }
  // Members that depend on options come last.
  writeTop(json, held.top);
  if (data.flags != nullptr) {
    json.key("flags");
    json.objectBegin();
    writeFlags(json, "partial", data.flags->partial);
    writeFlags(json, "extended_length", data.flags->extendedLength);
    json.objectEnd();
  }
  json.objectEnd();
  out.append(json.view());
  out.append('\n');
}

}  // namespace CommTool
