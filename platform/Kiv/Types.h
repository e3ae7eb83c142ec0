// The framework's fixed-width unsigned integers.
//
// The names are in the global namespace because every interface of the system uses them
// unqualified, and so do the function signatures in its assertion texts.
#ifndef KIV_TYPES_H
#define KIV_TYPES_H

#include <cstdint>

// An unsigned integer of exactly 8 bits; also the type of one octet of wire data.
using U8 = std::uint8_t;
// An unsigned integer of exactly 16 bits, in host byte order like all of these.
using U16 = std::uint16_t;
// An unsigned integer of exactly 32 bits; also the type of enumerators, counts and hashes.
using U32 = std::uint32_t;
// An unsigned integer of exactly 64 bits; also the type of totals over many objects.
using U64 = std::uint64_t;

#endif
