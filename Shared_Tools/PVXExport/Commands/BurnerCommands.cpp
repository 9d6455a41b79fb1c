// Burns a merged model file, in a process of its own:
//
//     ombl_burner "Z:\proj\gen\art\x.pvx"    true when it was burned or up to date
//     ombl_burner_reset                      true; takes down what a command that was stopped half-way has left up
//
// What is burned of the file is told by the .burn scripts beside and above it. The burner's messages are lines on the
// listener, as they come; so is what goes wrong, and then the answer is false. A folder, and a name with * or ?, burn
// all files that are meant.

#include "Host/Sdk/Listener.h"
#include "Host/Sdk/Primitive.h"
#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"
#include "Shared/Cross/Glaze/Device.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/Cross/RevControlAPI/RevControlAPI.h"
#include "Shared_Tools/Burner/Burner.h"
#include "Shared_Tools/PVXExport/Commands/CommandRevControl.h"
#include "Shared_Tools/PVXExport/Commands/LocalBurnQuestion.h"

#include <exception>
#include <memory>

namespace {

using CommandRevControl::Fail;

constexpr const char* s_ToolAlias = "TOOL";
constexpr const char* s_ToolSource = "HD";
constexpr int32_t s_ToolPriority = 99;
constexpr const char* s_DataAlias = "DATA";
constexpr const char* s_DataSource = "Tools Data";
constexpr int32_t s_DataPriority = 400;

// As long as a command runs; one that was stopped half-way leaves it for the reset.
std::unique_ptr<RevControlAPI> s_BurnerRevCtrl;

void AddAliases() {
    if (!FilePath::AddSource(s_ToolAlias, s_ToolSource, s_ToolPriority, std::make_shared<FilePathHDRaw>(false)))
        Fail("Burner: Unable to add Tool alias\n");
    char toolsData[FilePath::MAXPATH] = {};
    if (!Pipeline::Get()->GetPath("Global", "ToolsData", toolsData, sizeof toolsData))
        Fail("Burner: 'ToolsData' not listed under [Global] in pipeline.ini\n");
    auto pSource = FilePathHD::Create(toolsData, ByteStream::Mode_Read);
    if (!pSource || !FilePath::AddSource(s_DataAlias, s_DataSource, s_DataPriority, std::move(pSource)))
        Fail("Burner: Unable to add Tools Data alias\n");
}

void StartBurner(const std::string& file) {
    dbAssertText(!s_BurnerRevCtrl, "s_RevCtrl == NULL");
    Pipeline::Initialize(file.c_str());
    if (!Pipeline::IsInitialized() || !Pipeline::Get()->FindProjectForFile(file.c_str(), Pipeline::Kind_Generic))
        Fail("Burner: Unable to find associated project.\n");
    AddAliases();
    char burnerPath[FilePath::MAXPATH] = {};
    if (!Pipeline::Get()->GetPath("burner", "burnerPath", burnerPath, sizeof burnerPath))
        Fail("Burner: 'burnerPath' not listed under [burner] in pipeline.ini\n");
    s_BurnerRevCtrl = CommandRevControl::Start("Burner: 'RevControlPort' not listed under [p4] in pipeline.ini\n");
    LocalBurnQuestion::Install();
    if (!Burner::Init(burnerPath))
        Fail("Burner: Unable to set up the burner.\n");
    gz::DeviceConfig config;
    config.name = "Null";
    gz::Start(config);
    Inv::Initialize();
}

bool StopBurner() {
    // A fault on the way down must not keep the rest up.
    const dbNoThrowScope noThrow;
    if (Inv::IsInitialized())
        Inv::Shutdown();
    gz::Stop();
    Burner::Shutdown();
    s_BurnerRevCtrl.reset();
    FilePath::RemoveSource(s_ToolAlias, s_ToolSource);
    FilePath::RemoveSource(s_DataAlias, s_DataSource);
    if (Pipeline::IsInitialized())
        Pipeline::Shutdown();
    return true;
}

// Those that haven't been printed yet.
void PrintMessages(BurnerMessageList& messages) {
    for (const BurnerMessage& message : messages)
        PutListenerText((message.text + "\n").c_str());
    messages.clear();
}

// As Burner::Burn does it, with the messages printed while it goes on.
bool BurnFile(const std::string& file, int32_t changelist, int32_t& result) {
    BurnerMessageList messages;
    bool good = Burner::Instance()->BurnAsync(changelist, file.c_str(), false, false, false, true, messages);
    for (bool done = false; good && !done;) {
        good = Burner::Instance()->Update(done, result, messages);
        PrintMessages(messages);
    }
    PrintMessages(messages);
    return good;
}

void Burn(const std::string& file) {
    const int32_t changelist =
        CommandRevControl::GetChangelist(s_BurnerRevCtrl.get(), "Burner: Unable to create changelist\n");
    int32_t result = 0;
    if (!BurnFile(file, changelist, result) || result == 0)
        Fail("Burner: Burn failed, see log messages.'\n");
}

Value BurnCommand(const Value* pArguments, int count) {
    // Ahead of the start, since an error of the script language passes the guard by.
    const std::string file = count > 0 ? Pipeline::GetFullPath(pArguments[0].ToText().c_str()) : std::string();
    try {
        if (count > 0)
            StartBurner(file);
        if (count != 1)
            Fail("Burner: usage 'burner <merged pvx file>'\n");
        Burn(file);
    } catch (const std::exception& error) {
        PutListenerText(error.what());
        StopBurner();
        return Value(false);
    }
    return Value(StopBurner());
}

Value ResetCommand(const Value*, int) { return Value(StopBurner()); }

const Primitive s_Burner("ombl_burner", BurnCommand);
const Primitive s_BurnerReset("ombl_burner_reset", ResetCommand);

} // namespace
