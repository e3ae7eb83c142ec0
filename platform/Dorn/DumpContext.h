// The dump printer: prints the state of tables and notifiers for an engineer.
#ifndef DORN_DUMPCONTEXT_H
#define DORN_DUMPCONTEXT_H

#include <iosfwd>

#include "Kiv/Export.h"
#include "Kiv/Ptr.h"
#include "Kiv/PtrInterface.h"
#include "Kiv/Types.h"

namespace Dorn {

// The destination of a dump. Used by one thread at a time. Does not own the stream, which must
// outlive it.
class OV_EXPORT DumpContext : public Kiv::PtrInterface {
  KIV_OBJECT(DumpContext)

 public:
  // A context that prints to `out`. dumpContextFactory() makes a shared one.
  explicit DumpContext(std::ostream& out) : out_(out) {}
  // The stream.
  std::ostream& out() const noexcept { return out_; }

 private:
  std::ostream& out_;
};

// A new context that prints to `out`. Throws std::bad_alloc.
OV_EXPORT DumpContext::Ptr dumpContextFactory(std::ostream& out);

// Prints formatted text as std::printf does. Throws what the stream throws, and std::bad_alloc
// for long texts. Prints nothing if the format is invalid.
OV_EXPORT void objDumpPrintf(const Kiv::Ptr<const DumpContext>& context, const char* format, ...)
    __attribute__((format(printf, 2, 3)));

// Prints `indent` blanks, with printf's "%*c". Prints nothing for 0, where "%*c" alone would
// print one blank. A number above INT_MAX is a negative width to printf: 2^32 - n prints n.
OV_EXPORT void objDumpIndent(const Kiv::Ptr<const DumpContext>& context, unsigned int indent);

// Calls child->dumpState(context, indent), unless `child` is null.
template <class Child>
void ObjDumpChild(const Kiv::Ptr<const DumpContext>& context, const Kiv::Ptr<Child>& child,
                  unsigned int indent) {
  if (child) child->dumpState(context, indent);
}

}  // namespace Dorn

#endif
