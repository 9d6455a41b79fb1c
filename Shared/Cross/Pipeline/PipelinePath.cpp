#include "Shared/Cross/Pipeline/PipelineData.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <algorithm>

namespace {

bool HasDrive(std::string_view path) { return path.size() >= 2 && path[1] == ':'; }

std::string AddDriveAndFolder(std::string path) {
    if (HasDrive(path) || path.starts_with("\\\\"))
        return path;
    const std::string current = OSFile::GetCurrentFolder();
    return (path.starts_with('\\') ? current.substr(0, 2) : current) + path;
}

} // namespace

std::string PipelinePath::WithBackslashes(std::string_view path) {
    std::string result(path);
    std::ranges::replace(result, '/', '\\');
    return result;
}

std::string PipelinePath::Anchor(const std::string& inifile, std::string_view path) {
    // Only a drive letter makes a path absolute: what leads with a backslash is anchored like the rest.
    if (HasDrive(path))
        return WithBackslashes(path);
    return inifile.substr(0, inifile.rfind('\\') + 1) + WithBackslashes(path);
}

std::string PipelinePath::MakeAbsolute(std::string_view path) {
    const std::string full = AddDriveAndFolder(WithBackslashes(path));
    const size_t rootLength = 2; // a drive, or the start of a server's name
    std::vector<std::string_view> parts;
    const std::string_view rest = std::string_view(full).substr(std::min(rootLength, full.size()));
    for (size_t at = 0; at < rest.size();) {
        const size_t end = std::min(rest.find('\\', at), rest.size());
        const std::string_view part = rest.substr(at, end - at);
        if (part == "..") {
            if (!parts.empty())
                parts.pop_back();
        } else if (!part.empty() && part != ".") {
            parts.push_back(part);
        }
        at = end + 1;
    }
    std::string result = full.substr(0, rootLength);
    for (const std::string_view part : parts)
        result.append(result == "\\\\" ? "" : "\\").append(part);
    if (parts.empty() || full.ends_with('\\'))
        result += '\\';
    return result;
}
