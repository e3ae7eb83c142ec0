// Reads the text of a record, attribute by attribute.
//
// A record's text is its attributes as name=value, joined by ';', in the order
// of their declaration, without blanks: "value=123" or "low=1;high=9".  Each
// value is in the text form of its type (Kiv/Strep.h).  Records with another
// punctuation spell it with expect() and read the values with value().
//
// All operations throw Kiv::RangeException if the text is not as expected.  The
// iterator given to the constructor moves as the text is read; a record's reader
// hands in a copy, so that a text that fails half way leaves its own untouched.
#ifndef KIV_ATTRIBUTEREADER_H
#define KIV_ATTRIBUTEREADER_H

#include <string_view>

#include "Kiv/Exception.h"
#include "Kiv/Export.h"
#include "Kiv/Strep.h"

namespace Kiv {

class OV_EXPORT AttributeReader {
 public:
  AttributeReader(const char*& it, const char* end) noexcept : it_(it), end_(end) {}

  // Passes over `text`, which must stand here.
  void expect(std::string_view text);
  // Nothing may follow.
  void expectEnd() const;

  // Reads name=value into `target`.
  template <class T>
  void attribute(std::string_view name, T* target) {
    expect(name);
    expect("=");
    value(name, target);
  }

  // Reads a bare value; an error is reported as one of the attribute `name`.
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
