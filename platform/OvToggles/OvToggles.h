// Feature toggles: switches that an operator sets in a file, without a new release.
#ifndef OVTOGGLES_OVTOGGLES_H
#define OVTOGGLES_OVTOGGLES_H

#include "Kiv/Export.h"
#include "Kiv/String.h"

namespace OvToggles {

// Returns whether the toggle `name` is on. `file` is the name of a toggle file in the folder of
// toggle files: one flat JSON object of booleans, for example {"OvBgpLlgr": false}.
//
// Returns `defaultState` if there is no folder, no such file, or no such name in the file. A file
// that cannot be read or is malformed also gives `defaultState`, and one line on standard error
// names the place in the file and what was expected there. Raises std::bad_alloc only.
//
// The file is read on every call: a caller that needs the state often should keep it. Any thread.
OV_EXPORT bool getToggleState(const Kiv::String& name, const Kiv::String& file, bool defaultState);

// The folder of toggle files: the folder set by togglePathIs, or, if that is empty, the value of
// the environment variable OV_TOGGLES_PATH. Empty if neither is set. Any thread, as long as no
// thread changes the environment.
OV_EXPORT Kiv::String togglePath();
// Sets the folder of toggle files; an empty text returns to the environment variable. The folder
// need not exist. Any thread.
OV_EXPORT void togglePathIs(const Kiv::String& folder);

}  // namespace OvToggles

#endif
