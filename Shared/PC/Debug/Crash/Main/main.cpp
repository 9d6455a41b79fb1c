#include "Shared/PC/Debug/Crash/CrashReporter.h"
#include "Shared/PC/Debug/Crash/CrashedProcess.h"

#include <cstdio>

// Started by a process that crashes, never by hand.
int main() {
    const auto process = CrashedProcess::Receive(s_CrashDescriptor);
    if (!process) {
        std::fprintf(stderr, "pvxcrash: reports on a crashed process of the same build, which starts it\n");
        return 2;
    }
    ReportCrash(*process);
    return 0;
}
