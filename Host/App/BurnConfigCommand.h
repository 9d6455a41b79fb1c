#pragma once

#include "Host/App/CommandLine.h"
#include "Host/App/Messages.h"

#include <cstdio>

// Shows or changes a file's burn configuration; what it shows goes to `pOut`. Answers the exit status. Throws a
// HostError with status 2 for a file in no project and for names that there aren't, with those that there are, and with
// status 1 for scripts that can't be read or written.
int RunBurnConfig(const BurnConfigArguments& arguments, std::FILE* pOut, const Messages& messages);
