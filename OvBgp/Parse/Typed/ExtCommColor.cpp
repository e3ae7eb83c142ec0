#include "OvBgp/Parse/Typed/ExtCommColor.h"

#include <ostream>

#include "Dorn/NotifyingObject.h"
#include "OvBgp/Value/ExtCommText.h"

namespace Routing::Bgp {
namespace {

void appendBits(OvFmt::DynamicBufferInterface& to, U8 colorOnly) {
  to.append(colorOnly & 2 ? '1' : '0');
  to.append(colorOnly & 1 ? '1' : '0');
}

}  // namespace

KIV_OBJECT_DEFINE(ExtCommColor)

void ExtCommColor::formatDerivedType(std::ostream& out) const {
  ExtCommTextBuffer words;
  words.append("Color: ");
  words.appendDecimal(color());
  words.append('(');
  appendBits(words, colorOnly());
  words.append(')');
  writeExtCommDiagnostic(out, words.view(), getContent());
}

void ExtCommColor::appendForPolicy(OvFmt::DynamicBufferInterface& to, StrepFormat) const {
  to.append("Color:CO(");
  appendBits(to, colorOnly());
  to.append("):");
  to.appendDecimal(color());
}

ExtCommColor::Ptr extCommColorFactory(const ExtCommContent& content) {
  return Dorn::notifyingObject<ExtCommColor>(content);
}

}  // namespace Routing::Bgp
