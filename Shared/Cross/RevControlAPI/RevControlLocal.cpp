#include "Shared/Cross/RevControlAPI/RevControlLocal.h"

#include "Shared/PC/FileSystem/OSFile.h"

#include <algorithm>

namespace {

bool IsFile(uint32_t attributes) { return (attributes & OSFile::F_ATTRIBUTE_FILE) != 0; }
bool IsWritableFile(uint32_t attributes) {
    return IsFile(attributes) && (attributes & OSFile::F_ATTRIBUTE_WRITABLE) != 0;
}

} // namespace

bool RevControlLocal::Initialize(const char*) { return true; }

std::string RevControlLocal::GetLastError() { return {}; }

bool RevControlLocal::CreateChangelist(const char*, int32_t& number) {
    number = 0;
    return false;
}

bool RevControlLocal::FindChangelist(const char*, int32_t& number) {
    number = 0;
    return false;
}

bool RevControlLocal::DeleteEmptyChangelist(int32_t) { return true; }

bool RevControlLocal::RevertChangelist(int32_t, bool) { return true; }

bool RevControlLocal::EditFiles(std::span<const std::string> names, int32_t changelist) {
    return std::ranges::all_of(names, [&](const std::string& name) { return Edit(name.c_str(), changelist); });
}

bool RevControlLocal::Edit(const char* pName, int32_t) {
    const uint32_t attributes = OSFile::FileAttr(pName);
    return attributes == 0 || IsWritableFile(attributes);
}

bool RevControlLocal::Integrate(const char*, const char*, int32_t) { return false; }

bool RevControlLocal::Rename(const char*, const char*, int32_t) { return false; }

bool RevControlLocal::AddFiles(std::span<const std::string>, int32_t) { return false; }

bool RevControlLocal::Add(const char*, int32_t) { return false; }

bool RevControlLocal::Delete(const char* pName, int32_t) { return OSFile::Delete(pName); }

RevControlAPI::FileStatus RevControlLocal::GetFileStatus(const char* pName) {
    const uint32_t attributes = OSFile::FileAttr(pName);
    if (!IsFile(attributes))
        return static_cast<FileStatus>(3);
    return static_cast<FileStatus>(IsWritableFile(attributes) ? 0 : 1);
}

bool RevControlLocal::IsOpenedIn(const char* pName, int32_t changelist) {
    return changelist == 0 && GetFileStatus(pName) > 0;
}

bool RevControlLocal::GetOpenedChangelist(const char*, int32_t& number) {
    number = 0;
    return true;
}

bool RevControlLocal::RevertFile(const char*, int32_t, bool) { return true; }

RevControlAPI::SyncResult RevControlLocal::Sync(const char*, bool) { return Sync_UpToDate; }

RevControlAPI::OpenResult RevControlLocal::OpenOrAdd(const char* pName, int32_t changelist) {
    return Edit(pName, changelist) ? Open_Opened : Open_Failed;
}

bool RevControlLocal::FindOrCreateChangelist(const char*, int32_t& number) {
    number = 0;
    return true;
}
