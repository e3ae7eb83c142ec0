#include "Kiv/Assert.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace Kiv {
namespace {

// Constant-initialised, so that an assertion that fails before main() finds it usable.
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
  // Uninstall the handler before the call. If the handler fails an assertion itself, the nested
  // call finds no handler and aborts instead of recursing.
  if (const AssertHandler handler = setAssertHandler(nullptr)) handler(failure);
  std::abort();
}

}  // namespace Kiv
