#include "Kiv/ObserverFailure.h"

#include <exception>

#include "Kiv/String.h"
#include "Kiv/Trace.h"

namespace Kiv {
namespace {

constinit TraceHandle kivTrace("Kiv");

// The level of failures, the most important of all.
constexpr unsigned traceFailure = 0;

// Returns the text of the exception that is being handled.
String currentExceptionText() {
  try {
    throw;
  } catch (const std::exception& error) {
    return error.what();
  } catch (...) {
    return "an exception without a text";
  }
}

void failureTrace() {
  KIV_TRACE(kivTrace, traceFailure, "observer of a removal threw: " << currentExceptionText());
}

}  // namespace

// The try block covers what KIV_TRACE passes on: exceptions of the sink, and a shortage of memory
// when the handle enters its register.
void observerFailureTrace() noexcept {
  try {
    failureTrace();
  } catch (...) {
    // Tracing failed as well. The removal must go on, so nothing is left to do.
  }
}

}  // namespace Kiv
