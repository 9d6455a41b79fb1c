#include "Shared/PC/FileSystem/NativePath.h"

#include <cerrno>
#include <climits>
#include <cstdlib>

#include <unistd.h>

namespace {

bool IsSeparator(char character) { return character == '\\' || character == '/'; }

// Takes the drive off the path.
bool TakeDrive(std::string_view& path) {
    const size_t colon = path.find(':');
    if (colon == std::string_view::npos)
        return true;
    if (colon != 1 || path.find(':', 2) != std::string_view::npos) {
        errno = EINVAL;
        return false;
    }
    if (path[0] != 'Z' && path[0] != 'z') {
        errno = ENODEV;
        return false;
    }
    path.remove_prefix(2);
    return true;
}

void AppendComponent(std::string& native, std::string_view component) {
    if (component.empty() || component == ".")
        return;
    if (component == "..")
        native.resize(native.empty() ? 0 : native.rfind('/'));
    else
        native.append(1, '/').append(component);
}

} // namespace

bool ToNativeText(std::string_view path, std::string& native) {
    if (path.empty()) {
        errno = ENOENT;
        return false;
    }
    if (path.size() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1])) {
        errno = ENODEV;
        return false;
    }
    if (!TakeDrive(path))
        return false;
    native.clear();
    if (path.empty() || !IsSeparator(path[0])) {
        native = GetNativeCurrentFolder();
        if (native.empty())
            return false;
        if (native == "/")
            native.clear();
    }
    native.reserve(native.size() + path.size() + 1);
    for (size_t begin = 0; begin < path.size();) {
        size_t end = begin;
        while (end < path.size() && !IsSeparator(path[end]))
            ++end;
        AppendComponent(native, path.substr(begin, end - begin));
        begin = end + 1;
    }
    if (native.empty())
        native.assign(1, '/');
    if (native.size() >= PATH_MAX) {
        errno = ENAMETOOLONG;
        return false;
    }
    return true;
}

std::string GetRealPath(const std::string& path) {
    char buffer[PATH_MAX];
    return realpath(path.c_str(), buffer) ? buffer : "";
}

std::string GetNativeCurrentFolder() {
    char buffer[PATH_MAX];
    return getcwd(buffer, sizeof(buffer)) ? buffer : "";
}
