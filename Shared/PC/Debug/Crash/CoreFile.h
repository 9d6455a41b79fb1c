#pragma once

#include <cstdint>
#include <string>

class CrashedProcess;
class StoppedProcess;

// What a dump holds of memory at most; the rest of a bigger process is named in it, but not there.
constexpr uint64_t s_MostCoreBytes = uint64_t{256} * 1024 * 1024;

// Writes the stopped process as a core file, for a debugger to open with the program: every thread, the one that
// crashed first and as it was at the crash, the files that were mapped, and the memory that isn't in those files, the
// crashed thread's stack ahead of all, then the smaller pieces ahead of the bigger ones. Only its user can read it,
// since it may hold anything. False when the disk or the system refuses; nothing is left of the file then.
bool WriteCoreFile(const std::string& path, const CrashedProcess& crashed, const StoppedProcess& stopped,
                   uint64_t mostBytes = s_MostCoreBytes);
