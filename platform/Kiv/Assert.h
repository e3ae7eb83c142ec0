// Assertions: checks of the program, never of data.
//
// A failed assertion prints one line to standard error and aborts the process, in every build
// type. Wire data, files and shared memory must not be able to fail an assertion; code that
// reads such data throws an exception of Kiv/Exception.h instead.
#ifndef KIV_ASSERT_H
#define KIV_ASSERT_H

#include "Kiv/Export.h"

namespace Kiv {

// The description of one failed assertion, as the handler receives it. The struct owns nothing:
// the texts are literals in practice and must stay valid until the process has ended.
struct AssertFailure {
  // The text of the condition that was false. Some of these texts are part of an interface.
  const char* condition;
  // The source file without its ending, for example "OvBgp/OvBgpSerialize".
  const char* source;
  // The line of the check in its file, counted from 1.
  int line;
  // The signature of the function that contains the check.
  const char* function;
};

// A function of the host that runs once between the printed line and the abort.
using AssertHandler = void (*)(const AssertFailure&);

// Installs `handler`, or removes the current handler if `handler` is null, and returns the handler
// installed before. The handler lets a host flush its logs; it cannot prevent the abort.
//
// Callable on any thread at any time. The handler runs on the thread that failed, at most once
// for each installation, because assertFailed() uninstalls it before the call. An assertion that
// the handler itself fails therefore aborts at once. An assertion that fails on a second thread
// meanwhile aborts at once, too, and may end the process before the handler has returned.
OV_EXPORT AssertHandler setAssertHandler(AssertHandler handler) noexcept;

// Prints the failure to standard error, runs the installed handler and aborts. Called by the macros
// below; code that has found an inconsistency by other means may call it directly.
[[noreturn]] OV_EXPORT void assertFailed(const char* condition, const char* source, int line,
                                         const char* function) noexcept;

}  // namespace Kiv

// Aborts the process unless `holds` is true. `condition` and `source` are the literal texts to
// report, because they are part of the interface and must not change with the code.
#define KIV_ASSERT(holds, condition, source) \
  KIV_ASSERT_IN(holds, condition, source, __PRETTY_FUNCTION__)

// As KIV_ASSERT, with the text of the function's signature as a literal. Needed where the
// signature is part of an interface, since compilers spell __PRETTY_FUNCTION__ differently.
#define KIV_ASSERT_IN(holds, condition, source, function) \
  (__builtin_expect(static_cast<bool>(holds), 1)          \
       ? void()                                           \
       : ::Kiv::assertFailed(condition, source, __LINE__, function))

#endif
