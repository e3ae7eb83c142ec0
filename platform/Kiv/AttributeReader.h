// Reads the text of a record, attribute by attribute.
//
// The text of a record is its attributes as name=value, joined by ';', in the order of their
// declaration and without blanks: "value=123" or "low=1;high=9". Each value is in the text form
// of its type (Kiv/Strep.h). A record with another punctuation reads the punctuation with
// expect() and the values with value().
//
// Every operation throws Kiv::RangeException if the text is not as expected.
#ifndef KIV_ATTRIBUTEREADER_H
#define KIV_ATTRIBUTEREADER_H

#include <string_view>

#include "Kiv/Exception.h"
#include "Kiv/Export.h"
#include "Kiv/Strep.h"

namespace Kiv {

// A cursor over one text. It owns nothing, and one thread at a time may use it.
//
// The reader keeps a reference to the iterator of the constructor and moves that iterator as it
// reads, so the iterator has an intermediate value after an exception. A sequenceToValue() that
// must leave its own iterator unchanged on failure passes a copy and assigns it back at the end.
class OV_EXPORT AttributeReader {
 public:
  // Reads from [it, end). `it` and the text must outlive the reader.
  AttributeReader(const char*& it, const char* end) noexcept : it_(it), end_(end) {}

  // Moves past `text`. Throws RangeException if the rest of the text does not begin with `text`.
  void expect(std::string_view text);

  // Throws RangeException unless the whole text has been read.
  void expectEnd() const;

  // Reads name=value into `target`. The message of an error in the value starts with the name; an
  // absent name is reported as the text that was expected.
  template <class T>
  void attribute(std::string_view name, T* target) {
    expect(name);
    expect("=");
    value(name, target);
  }

  // Reads a value without a name into `target`, with the sequenceToValue() of its type. An error is
  // reported as an error of the attribute `name`.
  template <class T>
  void value(std::string_view name, T* target) {
    try {
      sequenceToValue(it_, end_, target);
    } catch (const RangeException& error) {
      throwAttributeError(name, error);
    }
  }

 private:
  [[noreturn]] static void throwAttributeError(std::string_view name, const RangeException& error);

  const char*& it_;
  const char* end_;
};

}  // namespace Kiv

#endif
