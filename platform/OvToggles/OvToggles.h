// Feature toggles: switches that an operator sets in a file.
#ifndef OVTOGGLES_OVTOGGLES_H
#define OVTOGGLES_OVTOGGLES_H

#include "Kiv/Export.h"
#include "Kiv/String.h"

namespace OvToggles {

// Whether the toggle `name` is on.  `file` names a toggle file in the folder of
// toggle files: one flat JSON object of booleans, such as {"OvBgpLlgr": false}.
// Without a folder, such a file or such a name the answer is `defaultState`.  So it
// is for a file that cannot be read or is malformed, which is also reported in one
// line on standard error: the place in it and what was expected there.
//
// The file is read on every call, so that callers that ask often keep the answer.
// Any thread.
OV_EXPORT bool getToggleState(const Kiv::String& name, const Kiv::String& file, bool defaultState);

// The folder of toggle files: the one set here, and until then (or when it is
// empty) the one that the environment variable OV_TOGGLES_PATH names.
OV_EXPORT Kiv::String togglePath();
OV_EXPORT void togglePathIs(const Kiv::String& folder);

}  // namespace OvToggles

#endif
