#include "Kiv/AttributeReader.h"

namespace Kiv {

void AttributeReader::expect(std::string_view text) {
  // The iterator moves only after a full match, so a caller may try another text after a failure.
  const std::string_view rest(it_, static_cast<std::size_t>(end_ - it_));
  if (!rest.starts_with(text)) throw RangeException("\"" + String(text) + "\" expected");
  it_ += text.size();
}

void AttributeReader::expectEnd() const {
  if (it_ != end_) throw RangeException("end of text expected");
}

// Out of line, because the template that calls it is instantiated for many types.
void AttributeReader::throwAttributeError(std::string_view name, const RangeException& error) {
  throw RangeException("attribute \"" + String(name) + "\": " + error.what());
}

}  // namespace Kiv
