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

// An address inside a longer text. The address class reads only a whole text, so the reader below
// finds the end of the address first.
struct AddrText {
  Ovnet::Ip6Addr addr;
};

// Takes all characters that may occur in an IPv6 address. Throws Kiv::RangeException, and leaves
// `it`, if these are no address.
void sequenceToValue(const char*& it, const char* end, AddrText* target) {
  constexpr std::string_view mayOccur = "0123456789abcdefABCDEF:.";
  const char* const stop = std::find_if(
      it, end, [mayOccur](char c) { return mayOccur.find(c) == std::string_view::npos; });
  target->addr = Ovnet::Ip6Addr(std::string_view(it, static_cast<std::size_t>(stop - it)));
  it = stop;
}

}  // namespace

// The low octet of the local administrator precedes the high one: the values of hash() are a
// contract, so this stays although the wire has the opposite order.
U32 ExtCommIp6Content::hash() const noexcept {
  BgpCommon::BgpHashMixImpl mix;
  mix.addU8(type_);
  mix.addU8(subtype_);
  for (const U8 octet : addr_.octets()) mix.addU8(octet);
  mix.addU8(static_cast<U8>(localAdmin_));
  mix.addU8(static_cast<U8>(localAdmin_ >> 8));
  return mix.hash();
}

// Five words in two chained folded multiplies. The content has no padding (static_assert in the
// header), so equal contents have equal words. Every word is mixed with a secret of the process, so
// that a sender cannot construct communities that collide.
U32 ExtCommIp6Content::probeHash() const noexcept {
  const auto words = std::bit_cast<std::array<U32, sizeof(ExtCommIp6Content) / sizeof(U32)>>(*this);
  const Kiv::HashKey key = Kiv::hashKey;
  const U64 h = Kiv::foldedProduct(key.mask ^ (words[0] | U64{words[1]} << 32),
                                   key.factor ^ (words[2] | U64{words[3]} << 32));
  return static_cast<U32>(Kiv::foldedProduct(h ^ words[4], key.factor));
}

// Type and subtype are written as raw characters, not as numbers: the text is a given form.
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

// `target` and `it` are written last, so that neither changes if a reader throws.
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
  out.width(0);
  return out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

}  // namespace Routing::Bgp
