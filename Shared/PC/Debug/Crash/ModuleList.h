#pragma once

#include "Shared/PC/Debug/Crash/CrashedProcess.h"

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

struct CrashedModule {
    std::string path;
    uint64_t start = 0;
    uint64_t size = 0;
    uint32_t stamp = 0;  // the first bytes of what the linker marked this very build with; 0 without that
    time_t fileTime = 0; // 0 when the file isn't there any more
};

// The program and what it has loaded, by address: every file that is mapped with code in it.
std::vector<CrashedModule> ListModules(const std::vector<Mapping>& mappings);
