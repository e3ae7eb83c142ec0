// The framework's fixed-width unsigned integers.
//
// They live in the global namespace because every interface of the system, and
// the function signatures in its assertion texts, name them so.
#ifndef KIV_TYPES_H
#define KIV_TYPES_H

#include <cstdint>

using U8 = std::uint8_t;
using U16 = std::uint16_t;
using U32 = std::uint32_t;
using U64 = std::uint64_t;

#endif
