// A limit for what one allocation may ask for, while data decides how much that is.
#ifndef FUZZ_SUPPORT_ALLOCATIONS_H
#define FUZZ_SUPPORT_ALLOCATIONS_H

#include <cstddef>
#include <cstdio>
#include <cstdlib>

// Clang's address sanitizer lets a program see allocations; GCC does not ship the header.
#if defined(__has_feature)
#if __has_feature(address_sanitizer) && __has_include(<sanitizer/allocator_interface.h>)
#define FUZZ_SEES_ALLOCATIONS 1
#include <sanitizer/allocator_interface.h>
#endif
#endif

namespace Fuzz {

// While there is one, the process ends when an allocation asks for more octets.
// Without Clang's address sanitizer nothing is checked.  One at a time, one thread.
class AllocationLimit {
 public:
  explicit AllocationLimit(std::size_t octets) {
#if defined(FUZZ_SEES_ALLOCATIONS)
    [[maybe_unused]] static const int hooks = __sanitizer_install_malloc_and_free_hooks(
        [](const volatile void*, std::size_t size) { check(size); }, [](const volatile void*) {});
#endif
    limit_ = octets;
  }
  ~AllocationLimit() { limit_ = unlimited; }
  AllocationLimit(const AllocationLimit&) = delete;
  AllocationLimit& operator=(const AllocationLimit&) = delete;

 private:
  static constexpr std::size_t unlimited = ~std::size_t{0};

  [[maybe_unused]] static void check(std::size_t size) {
    if (size <= limit_) return;
    std::fprintf(stderr, "allocation of %zu octets, of %zu allowed\n", size, limit_);
    std::abort();
  }

  static inline std::size_t limit_ = unlimited;
};

}  // namespace Fuzz

#endif
