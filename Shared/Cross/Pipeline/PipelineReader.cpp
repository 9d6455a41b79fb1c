#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"
#include "Shared/Cross/Pipeline/ConfigFile.h"
#include "Shared/Cross/Pipeline/PipelineData.h"
#include "Shared/Cross/Pipeline/TextUtil.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <algorithm>

namespace {

constexpr const char* s_FileName = "pipeline.ini";
constexpr std::string_view s_ProjectPrefix = "project:";
constexpr uint32_t s_MaxFileSize = 0x1000000; // thousands of projects; what is larger is another kind of file
constexpr uint32_t s_MaxValue = 512;
constexpr size_t s_PathRoom = 260;

struct FolderKey {
    const char* pKey; // in lower case, as a config file keeps it
    Pipeline::DataKind kind;
};

// In the order in which a missing one is found; "parent" comes last.
constexpr FolderKey s_FolderKeys[] = {
    {"datasource", Pipeline::Kind_Source},   {"datasourceshared", Pipeline::Kind_SourceShared},
    {"databurn", Pipeline::Kind_Burn},       {"dataintermediate", Pipeline::Kind_Intermediate},
    {"datageneric", Pipeline::Kind_Generic}, {"datafinal", Pipeline::Kind_Final},
    {"datapreview", Pipeline::Kind_Preview}, {"localefolder", Pipeline::Kind_Locale},
    {"attrloc", Pipeline::Kind_AttrLoc},
};

// Null as well for a value that no section may hold.
const std::string* FindKey(const ConfigFile::Section& section, const char* pKey) {
    const auto it = section.find(std::string_view(pKey));
    return it != section.end() && it->second.size() <= s_MaxValue ? &it->second : nullptr;
}

bool ReadPathKey(const ConfigFile::Section& section, const char* pKey, std::string& out, std::string& error) {
    const std::string* const pValue = FindKey(section, pKey);
    if (!pValue)
        error = std::string("has no key '") + pKey + "'";
    else if (pValue->size() >= s_PathRoom)
        error = std::string("has a value of 260 characters or more at '") + pKey + "'";
    else
        out = *pValue;
    return error.empty();
}

void ReadExtras(const std::string& inifile, std::string_view list, std::vector<std::string>& extras) {
    constexpr std::string_view s_Separators = "; \t";
    for (size_t at = list.find_first_not_of(s_Separators); at < list.size();) {
        const size_t end = std::min(list.find_first_of(s_Separators, at), list.size());
        extras.push_back(PipelinePath::Anchor(inifile, list.substr(at, end - at)));
        at = list.find_first_not_of(s_Separators, end);
    }
}

bool ReadProject(const std::string& inifile, const ConfigFile::Section& section, PipelineProject& project,
                 std::string& error) {
    if (const std::string* const pDescription = FindKey(section, "description"))
        project.description = *pDescription;
    for (const FolderKey& key : s_FolderKeys) {
        std::string value;
        if (!ReadPathKey(section, key.pKey, value, error))
            return false;
        project.folders[key.kind] = key.kind == Pipeline::Kind_AttrLoc ? value : PipelinePath::Anchor(inifile, value);
    }
    if (const std::string* const pExtras = FindKey(section, "dataextra"))
        ReadExtras(inifile, *pExtras, project.extras);
    return ReadPathKey(section, "parent", project.parent, error);
}

PipelineSection CopySection(const std::string& name, const ConfigFile::Section& section) {
    PipelineSection copy = {name, {}};
    copy.values.reserve(section.size());
    for (const auto& [key, value] : section)
        if (value.size() <= s_MaxValue)
            copy.values.emplace_back(key, value);
        else
            dbWarningf("PIPELINE -- the value of '%s' in [%s] has more than %u characters and is left out", key.c_str(),
                       name.c_str(), s_MaxValue);
    return copy;
}

// The file as sections, or the reason why not.
bool LoadFile(const std::string& inifile, ConfigFile& file, std::string& error) {
    const std::unique_ptr<ByteStream> pStream = FilePathHDRaw(true).Open(inifile.c_str(), ByteStream::Mode_Read);
    if (!pStream)
        error = inifile + " can't be read: " + OSFile::LastErrorText();
    else if (pStream->GetLength() > s_MaxFileSize)
        error = inifile + " has " + std::to_string(pStream->GetLength()) + " bytes, more than the " +
                std::to_string(s_MaxFileSize) + " that a pipeline configuration may have";
    else if (file.Load(*pStream, inifile.c_str()); file.GetSectionCount() == 0)
        error = inifile + " holds no section; its lines have to end with CR LF";
    return error.empty();
}

} // namespace

std::string PipelineReader::Find(std::string_view startPath, std::vector<std::string>& places) {
    std::string folder = PipelinePath::WithBackslashes(startPath);
    while (true) {
        // The drive's own folder, in the form "Z:", is the last one.
        const size_t backslash = folder.rfind('\\');
        if (backslash == std::string::npos)
            return {};
        folder.erase(backslash);
        // No path as long as that can be opened, and listing one for each of its folders takes the square of its
        // length.
        if (folder.size() > FilePath::MAXPATH)
            continue;
        places.push_back(folder);
        std::string file = folder + "\\" + s_FileName;
        if (file.size() <= FilePath::MAXPATH && (OSFile::FileAttr(file.c_str()) & OSFile::F_ATTRIBUTE_FILE))
            return file;
    }
}

Pipeline::Result PipelineReader::Read(PipelineData& data, std::string& error) {
    ConfigFile file;
    if (!LoadFile(data.inifile, file, error))
        return Pipeline::Result_BadFile;
    for (const auto& [name, section] : file.GetSections()) {
        if (!StartsWithNoCase(name, s_ProjectPrefix)) {
            data.sections.push_back(CopySection(name, section));
            continue;
        }
        PipelineProject project;
        project.name = name.substr(s_ProjectPrefix.size());
        if (!ReadProject(data.inifile, section, project, error)) {
            error.insert(0, data.inifile + ", project '" + project.name + "' ");
            return Pipeline::Result_NoProject;
        }
        data.projectIndex.emplace(project.name, data.projects.size());
        data.projects.push_back(std::move(project));
    }
    if (!data.projects.empty())
        return Pipeline::Result_Ok;
    error = data.inifile + " holds no section [project:name]";
    return Pipeline::Result_NoProject;
}
