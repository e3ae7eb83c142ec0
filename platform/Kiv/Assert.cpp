#include "Kiv/Assert.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace Kiv {
namespace {

std::atomic<AssertHandler> installedHandler{nullptr};

}  // namespace

AssertHandler setAssertHandler(AssertHandler handler) noexcept {
  return installedHandler.exchange(handler);
}

void assertFailed(const char* condition, const char* source, int line,
                  const char* function) noexcept {
  const AssertFailure failure{condition, source, line, function};
  std::fprintf(stderr, "assertion \"%s\" failed in %s:%d, %s\n", condition, source, line, function);
  std::fflush(stderr);
  // Taken out first, so that a handler that fails an assertion does not recurse.
  if (const AssertHandler handler = setAssertHandler(nullptr)) handler(failure);
  std::abort();
}

}  // namespace Kiv
