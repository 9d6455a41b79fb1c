#pragma once

#include "Shared/Cross/RenderAnim/Motion/Event.h"

// An event in a file of its own, ".events", for the models that name it: the event's chunk alone.

namespace ra {

// A bare name lies under "art\events"; one with folders is a path itself. The extension is added. While the tools load
// switch is on, "GENERIC" is asked ahead of "DATA". The event goes into the list under the name that was asked for.
// False without such a file, and, with a line in the log, for one that can't be read.
bool LoadEvent(const Name& name, EventList& events, const char* pModelName);

// Under an alias path. False, with a line in the log, when it can't be written; what stood there is still there then.
bool SaveEvent(const char* pPath, const Event& event);

} // namespace ra
