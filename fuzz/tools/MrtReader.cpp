// Arbitrary octets as a file of routing data.  Whatever they are:
// - records are cut where their lengths say, and routes are what they are said to be;
// - no allocation asks for more than the file, times a constant, explains;
// - lists serialize to the attributes that they were made of;
// - every form of output has the same routes, and JSON is JSON;
// - the same octets, compressed, give the same.
#include <zlib.h>

#include <algorithm>
#include <array>
#include <new>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "Kiv/Types.h"
#include "fuzz/support/Allocations.h"
#include "fuzz/support/JsonGrammar.h"
#include "fuzz/support/MemoryFile.h"
#include "fuzz/support/Require.h"
#include "tools/bgp-communities/commands/MrtCommand.h"
#include "tools/bgp-communities/mrt/MrtFiles.h"
#include "tools/bgp-communities/output/ErrorLines.h"

namespace {

using namespace CommTool;
using Fuzz::require;

// As compressed octets may stand for a thousand times as many.
bool isCompressed(Octets file) {
  const std::string_view octets(reinterpret_cast<const char*>(file.data()), file.size());
  constexpr std::string_view magics[] = {"\x1f\x8b", "BZh",
                                         "\xfd"
                                         "7zXZ",
                                         "\x28\xb5\x2f\xfd"};
  const bool isSkippable = octets.size() >= 4 && octets.substr(1, 3) == "\x2a\x4d\x18";  // zstd
  return isSkippable || std::ranges::any_of(magics, [octets](std::string_view magic) {
           return octets.starts_with(magic);
         });
}

U32 numberAt(Octets octets, std::size_t at) {
  return U32{octets[at]} << 24 | U32{octets[at + 1]} << 16 | U32{octets[at + 2]} << 8 |
         octets[at + 3];
}

constexpr std::size_t longText = std::size_t{128} * 1024;

// How many whole records there are.
U64 recordsIn(Octets octets) {
  U64 records = 0;
  while (octets.size() >= 12 && numberAt(octets, 8) <= octets.size() - 12 &&
         numberAt(octets, 8) <= MrtReader::maxLength) {
    octets = octets.subspan(12 + numberAt(octets, 8));
    ++records;
  }
  return records;
}

// Looks at routes as they come, and estimates how long their text will be.
class Routes : public RouteSink {
 public:
  void handleRoutes(const RouteBatch& batch) override {
    require(!batch.routes.empty(), "a batch without routes");
    require(batch.action != RouteAction::withdraw || batch.communities.empty(),
            "a withdrawal with communities");
    for (const Nlri& nlri : batch.routes) look(nlri.prefix);
    std::size_t octets = 64;
    for (const CommunityKindRow& row : communityKindRows) octets += look(batch.communities, row);
    routes += batch.routes.size();
    weight += batch.routes.size() * octets;
  }

  std::size_t routes = 0;
  std::size_t weight = 0;

 private:
  static void look(const Prefix& prefix) {
    const auto& octets = prefix.network.octets;
    require(prefix.length <= octetsOf(prefix.network.family) * 8U, "a prefix beyond its family");
    for (std::size_t bit = prefix.length; bit < octets.size() * 8; ++bit) {
      require((octets[bit / 8] >> (7 - bit % 8) & 1) == 0, "a bit behind a prefix");
    }
  }
  static std::size_t look(const CommunityAttributes& attributes, const CommunityKindRow& row) {
    const auto& value = attributes[row.kind];
    if (!value) return 0;
    require(!value->empty() && value->size() % row.memberSize == 0, "a part of a community");
    return value->size();
  }
};

// The content of the file, as the reader alone finds it.
struct Reading {
  ExitStatus status = ExitStatus::fine;
  Routes routes;
  U64 records = 0;
};

Reading read(const std::string& path) {
  Reading reading;
  std::ostringstream errors;
  ErrorLines errorLines(errors);
  MrtFiles files(reading.routes);
  files.observerAdd(errorLines);
  files.read(path);
  reading.status = statusOf(files.counts());
  reading.records = files.counts().records;
  require((reading.status == ExitStatus::damaged) == !errors.str().empty(),
          "damage that nobody was told of, or the other way round");
  return reading;
}

enum class Form : U8 { summary, routes, objects, figures };

// The output of the command.
std::string run(Form form, const std::string& path, ExitStatus expected) {
  MrtOptions options;
  options.files = {path};
  options.routes = form == Form::routes;
  options.json = form == Form::objects || form == Form::figures;
  options.summary = form == Form::figures;
  options.verify = true;
  const Fuzz::MemoryFile out;
  std::ostringstream errors;
  require(runMrt(options, out.fd(), errors) == expected, "another status");
  return out.contents();
}

std::size_t linesOf(std::string_view text) {
  require(text.empty() || text.ends_with('\n'), "a line without its end");
  return static_cast<std::size_t>(std::ranges::count(text, '\n'));
}

void requireJsonLines(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    require(Fuzz::isJson(text.substr(0, end)), "a line that is no JSON");
    text.remove_prefix(end + 1);
  }
}

std::vector<U8> compressed(Octets octets) {
  z_stream stream{};
  constexpr int gzipWindow = 15 + 16;
  if (deflateInit2(&stream, 1, Z_DEFLATED, gzipWindow, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
    throw std::bad_alloc();
  }
  std::vector<U8> room(deflateBound(&stream, octets.size()));
  stream.next_in = const_cast<U8*>(octets.data());  // zlib does not write to it
  stream.avail_in = static_cast<uInt>(octets.size());
  stream.next_out = room.data();
  stream.avail_out = static_cast<uInt>(room.size());
  require(deflate(&stream, Z_FINISH) == Z_STREAM_END, "compression");
  room.resize(stream.total_out);
  deflateEnd(&stream);
  return room;
}

// All forms of output, unless they would be very long.
void print(Octets octets, const std::string& path, const Reading& reading) {
  run(Form::summary, path, reading.status);
  requireJsonLines(run(Form::figures, path, reading.status));
  if (reading.routes.weight > longText) return;
  const std::string lines = run(Form::routes, path, reading.status);
  require(linesOf(lines) == reading.routes.routes, "a line a route");
  const std::string objects = run(Form::objects, path, reading.status);
  require(linesOf(objects) == reading.routes.routes, "an object a route");
  requireJsonLines(objects);
  if (isCompressed(octets)) return;
  const Fuzz::MemoryFile again(compressed(octets));
  Fuzz::requireSame(lines, run(Form::routes, again.path(), reading.status), "compressed");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  const Octets octets(data, size);
  const Fuzz::NothingLeft guard;
  const Fuzz::MemoryFile file(octets);
  Reading reading;
  if (isCompressed(octets)) {
    reading = read(file.path());
  } else {
    // Buffers of fixed sizes, and lines about damage.
    const Fuzz::AllocationLimit limit(std::size_t{1024} * 1024 + 64 * size);
    reading = read(file.path());
    require(reading.records == recordsIn(octets), "records cut elsewhere");
  }
  print(octets, file.path(), reading);
  return 0;
}
