#include "Shared/Cross/Debug/CrashFilter.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/PC/Program/HeapTuning.h"
#include "Shared_Tools/BurnerImp/BurnSession.h"
#include "Shared_Tools/BurnerImp/OwnCopy.h"

#include <algorithm>
#include <cstring>

// Takes no arguments of its own. The words of the diagnostics, such as -notrap, are looked for by those in the whole
// command line; -debug asks for nothing that isn't there without it.
int main(int argc, char** argv) {
    const OwnCopy ownCopy;
    KeepFreedMemory();
    dbInstallCrashFilter();
    const bool breaks =
        std::any_of(argv, argv + argc, [](const char* pWord) { return std::strcmp(pWord, "--break-on-assert") == 0; });
    dbSetThrowOnAssert(!breaks);
    const BurnStatus status = RunBurnSession();
    if (status == Burn_NoServer)
        OwnCopy::Delete();
    else
        ownCopy.DeleteIfHostIsGone(status == Burn_Failed);
    return status;
}
