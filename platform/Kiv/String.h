// The framework's string: counted, may hold NUL bytes, owns its characters.
#ifndef KIV_STRING_H
#define KIV_STRING_H

#include <string>

namespace Kiv {

using String = std::string;

}  // namespace Kiv

#endif
