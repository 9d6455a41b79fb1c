#pragma once

#include "Host/App/CommandLine.h"
#include "Host/App/Messages.h"

// Loads the scene, has the module export it, and answers the exit status: 0 when the exporter answered success, 1 when
// it answered failure or its file isn't whole. `home` is the folder, native, in which the search for pipeline.ini
// starts; empty for that of the output. Throws a HostError for what can't be read or written, which is found out
// before the exporter starts.
int RunExport(const ExportArguments& arguments, const std::string& home, const Messages& messages, bool showProgress);
