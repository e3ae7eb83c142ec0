// Each text of an extended community, compared with the same text by snprintf.
//
//   policy      the bare numbers, for policies
//   ui          the type and the numbers, for users; also for an address, a color and a value
//               of unknown type
//   diagnostic  the text of toStrep(), for traces
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "OvBgp/Parse/ExtComm.h"
#include "OvBgp/ValueTable/ExtCommDedupTable.h"

namespace Bench {
namespace {

using Routing::Bgp::ExtComm;
using Routing::Bgp::ExtCommContent;

constexpr U64 routeTarget = 0x0002FDE800000064;
constexpr U64 routeOriginIp = 0x01030A0000010005;
constexpr U64 color = 0x030B800000000064;
constexpr U64 unknown = 0x0399000000001234;

// The interned community of eight octets in host byte order. The table is static.
ExtComm::PtrConst communityOf(U64 value) {
  static const auto container = Routing::Bgp::bgpParseExtCommContainerSmFactory();
  static const auto table = Routing::Bgp::extCommDedupTableFactory(container->extCommParser());
  return ExtComm::dedupContent(table.ptr(), ExtCommContent(value));
}

// Our text. `format` is the bits of a StrepFormat.
template <U64 value, U8 format>
void ours(benchmark::State& state) {
  const auto community = communityOf(value);
  const ExtComm::StrepFormat form{format};
  for (auto _ : state) benchmark::DoNotOptimize(community->toStrepForPolicy(form));
}

template <U64 value>
void oursDiagnostic(benchmark::State& state) {
  const auto community = communityOf(value);
  for (auto _ : state) benchmark::DoNotOptimize(community->toStrep());
}

// The text by snprintf. DoNotOptimize keeps the content unknown to the compiler, so it cannot
// print a constant.
template <U64 value, auto print>
void printed(benchmark::State& state) {
  U64 content = value;
  char room[96];
  for (auto _ : state) {
    benchmark::DoNotOptimize(content);
    print(room, sizeof room, content);
    std::string text(room);
    benchmark::DoNotOptimize(text);
  }
}

unsigned bits(U64 content, unsigned shift, unsigned mask) {
  return static_cast<unsigned>(content >> shift) & mask;
}

void printPolicy(char* room, std::size_t size, U64 c) {
  std::snprintf(room, size, "%u:%u", bits(c, 32, 0xFFFF), bits(c, 0, 0xFFFFFFFF));
}
void printUi(char* room, std::size_t size, U64 c) {
  std::snprintf(room, size, "Route-Target-AS:%u:%u", bits(c, 32, 0xFFFF), bits(c, 0, 0xFFFFFFFF));
}
void printIp(char* room, std::size_t size, U64 c) {
  std::snprintf(room, size, "Route-Origin-IP:%u.%u.%u.%u:%u", bits(c, 40, 0xFF), bits(c, 32, 0xFF),
                bits(c, 24, 0xFF), bits(c, 16, 0xFF), bits(c, 0, 0xFFFF));
}
void printColor(char* room, std::size_t size, U64 c) {
  std::snprintf(room, size, "Color:CO(%u%u):%u", bits(c, 47, 1), bits(c, 46, 1),
                bits(c, 0, 0xFFFFFFFF));
}
void printUnknown(char* room, std::size_t size, U64 c) {
  std::snprintf(room, size, "%02x%02x:0x%02x 0x%02x 0x%02x 0x%02x 0x%02x 0x%02x", bits(c, 56, 0xBF),
                bits(c, 48, 0xFF), bits(c, 40, 0xFF), bits(c, 32, 0xFF), bits(c, 24, 0xFF),
                bits(c, 16, 0xFF), bits(c, 8, 0xFF), bits(c, 0, 0xFF));
}
void printDiagnostic(char* room, std::size_t size, U64 c) {
  std::snprintf(room, size, "<RouteTarget2ByteASN %u:%u 0x%016llx>", bits(c, 32, 0xFFFF),
                bits(c, 0, 0xFFFFFFFF), static_cast<unsigned long long>(c));
}

// Bits of a StrepFormat.
constexpr U8 policyForm = 1;
constexpr U8 uiForm = 6;

BENCHMARK(ours<routeTarget, policyForm>)->Name("policy/ours");
BENCHMARK(printed<routeTarget, printPolicy>)->Name("policy/snprintf");
BENCHMARK(ours<routeTarget, uiForm>)->Name("ui/ours");
BENCHMARK(printed<routeTarget, printUi>)->Name("ui/snprintf");
BENCHMARK(ours<routeOriginIp, uiForm>)->Name("ui_ipv4/ours");
BENCHMARK(printed<routeOriginIp, printIp>)->Name("ui_ipv4/snprintf");
BENCHMARK(ours<color, uiForm>)->Name("ui_color/ours");
BENCHMARK(printed<color, printColor>)->Name("ui_color/snprintf");
BENCHMARK(ours<unknown, uiForm>)->Name("ui_unknown/ours");
BENCHMARK(printed<unknown, printUnknown>)->Name("ui_unknown/snprintf");
BENCHMARK(oursDiagnostic<routeTarget>)->Name("diagnostic/ours");
BENCHMARK(printed<routeTarget, printDiagnostic>)->Name("diagnostic/snprintf");

}  // namespace
}  // namespace Bench
