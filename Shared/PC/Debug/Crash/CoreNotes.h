#pragma once

#include <cstddef>
#include <vector>

class CrashedProcess;
class StoppedProcess;

// The notes of a core file, as they stand in it: the crashed thread's state and registers, the process, the signal,
// what the system told the program at its start, the mapped files, then the other threads' registers.
std::vector<std::byte> MakeCoreNotes(const CrashedProcess& crashed, const StoppedProcess& stopped);
