#pragma once

#include <cstdint>
#include <ctime>
#include <string>

// Facts about the running process and its machine. Paths are in the machine's own form: this lies below the layer
// that translates.
namespace Process {

// All words of the command line, the program's first, with blanks between them. Empty when the system doesn't tell.
std::string GetCommandLine();
// Of the program, not of a module it loaded.
std::string GetExecutablePath();
// With its closing slash.
std::string GetExecutableFolder();
// Where the settings files of an installed build lie: the folder that the environment's PVX_CONFIG names, otherwise
// the executable's. With its closing slash.
std::string GetConfigFolder();
// Where reports of crashes and logs without a place of their own go: the folder that the environment's PVX_LOGS names,
// otherwise "logs" beside the executable, or in the temporary files where that can't be written. With its closing
// slash; perhaps it has to be made.
std::string GetLogFolder();
std::string GetWorkingFolder();
uint32_t GetId();
// Of who started it; another one once that is gone.
uint32_t GetParentId();
// Whether a process of this number runs on this machine, anybody's.
bool IsAlive(uint32_t id);
// "Unknown" if there's none.
std::string GetUserName();

// When the process started, by the wall clock, to the second.
time_t GetStartTime();

struct System {
    std::string name;
    int major = 0;
    int minor = 0;
    uint32_t memoryMB = 0;
    int processors = 0;
};
System GetSystem();

// Asks the system each time.
bool IsDebuggerAttached();

} // namespace Process
