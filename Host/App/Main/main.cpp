#include "Host/App/App.h"
#include "Shared/Cross/Debug/CrashFilter.h"
#include "Shared/PC/Program/HeapTuning.h"

int main(int argc, char** argv) {
    KeepFreedMemory();
    dbInstallCrashFilter();
    return RunApp(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc));
}
