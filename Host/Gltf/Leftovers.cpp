#include "Host/Gltf/Leftovers.h"

#include "Shared/PC/Debug/Process.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <charconv>
#include <string_view>

namespace gltf {

namespace {

constexpr std::string_view s_Extension = ".unfinished";

// 0 for a name that no process gives.
uint32_t GetWriter(std::string_view name) {
    if (!name.ends_with(s_Extension))
        return 0;
    name.remove_suffix(s_Extension.size());
    const std::string_view digits = name.substr(name.rfind('.') + 1);
    uint32_t id = 0;
    const auto [pEnd, error] = std::from_chars(digits.data(), digits.data() + digits.size(), id);
    return error == std::errc() && pEnd == digits.data() + digits.size() ? id : 0;
}

// A process on another machine that shares the folder can't be asked for, but locks what it writes.
bool IsFree(const std::string& path) {
    const OSFile::Handle file = OSFile::Open(path.c_str(), OSFile::Open_ReadWrite, true, false);
    return file && OSFile::Close(file);
}

} // namespace

std::string GetUnfinishedName(const std::string& path) {
    return (path + '.' + std::to_string(Process::GetId())).append(s_Extension);
}

// One that can't be taken away does no harm where it is.
void RemoveLeftovers(const std::string& folder) {
    for (const std::string& name : OSFile::List((folder + '*').append(s_Extension).c_str())) {
        const uint32_t writer = GetWriter(name);
        const std::string path = folder + name;
        if (writer != 0 && !Process::IsAlive(writer) && IsFree(path))
            OSFile::Delete(path.c_str());
    }
}

} // namespace gltf
