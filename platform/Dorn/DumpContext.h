// The dump printer: how tables and notifiers show their state to an engineer.
#ifndef DORN_DUMPCONTEXT_H
#define DORN_DUMPCONTEXT_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Types.h"

namespace Dorn {

// Where a dump goes.  Used by one thread at a time; the stream must outlive it.
class OV_EXPORT DumpContext : public Kiv::PtrInterface {
  KIV_OBJECT(DumpContext)

 public:
  explicit DumpContext(std::ostream& out) : out_(out) {}
  std::ostream& out() const noexcept { return out_; }

 private:
  std::ostream& out_;
};

OV_EXPORT DumpContext::Ptr dumpContextFactory(std::ostream& out);

// Prints as printf does.
OV_EXPORT void objDumpPrintf(const Kiv::Ptr<const DumpContext>& context, const char* format, ...)
    __attribute__((format(printf, 2, 3)));

// Prints `indent` blanks by "%*c", which at width 0 would still print one: at 0
// nothing is printed.
OV_EXPORT void objDumpIndent(const Kiv::Ptr<const DumpContext>& context, unsigned int indent);

// Dumps an object that another one holds, if it does.
template <class Child>
void ObjDumpChild(const Kiv::Ptr<const DumpContext>& context, const Kiv::Ptr<Child>& child,
                  unsigned int indent) {
  if (child) child->dumpState(context, indent);
}

}  // namespace Dorn

#endif
