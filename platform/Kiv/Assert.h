// Assertions: checks of the program, not of data.
//
// A failed assertion prints one line and aborts, in every build.  Wire data,
// files and shared memory must never be able to reach one; for those, throw an
// exception of Kiv/Exception.h.
#ifndef KIV_ASSERT_H
#define KIV_ASSERT_H

#include "Kiv/Export.h"

namespace Kiv {

// What a failed assertion reports.  All texts outlive the call.
struct AssertFailure {
  const char* condition;  // text of the condition that did not hold
  const char* source;     // source without its ending, e.g. "OvBgp/OvBgpSerialize"
  int line;
  const char* function;  // signature of the function that checked
};

using AssertHandler = void (*)(const AssertFailure&);

// Installs `handler`, to be called once the failure has been printed and before
// the abort, so that a host can flush its logs; null removes it.  It cannot
// prevent the abort.  Returns the handler installed before.  Any thread.
OV_EXPORT AssertHandler setAssertHandler(AssertHandler handler) noexcept;

[[noreturn]] OV_EXPORT void assertFailed(const char* condition, const char* source, int line,
                                         const char* function) noexcept;

}  // namespace Kiv

// Aborts unless `holds`.  `condition` and `source` are the literal texts to
// report; where the function's signature is part of an interface and compilers
// spell it differently, KIV_ASSERT_IN takes that as a literal, too.
#define KIV_ASSERT(holds, condition, source) \
  KIV_ASSERT_IN(holds, condition, source, __PRETTY_FUNCTION__)
#define KIV_ASSERT_IN(holds, condition, source, function) \
  (__builtin_expect(static_cast<bool>(holds), 1)          \
       ? void()                                           \
       : ::Kiv::assertFailed(condition, source, __LINE__, function))

#endif
