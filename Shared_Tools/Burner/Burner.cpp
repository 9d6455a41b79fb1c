#include "Shared_Tools/Burner/Burner.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared_Tools/Burner/BurnPattern.h"
#include "Shared_Tools/Burner/BurnerSpawn.h"
#include "Shared_Tools/Burner/Config/ConfigLoad.h"
#include "Shared_Tools/Burner/Protocol/BurnerMsg.h"

namespace {

constexpr const char* s_RequestError = "Failed to Send a Message to the burner";
constexpr const char* s_FileListError = "Failed to send Burn Filelist request to the burner.";

// To the job's end.
bool Finish(int32_t& result, BurnerMessageList& messages) {
    for (bool done = false; !done;)
        if (!BurnerSpawn::Update(done, result, messages))
            return false;
    return true;
}

bool StartRequest(const std::string& burnerPath, const BurnRequestMsg& request, BurnerMessageList& messages) {
    return BurnerSpawn::StartBurner(burnerPath, messages) && BurnerSpawn::SendJob(request, s_RequestError, messages);
}

template <class T>
bool BurnList(const std::string& burnerPath, const T& list, int32_t& result, BurnerMessageList& messages) {
    result = 0;
    return BurnerSpawn::StartBurner(burnerPath, messages) && BurnerSpawn::SendJob(list, s_FileListError, messages) &&
           Finish(result, messages);
}

} // namespace

std::unique_ptr<Burner> Burner::s_pBurner;

Burner::Burner(const char* pBurnerPath) : m_BurnerPath(pBurnerPath), m_pConfigLoad(std::make_unique<ConfigLoad>()) {}

Burner::~Burner() = default;

bool Burner::Init(const char* pBurnerPath) {
    dbAssertText(!s_pBurner, "s_pBurner == NULL");
    s_pBurner = std::make_unique<Burner>(pBurnerPath);
    return true;
}

void Burner::Shutdown() { s_pBurner.reset(); }

Burner* Burner::Instance() { return s_pBurner.get(); }

bool Burner::LoadConfig(const char* pFilename, BurnerConfig& config, BurnerMessageList& messages) {
    return m_pConfigLoad->LoadConfig(pFilename, config, messages);
}

bool Burner::SaveConfig(RevControlAPI& revControl, int32_t changelist, const char* pFilename, BurnerConfig& config) {
    return m_pConfigLoad->SaveConfig(revControl, changelist, pFilename, config);
}

bool Burner::Burn(int32_t changelist, const char* pFile, bool flag0, bool flag1, int32_t& result,
                  BurnerMessageList& messages) {
    const BurnPattern split = SplitBurnPattern(pFile);
    return BurnDirect(changelist, split.directory.c_str(), split.pattern.c_str(), flag0, flag1, false, true, result,
                      messages);
}

bool Burner::BurnDirect(int32_t changelist, const char* pDirectory, const char* pPattern, bool flag0, bool flag1,
                        bool flag2, bool flag3, int32_t& result, BurnerMessageList& messages) {
    result = 0;
    return BurnAsyncDirect(changelist, pDirectory, pPattern, flag0, flag1, flag2, flag3, messages) &&
           Finish(result, messages);
}

bool Burner::BurnAsync(int32_t changelist, const char* pFile, bool flag0, bool flag1, bool flag2, bool flag3,
                       BurnerMessageList& messages) {
    const BurnPattern split = SplitBurnPattern(pFile);
    return BurnAsyncDirect(changelist, split.directory.c_str(), split.pattern.c_str(), flag0, flag1, flag2, flag3,
                           messages);
}

bool Burner::BurnAsyncDirect(int32_t changelist, const char* pDirectory, const char* pPattern, bool flag0, bool flag1,
                             bool flag2, bool flag3, BurnerMessageList& messages) {
    return StartRequest(
        m_BurnerPath,
        {.changelist = changelist, .directory = pDirectory, .pattern = pPattern, .flags = {flag0, flag1, flag2, flag3}},
        messages);
}

bool Burner::BurnFileList(int32_t changelist, std::span<const std::string> files, int32_t& result,
                          BurnerMessageList& messages, bool option) {
    const BurnFileListMsg list{.changelist = changelist, .files = {files.begin(), files.end()}, .option = option};
    return BurnList(m_BurnerPath, list, result, messages);
}

bool Burner::BurnUpdateFileList(int32_t changelist, std::span<const std::string> files, int32_t& result,
                                BurnerMessageList& messages) {
    const BurnUpdateFileListMsg list{.changelist = changelist, .files = {files.begin(), files.end()}};
    return BurnList(m_BurnerPath, list, result, messages);
}

bool Burner::Update(bool& done, int32_t& result, BurnerMessageList& messages) {
    return BurnerSpawn::Update(done, result, messages);
}
