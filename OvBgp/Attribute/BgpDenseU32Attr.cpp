#include "OvBgp/Attribute/BgpDenseU32Attr.h"

#include <ostream>

#include "Kiv/AttributeReader.h"
#include "Kiv/Exception.h"
#include "Kiv/Strep.h"

namespace Routing::Bgp {
namespace {

// One of the equal parts into which a view divides the word. The three views differ only in the
// width and the number of their parts, so all getters and setters go through this class.
class Part {
 public:
  // Part `i` of `count` parts with `width` bits each; part 0 is the least significant. Throws
  // Kiv::RangeException with the text `operation` if there is no part `i`.
  Part(unsigned width, unsigned count, U8 i, const char* operation)
      : shift_(i * width), mask_((U32{1} << width) - 1) {
    if (i >= count) throw Kiv::RangeException(operation);
  }
  // The part's bits of `word`, moved down to bit 0.
  U32 of(U32 word) const { return (word >> shift_) & mask_; }
  // `word` with this part replaced. `part` must fit the width.
  U32 replaced(U32 word, U32 part) const { return (word & ~(mask_ << shift_)) | part << shift_; }

 private:
  unsigned shift_;
  U32 mask_;
};

// The parts of the three views as {bits a part, number of parts}. Flags use only the lower half of
// the word: 16 flags of one bit.
Part flagPart(U8 i, const char* operation) { return {1, 16, i, operation}; }
Part octetPart(U8 i, const char* operation) { return {8, 4, i, operation}; }
Part halfPart(U8 i, const char* operation) { return {16, 2, i, operation}; }

}  // namespace

// value_ is written before expectEnd() throws, but the object does not exist then.
BgpDenseU32Attr::BgpDenseU32Attr(const Kiv::String& text) {
  const char* it = text.data();
  Kiv::AttributeReader reader(it, it + text.size());
  reader.attribute("value", &value_);
  reader.expectEnd();
}

bool BgpDenseU32Attr::valueBool(U8 i) const {
  return flagPart(i, "BgpDenseU32Attr::valueBool").of(value_) != 0;
}
void BgpDenseU32Attr::valueBoolIs(U8 i, bool b) {
  value_ = flagPart(i, "BgpDenseU32Attr::valueBoolIs").replaced(value_, b);
}
void BgpDenseU32Attr::valueBoolDel(U8) {
  throw Kiv::NonDeletableAttributeException("BgpDenseU32Attr::valueBoolDel");
}

U8 BgpDenseU32Attr::valueU8(U8 i) const {
  return static_cast<U8>(octetPart(i, "BgpDenseU32Attr::valueU8").of(value_));
}
void BgpDenseU32Attr::valueU8Is(U8 i, U8 v) {
  value_ = octetPart(i, "BgpDenseU32Attr::valueU8Is").replaced(value_, v);
}
void BgpDenseU32Attr::valueU8Del(U8) {
  throw Kiv::NonDeletableAttributeException("BgpDenseU32Attr::valueU8Del");
}

U16 BgpDenseU32Attr::valueU16(U8 i) const {
  return static_cast<U16>(halfPart(i, "BgpDenseU32Attr::valueU16").of(value_));
}
void BgpDenseU32Attr::valueU16Is(U8 i, U16 v) {
  value_ = halfPart(i, "BgpDenseU32Attr::valueU16Is").replaced(value_, v);
}
void BgpDenseU32Attr::valueU16Del(U8) {
  throw Kiv::NonDeletableAttributeException("BgpDenseU32Attr::valueU16Del");
}

Kiv::String valueToStrep(const BgpDenseU32Attr& attr) {
  return "value=" + Kiv::valueToStrep(attr.value());
}

std::ostream& operator<<(std::ostream& os, const BgpDenseU32Attr& attr) {
  return os << Kiv::valueToStrep(attr.value());
}

}  // namespace Routing::Bgp
