// Exceptions of observers that nobody can handle.
//
// The thread that removes an object usually only releases a reference, in a destructor. So an
// exception of an observer that is notified of a removal has no caller to go to: it is traced, and
// the removal goes on. Kiv/NotifieeList.h has the whole rule.
#ifndef KIV_OBSERVERFAILURE_H
#define KIV_OBSERVERFAILURE_H

#include "Kiv/Export.h"

namespace Kiv {

// Traces the exception that is being handled at level 0 of the trace handle "Kiv", with its text if
// it is a std::exception. Call it in a catch block only. If the trace sink throws, that exception
// is dropped.
OV_EXPORT void observerFailureTrace() noexcept;

// Calls `notice()`, which notifies one observer of a removal. An exception is caught and traced.
template <class Notice>
void notifyOfRemoval(const Notice& notice) noexcept {
  try {
    notice();
  } catch (...) {
    observerFailureTrace();
  }
}

}  // namespace Kiv

#endif
