#include "Shared/Cross/FileSystem/Paths/FilePath.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePathRegistry.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"

#include <algorithm>
#include <cstring>

namespace {

bool CheckAliasName(const char* filename) {
    const bool isUsable = filename && *filename != '\0' && strlen(filename) <= FilePath::MAXPATH;
    dbAssertText(isUsable, "filename && *filename != '\\0' && strlen( filename ) <= MAXPATH");
    return isUsable;
}

} // namespace

bool FilePath::Source::GetChanges(std::vector<std::string>&) { return false; }

std::unique_ptr<FileReplacement> FilePath::Source::Replace(const char*) { return nullptr; }

FilePath::Registry& FilePath::GetRegistry() {
    static Registry s_Registry;
    return s_Registry;
}

// The sources of a name's alias, and the name's path below it. Null for an empty name and, which is logged, for an
// unknown alias.
FilePath::Paths* FilePath::FindPaths(const char* pName, std::string& path) {
    std::string alias;
    const bool isEmpty = pName && *pName == '\0';
    if (isEmpty || !CheckAliasName(pName) || !FilePathUtil::SplitAlias(pName, alias, path))
        return nullptr;
    Paths* pPaths = GetRegistry().Find(alias);
    if (!pPaths)
        dbWarningf("FILESYSTEM -- filepath failure, missing alias '%s'", pName);
    return pPaths;
}

bool FilePath::AddSource(const char* pAlias, const char* pId, int32_t priority, std::shared_ptr<Source> pSource) {
    dbAssertText(pAlias && *pAlias != '\0' && pId && *pId != '\0', "alias && id");
    dbAssert(priority >= 0);
    dbAssertText(pSource, "source");
    if (!pAlias || *pAlias == '\0' || !pId || *pId == '\0' || priority < 0 || !pSource)
        return false;
    // So a drive is never an alias.
    if (pAlias[1] == '\0' || strchr(pAlias, ':')) {
        dbBreak();
        return false;
    }
    return GetRegistry().Add(pAlias, {.id = pId, .sourceID = {}, .priority = priority, .pSource = std::move(pSource)});
}

bool FilePath::RemoveSource(const char* pAlias, const char* pId) {
    return GetRegistry().Remove(pAlias, [&](const Path& path) { return path.id == pId; });
}

bool FilePath::RemoveSource(const char* pAlias, SourceID sourceID) {
    return GetRegistry().Remove(pAlias, [&](const Path& path) { return path.sourceID == sourceID; });
}

std::unique_ptr<ByteStream> FilePath::OpenStream(const char* pName, Mode mode) {
    SourceID found;
    return OpenFirst(pName, mode, SourceID::InvalidID, found);
}

std::unique_ptr<ByteStream> FilePath::OpenStream(const char* pName, Mode mode, SourceID sourceID) {
    dbAssert(sourceID != SourceID::InvalidID);
    SourceID found;
    return sourceID != SourceID::InvalidID ? OpenFirst(pName, mode, sourceID, found) : nullptr;
}

std::unique_ptr<ByteStream> FilePath::OpenStreamFrom(const char* pName, Mode mode, SourceID& sourceID) {
    dbAssert(sourceID == SourceID::InvalidID);
    sourceID = SourceID::InvalidID;
    return OpenFirst(pName, mode, SourceID::InvalidID, sourceID);
}

std::unique_ptr<ByteStream> FilePath::OpenFirst(const char* pName, Mode mode, SourceID wanted, SourceID& found) {
    using enum ByteStream::Mode;
    dbAssert(mode == Mode_Read || mode == Mode_Write || mode == Mode_Both);
    std::string path;
    const Paths* pPaths = mode != Mode_None ? FindPaths(pName, path) : nullptr;
    if (!pPaths)
        return nullptr;
    for (const Path& candidate : *pPaths) {
        dbAssertText(candidate.sourceID != SourceID::InvalidID, "pathsI->sourceID != FilePath::SourceID::InvalidID");
        if (wanted != SourceID::InvalidID && candidate.sourceID != wanted)
            continue;
        std::unique_ptr<ByteStream> pStream = candidate.pSource->Open(path.c_str(), mode);
        if (!pStream)
            continue;
        found = candidate.sourceID;
        GetRegistry().TellListeners(pName, candidate.id.c_str());
        pStream->SetName(pName);
        return pStream;
    }
    return nullptr;
}

