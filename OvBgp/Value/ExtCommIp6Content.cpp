#include "OvBgp/Value/ExtCommIp6Content.h"

#include <algorithm>
#include <array>
#include <bit>
#include <ostream>

#include "BgpCommon/BgpHashMixImpl.h"
#include "Kiv/AttributeReader.h"
#include "Kiv/Hash.h"
#include "OvFmt/DynamicBuffer.h"

namespace Routing::Bgp {
namespace {

// An address at the start of a longer text.
struct AddrText {
  Ovnet::Ip6Addr addr;
};

void sequenceToValue(const char*& it, const char* end, AddrText* target) {
  constexpr std::string_view mayOccur = "0123456789abcdefABCDEF:.";
  const char* const stop = std::find_if(
      it, end, [mayOccur](char c) { return mayOccur.find(c) == std::string_view::npos; });
  target->addr = Ovnet::Ip6Addr(std::string_view(it, static_cast<std::size_t>(stop - it)));
  it = stop;
}

}  // namespace

U32 ExtCommIp6Content::hash() const noexcept {
  BgpCommon::BgpHashMixImpl mix;
  mix.addU8(type_);
  mix.addU8(subtype_);
  for (const U8 octet : addr_.octets()) mix.addU8(octet);
  mix.addU8(static_cast<U8>(localAdmin_));
  mix.addU8(static_cast<U8>(localAdmin_ >> 8));
  return mix.hash();
}

U32 ExtCommIp6Content::probeHash() const noexcept {
  const auto words = std::bit_cast<std::array<U32, sizeof(ExtCommIp6Content) / sizeof(U32)>>(*this);
  const Kiv::HashKey key = Kiv::hashKey;
  const U64 h = Kiv::foldedProduct(key.mask ^ (words[0] | U64{words[1]} << 32),
                                   key.factor ^ (words[2] | U64{words[3]} << 32));
  return static_cast<U32>(Kiv::foldedProduct(h ^ words[4], key.factor));
}

Kiv::String valueToStrep(const ExtCommIp6Content& content) {
  OvFmt::StackBackedBuffer<128> text;
  text.append("type=");
  text.append(static_cast<char>(content.type()));
  text.append(";subtype=");
  text.append(static_cast<char>(content.subtype()));
  text.append(";addr=");
  content.addr().printToBuffer(text);
  text.append(";localAdmin=");
  text.appendDecimal(content.localAdmin());
  return text.str();
}

void sequenceToValue(const char*& it, const char* end, ExtCommIp6Content* target) {
  U8 type = 0;
  U8 subtype = 0;
  AddrText addr;
  U16 localAdmin = 0;
  const char* at = it;
  Kiv::AttributeReader reader(at, end);
  reader.attribute("type", &type);
  reader.expect(";");
  reader.attribute("subtype", &subtype);
  reader.expect(";");
  reader.attribute("addr", &addr);
  reader.expect(";");
  reader.attribute("localAdmin", &localAdmin);
  *target = ExtCommIp6Content(type, subtype, addr.addr, localAdmin);
  it = at;
}

std::ostream& operator<<(std::ostream& out, const ExtCommIp6Content& content) {
  const Kiv::String text = valueToStrep(content);
  return out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

}  // namespace Routing::Bgp
