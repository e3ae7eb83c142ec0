#include "OvBgp/Parse/Typed/ExtCommColor.h"

#include <ostream>

#include "Dorn/NotifyingObject.h"
#include "OvBgp/Value/ExtCommText.h"
#include "OvBgp/Value/Private/ExtCommDiagnostic.h"

namespace Routing::Bgp {
namespace {

// Appends the color-only bits as two binary digits, the high bit first.
void appendBits(OvFmt::DynamicBufferInterface& to, U8 colorOnly) {
  to.append(colorOnly & 2 ? '1' : '0');
  to.append(colorOnly & 1 ? '1' : '0');
}

}  // namespace

KIV_OBJECT_DEFINE(ExtCommColor)

// Collects the text in a buffer first, so that the width, fill and base of `out` have no effect.
void ExtCommColor::formatDerivedType(std::ostream& out) const {
  ExtCommTextBuffer words;
  words.append("Color: ");
  words.appendDecimal(color());
  words.append('(');
  appendBits(words, colorOnly());
  words.append(')');
  writeExtCommDiagnostic(out, words.view(), getContent());
}

// Ignores the format, so policies and show commands use the same text.
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