std::unique_ptr<FileReplacement> FilePath::ReplaceFile(const char* pName) {
    std::string path;
    const Paths* pPaths = FindPaths(pName, path);
    if (!pPaths)
        return nullptr;
    for (const Path& candidate : *pPaths) {
        std::unique_ptr<FileReplacement> pReplacement = candidate.pSource->Replace(path.c_str());
        if (!pReplacement)
            continue;
        GetRegistry().TellListeners(pName, candidate.id.c_str());
        pReplacement->GetStream().SetName(pName);
        return pReplacement;
    }
    return nullptr;
}

FilePath::SourceID FilePath::FindSource(const char* pName, Mode mode) {
    std::string path;
    const Paths* pPaths = FindPaths(pName, path);
    if (!pPaths)
        return {};
    const auto it =
        std::ranges::find_if(*pPaths, [&](const Path& p) { return p.pSource->IsAccessible(path.c_str(), mode); });
    return it != pPaths->end() ? it->sourceID : SourceID();
}

bool FilePath::GetFullName(std::string& streamName, Mode mode) {
    std::string path;
    const Paths* pPaths = FindPaths(streamName.c_str(), path);
    if (!pPaths)
        return false;
    std::string full;
    for (const Path& candidate : *pPaths) {
        if (candidate.pSource->GetFullName(full, path.c_str(), mode)) {
            streamName = std::move(full);
            return true;
        }
    }
    dbWarningf("Could not find file [%s]", streamName.c_str());
    return false;
}

bool FilePath::ToAliasName(std::string& name) {
    if (name.empty() || HasAlias(name.c_str()))
        return !name.empty();
    std::string relative;
    for (const Registry::Alias& alias : GetRegistry().GetAliases()) {
        for (const Path& path : alias.paths) {
            if (!path.pSource->GetAliasName(relative, name.c_str()))
                continue;
            name = (alias.name + ":" + relative).substr(0, MAXPATH);
            return true;
        }
    }
    dbWarningf("Could not convert file [%s]", name.c_str());
    return false;
}

bool FilePath::HasAlias(const char* pName) {
    std::string alias;
    std::string path;
    return pName && strlen(pName) <= MAXPATH && FilePathUtil::SplitAlias(pName, alias, path) &&
           GetRegistry().Find(alias);
}

FilePath::Type FilePath::GetType(const char* pName) {
    std::string path;
    const Paths* pPaths = FindPaths(pName, path);
    if (!pPaths)
        return Type_None;
    for (const Path& candidate : *pPaths)
        if (const Type type = candidate.pSource->GetType(path.c_str()); type != Type_None)
            return type;
    return Type_None;
}

bool FilePath::Delete(const char* pName) {
    std::string path;
    const Paths* pPaths = FindPaths(pName, path);
    if (!pPaths)
        return false;
    for (const Path& candidate : *pPaths)
        if (candidate.pSource->GetType(path.c_str()) != Type_None)
            return candidate.pSource->Delete(path.c_str());
    return true;
}

bool FilePath::AddWatcher(const char* pName, WatchCallback callback) {
    return GetRegistry().AddWatcher(pName, std::move(callback));
}

bool FilePath::RemoveWatcher(const char* pName) { return GetRegistry().RemoveWatcher(pName); }

void FilePath::PollChanges() { GetRegistry().PollChanges(); }

void FilePath::AddOpenListener(OpenListener& listener) { GetRegistry().AddListener(listener); }

void FilePath::RemoveOpenListener(OpenListener& listener) { GetRegistry().RemoveListener(listener); }
