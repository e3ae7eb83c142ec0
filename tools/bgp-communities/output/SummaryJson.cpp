#include "tools/bgp-communities/SummaryJson.h"

#include "tools/bgp-communities/Figures.h"
#include "tools/bgp-communities/Json.h"

namespace CommTool {

namespace {

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

void writeErrors(Json& json, const ErrorCounts& errors) {
  json.key("errors");
  json.objectBegin();
  for (const auto& [kind, count] : errors.counts()) {
    json.text(kind);
    json.number(count);
  }
  json.objectEnd();
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

void writeFlags(Json& json, std::string_view name, const std::array<U64, communityKinds>& counts) {
  json.key(name);
  json.objectBegin();
  for (const CommunityKindRow& row : communityKindRows) {
    json.add(row.member, counts[indexOf(row.kind)]);
  }
  json.objectEnd();
}

}  // namespace

void printSummaryJson(const MrtFiles& files, const FlagCounts& flags, const HeldRoutes& routes,
                      const MrtOptions& options, TextOutput& out) {
  const HeldFigures held = figuresOf(routes, options.top);
  Json json;
  json.objectBegin();
  json.add("v", U64{1});
  json.add("records", files.counts().records);
  json.add("routes", held.routes);
  writeErrors(json, files.errorCounts());
  for (const CommunityKindRow& row : communityKindRows) {
    json.key(row.member);
    json.objectBegin();
    writeFigures(json, "values", held.of(row.kind).values);
    writeFigures(json, "lists", held.of(row.kind).lists);
    json.objectEnd();
  }
  writeTop(json, held.top);
  if (options.verify) {
    json.key("flags");
    json.objectBegin();
    writeFlags(json, "partial", flags.partial);
    writeFlags(json, "extended_length", flags.extendedLength);
    json.objectEnd();
  }
  json.objectEnd();
  out.append(json.view());
  out.append('\n');
}

}  // namespace CommTool
