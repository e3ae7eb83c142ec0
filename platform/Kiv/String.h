// The framework's string type.
#ifndef KIV_STRING_H
#define KIV_STRING_H

#include <string>

namespace Kiv {

// A string that owns its characters and knows its length, so it may contain NUL bytes. The
// encoding is not fixed: texts of the library are ASCII, texts of the host pass unchanged.
using String = std::string;

}  // namespace Kiv

#endif
