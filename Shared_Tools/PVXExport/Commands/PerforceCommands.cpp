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

#include <memory>
#include <stdexcept>

namespace {

constexpr const char* s_Changelist = "PVX Export Changes";
constexpr uint32_t s_PortSize = 256;

// As long as a command runs; one that was stopped half-way leaves it for the reset.
std::unique_ptr<RevControlAPI> s_RevCtrl;

[[noreturn]] void Fail(const char* pText) { throw std::runtime_error(pText); }

void Start(const std::string& file) {
    dbAssertText(!s_RevCtrl, "s_RevCtrl == NULL");
    char port[s_PortSize] = {};
    if (Pipeline::Initialize(file.c_str()) != Pipeline::Result_Ok ||
        !Pipeline::Get()->GetString("p4", "RevControlPort", port, sizeof port))
        Fail("PerforceMS: 'RevControlPort' not listed under [p4] in pipeline.ini\n");
    s_RevCtrl = RevControlAPI::Create(port, RevControlAPI::Type_P4OrLocal);
}

bool Stop() {
    s_RevCtrl.reset();
    if (Pipeline::IsInitialized())
        Pipeline::Shutdown();
    return true;
}

void OpenOrAddFile(const std::string& file) {
    int32_t changelist = 0;
    if (!s_RevCtrl->FindOrCreateChangelist(s_Changelist, changelist))
        Fail("PerforceMS: Unable to create changelist\n");
    const RevControlAPI::OpenResult result = s_RevCtrl->OpenOrAdd(file.c_str(), changelist);
    if (result != RevControlAPI::Open_Opened && result != RevControlAPI::Open_AlreadyOpened)
        Fail("PerforceMS: Could not open or add requested file!\n");
}

Value OpenOrAdd(const Value* pArguments, int count) {
    // Ahead of the start, since an error of the script language passes the guard by.
    const std::string file = count > 0 ? Pipeline::GetFullPath(pArguments[0].ToText().c_str()) : std::string();
    try {
        if (count > 0)
            Start(file);
        if (count != 1)
            Fail("PerforceMS: usage 'ombl_p4_openoradd <file>'\n");
        OpenOrAddFile(file);
    } catch (const std::exception& error) {
        PutListenerText(error.what());
        Stop();
        return Value(false);
    }
    return Value(Stop());
}

Value Reset(const Value*, int) { return Value(Stop()); }

const Primitive s_OpenOrAdd("ombl_p4_openoradd", OpenOrAdd);
const Primitive s_Reset("ombl_p4_reset", Reset);

} // namespace
