// Opens a file for writing, for scripts that make files of their own in the trees that are under revision control:
//
//     ombl_p4_openoradd "Z:\proj\gen\art\x.txt"    true, and the file can be written
//     ombl_p4_reset                                true; clears up after a command that was stopped half-way
//
// The file is opened or added in the changelist that all tools share. Which server, tells the pipeline configuration of
// the file; without one the file's attributes count. What goes wrong is a line on the listener, and false.

#include "Host/Sdk/Listener.h"
#include "Host/Sdk/Primitive.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/Cross/RevControlAPI/RevControlAPI.h"
#include "Shared_Tools/PVXExport/Commands/CommandRevControl.h"

#include <exception>
#include <memory>

namespace {

using CommandRevControl::Fail;

// As long as a command runs; one that was stopped half-way leaves it for the reset.
std::unique_ptr<RevControlAPI> s_PerforceRevCtrl;

void StartPerforce(const std::string& file) {
    dbAssertText(!s_PerforceRevCtrl, "s_RevCtrl == NULL");
    constexpr const char* pNoPortText = "PerforceMS: 'RevControlPort' not listed under [p4] in pipeline.ini\n";
    if (Pipeline::Initialize(file.c_str()) != Pipeline::Result_Ok)
        Fail(pNoPortText);
    s_PerforceRevCtrl = CommandRevControl::Start(pNoPortText);
}

bool StopPerforce() {
    s_PerforceRevCtrl.reset();
    if (Pipeline::IsInitialized())
        Pipeline::Shutdown();
    return true;
}

void OpenOrAddFile(const std::string& file) {
    const int32_t changelist =
        CommandRevControl::GetChangelist(s_PerforceRevCtrl.get(), "PerforceMS: Unable to create changelist\n");
    const RevControlAPI::OpenResult result = s_PerforceRevCtrl->OpenOrAdd(file.c_str(), changelist);
    if (result != RevControlAPI::Open_Opened && result != RevControlAPI::Open_AlreadyOpened)
        Fail("PerforceMS: Could not open or add requested file!\n");
}

Value OpenOrAdd(const Value* pArguments, int count) {
    // Ahead of the start, since an error of the script language passes the guard by.
    const std::string file = count > 0 ? Pipeline::GetFullPath(pArguments[0].ToText().c_str()) : std::string();
    try {
        if (count > 0)
            StartPerforce(file);
        if (count != 1)
            Fail("PerforceMS: usage 'ombl_p4_openoradd <file>'\n");
        OpenOrAddFile(file);
    } catch (const std::exception& error) {
        PutListenerText(error.what());
        StopPerforce();
        return Value(false);
    }
    return Value(StopPerforce());
}

Value Reset(const Value*, int) { return Value(StopPerforce()); }

const Primitive s_OpenOrAdd("ombl_p4_openoradd", OpenOrAdd);
const Primitive s_Reset("ombl_p4_reset", Reset);

} // namespace
