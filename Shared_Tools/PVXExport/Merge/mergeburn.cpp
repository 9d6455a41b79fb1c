#include "Shared_Tools/PVXExport/Merge/mergeburn.h"

#include <memory>
#include <stdexcept>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/Cross/RevControlAPI/RevControlAPI.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Shared_Tools/Burner/Burner.h"

namespace {

constexpr const char* s_OpenAdvice =
    "' in P4!  Please make sure no one else has it checked-out in P4 (Data Generic / Data Final)!\n";
constexpr const char* s_BurnAdvice =
    "' pattern in P4!  Please make sure no one else has it checked-out in P4 (Data Generic / Data Final)!\n";

[[noreturn]] void ThrowText(const std::string& text) {
    // Whoever catches it has nothing but the pointer.
    static std::string s_Text;
    s_Text = text;
    throw s_Text.c_str();
}

} // namespace

bool MergeBurnOpenFile(int32_t& changelist, const char* pFilename) {
    dbAssertText(pFilename, "filename");
    changelist = 0;
    char port[FilePath::MAXPATH] = {};
    if (!pFilename || !Pipeline::Get()->GetString("p4", "RevControlPort", port, sizeof port))
        return false;
    const std::unique_ptr<RevControlAPI> pRevControl = RevControlAPI::Create(port, RevControlAPI::Type_P4OrLocal);
    if (!pRevControl || !pRevControl->FindOrCreateChangelist(s_ToolsChangelist, changelist))
        return false;
    pRevControl->Sync(pFilename, false);
    const RevControlAPI::OpenResult result = pRevControl->OpenOrAdd(pFilename, changelist);
    // The file is not in our list, which may have been made for it.
    if (result == RevControlAPI::Open_OtherList || result == RevControlAPI::Open_Failed)
        pRevControl->DeleteEmptyChangelist(changelist);
    return result != RevControlAPI::Open_Failed;
}

bool MergeBurnFile(const char* pFilename, int32_t changelist) {
    char burnerPath[FilePath::MAXPATH] = {};
    if (!Pipeline::Get()->GetPath("burner", "burnerPath", burnerPath, sizeof burnerPath))
        return false;
    Burner burner(burnerPath);
    int32_t burnResult = 0;
    BurnerMessageList messages;
    const bool burnt = burner.Burn(changelist, pFilename, false, false, burnResult, messages);
    for (const BurnerMessage& message : messages)
        if (message.kind != BurnerMessage::Kind_Info)
            dbWarningf("BURNER -- '%s': %s", pFilename, message.text.c_str());
    return burnt;
}

void MakeDirectoryPath(const char* pFilename) { OSFile::MakeFolders(pFilename); }

void LogMergeStep(const std::string& step, const std::string& file) {
    dbPrintf("MERGE -- %s: '%s'", step.c_str(), file.c_str());
}

void MergeBurnWrite(const std::string& file, const char* pWhat, const std::function<void(const char* pPath)>& save) {
    LogMergeStep(pWhat, file);
    int32_t changelist = 0;
    if (!MergeBurnOpenFile(changelist, file.c_str()))
        throw std::runtime_error(std::string("Merge: Unable to open ") + pWhat + " '" + file + s_OpenAdvice);
    MakeDirectoryPath(file.c_str());
    save(("TOOL:" + file).c_str());
    if (!MergeBurnFile(file.c_str(), changelist))
        ThrowText(std::string("Merge: Unable to burn ") + pWhat + " '" + file + s_BurnAdvice);
}
