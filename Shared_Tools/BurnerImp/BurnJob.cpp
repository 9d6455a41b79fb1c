#include "Shared_Tools/BurnerImp/BurnJob.h"

#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Shared_Tools/BurnerImp/BurnReport.h"
#include "Shared_Tools/BurnerImp/FileBurner.h"
#include "Shared_Tools/BurnerImp/NameMatcher.h"

#include <stdexcept>

namespace {

constexpr const char* s_ScriptExtension = "burn"; // in any case, as the scripts are found

void AddFolder(const std::string& folder, const NameMatcher& matcher, bool subfolders,
               std::vector<std::string>& files) {
    std::vector<std::string> folders;
    for (const std::string& name : OSFile::List((folder + "\\*").c_str())) {
        std::string path = folder;
        path += '\\';
        path += name;
        const uint32_t attributes = OSFile::FileAttr(path.c_str());
        if ((attributes & OSFile::F_ATTRIBUTE_DIRECTORY) != 0)
            folders.push_back(std::move(path));
        else if ((attributes & OSFile::F_ATTRIBUTE_FILE) != 0 &&
                 !FilePathUtil::HasExtension(name.c_str(), s_ScriptExtension) && matcher.Matches(name))
            files.push_back(std::move(path));
    }
    if (subfolders)
        for (const std::string& subfolder : folders)
            AddFolder(subfolder, matcher, subfolders, files);
}

std::string Summarise(const BurnCounts& counts, size_t fileCount) {
    std::string text = std::to_string(fileCount) + (fileCount == 1 ? " file: " : " files: ");
    text += std::to_string(counts.burned) + " burned, ";
    text += std::to_string(counts.upToDate) + " up to date, ";
    text += std::to_string(counts.failed) + " failed";
    if (counts.unmatched > 0)
        text += ", " + std::to_string(counts.unmatched) + " in no target group";
    return text;
}

} // namespace

BurnOptions MakeOptions(const BurnRequestMsg& request) {
    return {.changelist = request.changelist,
            .burnAll = request.flags[0],
            .subfolders = request.flags[1],
            .sayOnly = request.flags[2],
            .revisionControl = request.flags[3]};
}

BurnOptions MakeListOptions(int32_t changelist) {
    return {.changelist = changelist, .revisionControl = changelist != 0};
}

std::vector<std::string> FindBurnFiles(const std::string& folder, const std::string& pattern, bool subfolders) {
    std::string root = folder;
    while (root.ends_with('\\') || root.ends_with('/'))
        root.pop_back();
    if ((OSFile::FileAttr((root + "\\").c_str()) & OSFile::F_ATTRIBUTE_DIRECTORY) == 0)
        throw std::runtime_error("folder '" + folder + "' isn't there");
    std::vector<std::string> files;
    AddFolder(root, NameMatcher(pattern), subfolders, files);
    return files;
}

bool BurnFiles(const std::vector<std::string>& files, const BurnOptions& options, BurnReport& report) {
    FileBurner burner(options, files.size(), report);
    for (const std::string& file : files) {
        if (report.IsCut())
            return false;
        burner.Burn(file);
        report.Send();
    }
    report.AddInfo(BurnReport::OwnSource, Summarise(burner.GetCounts(), files.size()));
    return burner.GetCounts().failed == 0;
}
