#include "Shared_Tools/BurnerImp/OwnCopy.h"

#include "Shared/PC/Debug/Process.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <chrono>
#include <string>
#include <thread>

namespace {

using std::chrono::milliseconds;

constexpr milliseconds s_EndOfHost{300};
constexpr milliseconds s_Pause{5};
constexpr std::string_view s_Stem = "Burner_";
constexpr std::string_view s_Extension = ".exe";

bool IsCopyName(std::string_view name) {
    if (!name.starts_with(s_Stem) || !name.ends_with(s_Extension))
        return false;
    name = name.substr(s_Stem.size(), name.size() - s_Stem.size() - s_Extension.size());
    return !name.empty() && name.find_first_not_of("0123456789") == std::string_view::npos;
}

} // namespace

OwnCopy::OwnCopy() : m_Host(Process::GetParentId()) {}

bool OwnCopy::WaitForEndOfHost() const {
    const auto end = std::chrono::steady_clock::now() + s_EndOfHost;
    while (Process::GetParentId() == m_Host && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(s_Pause);
    return Process::GetParentId() != m_Host;
}

void OwnCopy::DeleteIfHostIsGone(bool mayBeLast) const {
    const bool isGone = mayBeLast ? WaitForEndOfHost() : Process::GetParentId() != m_Host;
    if (isGone)
        Delete();
}

void OwnCopy::Delete() {
    const std::string path = Process::GetExecutablePath();
    if (IsCopyName(std::string_view(path).substr(path.rfind('/') + 1)))
        OSFile::Delete(OSFile::FromNative(path).c_str());
}
