// The assertions of fuzz targets.
#ifndef FUZZ_SUPPORT_REQUIRE_H
#define FUZZ_SUPPORT_REQUIRE_H

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

#include "Kiv/Type.h"
#include "Kiv/Types.h"

namespace Fuzz {

// Ends the process, for the fuzzer to keep the input, if something does not hold.
inline void require(bool holds, std::string_view what) {
  if (holds) return;
  std::fprintf(stderr, "broken: %.*s\n", static_cast<int>(what.size()), what.data());
  std::abort();
}

// Two ways to the same text.
inline void requireSame(std::string_view one, std::string_view other, std::string_view what) {
  if (one == other) return;
  std::fprintf(stderr, "\"%.*s\"\n\"%.*s\"\n", static_cast<int>(one.size()), one.data(),
               static_cast<int>(other.size()), other.data());
  require(false, what);
}

// While there is one, objects of the framework's allocator come and go; in the end
// there must be as many as before.  Tables that are kept must be there before; the
// room that they keep for members does not count.
class NothingLeft {
 public:
  NothingLeft() : before_(objects()) {}
  ~NothingLeft() {
    if (objects() == before_) return;
    Kiv::typesPrint(std::cerr);
    require(false, "an object is left behind, or gone");
  }
  NothingLeft(const NothingLeft&) = delete;
  NothingLeft& operator=(const NothingLeft&) = delete;

 private:
  static U64 objects() {
    U64 count = 0;
    Kiv::forEachType([&count](const Kiv::Type& type) {
      if (type.name() != "Dorn::DedupBucket") count += type.objects();
    });
    return count;
  }

  const U64 before_;
};

}  // namespace Fuzz

#endif
