#include "Shared/PC/Program/ProgramPath.h"

#include "Shared/PC/Debug/Process.h"

#include <cstdlib>

namespace {

// The one place that all modules of a process have in common, and its children inherit.
constexpr const char* s_HomeVariable = "PVXHOST_HOME";

} // namespace

std::string ProgramPath::Get() {
    std::string program = Process::GetExecutablePath();
    const std::string home = GetHome();
    if (home.empty())
        return program;
    return home + (home.ends_with('/') ? "" : "/") + program.substr(program.rfind('/') + 1);
}

void ProgramPath::SetHome(std::string_view folder) {
    if (folder.empty())
        unsetenv(s_HomeVariable);
    else
        setenv(s_HomeVariable, std::string(folder).c_str(), 1);
}

std::string ProgramPath::GetHome() {
    const char* const pHome = getenv(s_HomeVariable);
    return pHome ? pHome : "";
}
