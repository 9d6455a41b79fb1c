#include "Host/App/OutputFile.h"

#include "Host/App/Messages.h"
#include "Host/App/Replaceable.h"
#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/Util/Hash.h"
#include "Shared/PC/Debug/Process.h"
#include "Shared/PC/FileSystem/DiskFileReplacement.h"
#include "Shared/PC/FileSystem/DiskFileStream.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <exception>
#include <string_view>

namespace {

// The system's paths are at most 259 characters long, and the exporter puts its alias "TOOL:" in front of this one.
constexpr size_t s_MaxPath = 259 - 5;

std::string_view FileName(std::string_view path) { return path.substr(path.find_last_of("/\\") + 1); }

// Without the slash behind it; the root keeps its own.
std::string FolderOf(const std::string& path) {
    const size_t slash = path.find_last_of("/\\");
    if (slash == std::string::npos)
        return "";
    return path.substr(0, slash == 0 || path[slash - 1] == ':' ? slash + 1 : slash);
}

// Opens the file for writing without changing it. One that isn't there is tried under another name, which is gone
// again afterwards: taking away the asked-for one could hit what another export has just put there.
void ProbeWriting(const std::string& nativePath, const std::string& path) {
    const bool isThere = OSFile::FileAttr(path.c_str()) != 0;
    const std::string probe = isThere ? path : path + '.' + std::to_string(Process::GetId());
    const OSFile::Handle handle = OSFile::Open(probe.c_str(), OSFile::Open_ReadWrite, true, false);
    if (!handle)
        throw HostError(2, nativePath + ": can't be written: " + OSFile::LastErrorText() +
                               "; choose another place or change the rights there");
    OSFile::Close(handle);
    if (!isThere)
        OSFile::Delete(probe.c_str());
}

void CheckName(const std::string& nativePath) {
    const std::string_view name = FileName(nativePath);
    const size_t dot = name.rfind('.');
    if (name.empty())
        throw HostError(2, nativePath + ": names a folder; put the model file's name behind it");
    if (dot == std::string_view::npos)
        throw HostError(2, nativePath + ": the output's name has no extension; call it " + std::string(name) + ".pvx");
    if (EqualNoCase(name.substr(dot), ".log"))
        throw HostError(2, nativePath + ": the export's log takes that name; call the output " +
                               std::string(name.substr(0, dot)) + ".pvx");
}

} // namespace

OutputFile::Checked OutputFile::Check(const std::string& nativePath, const std::string& nativeScene) {
    CheckName(nativePath);
    Checked checked{.path = GetOutputPath(nativePath), .nativeFolder = {}};
    const std::string folder = FolderOf(checked.path);
    checked.nativeFolder = OSFile::ToNative(folder);
    if (!(OSFile::FileAttr(folder.c_str()) & OSFile::F_ATTRIBUTE_DIRECTORY))
        throw HostError(2, nativePath + ": there is no folder \"" + checked.nativeFolder + "\"; make it first");
    if (checked.path.size() > s_MaxPath)
        throw HostError(2, nativePath + ": the whole path has more than " + std::to_string(s_MaxPath) +
                               " characters; choose a shorter one");
    if (OSFile::FileAttr(checked.path.c_str()) & OSFile::F_ATTRIBUTE_DIRECTORY)
        throw HostError(2, nativePath + ": is a folder; name a file in it");
    if (OSFile::ToNative(checked.path) == OSFile::ToNative(OSFile::FromNative(nativeScene)))
        throw HostError(2, nativePath + ": is the scene itself; choose another name for the output");
    RequireReplaceable(nativePath);
    ProbeWriting(nativePath, checked.path);
    return checked;
}

OutputFile::OutputFile(const std::string& nativePath, const std::string& nativeScene)
    : OutputFile(nativePath, Check(nativePath, nativeScene)) {}

OutputFile::OutputFile(const std::string& nativePath, Checked checked)
    : m_NativePath(nativePath), m_Path(std::move(checked.path)), m_NativeFolder(std::move(checked.nativeFolder)),
      m_Guard(OSFile::ToNative(m_Path), OSFile::ToNative(GetUnfinishedName(m_Path))) {}

std::string OutputFile::GetLogPath() const { return m_Path.substr(0, m_Path.rfind('.')) + ".log"; }

OutputFile::Content OutputFile::GetContent() const {
    try {
        const std::unique_ptr<ByteStream> pStream = OpenFile(m_Path.c_str(), ByteStream::Mode_Read, true);
        if (!pStream)
            return Content::Broken;
        Chunky chunky{ByteStreamAdapter(pStream.get())};
        ChunkInfo info;
        uint32_t count = 0;
        uint64_t size = 0;
        for (; chunky.NextChunk(info); ++count)
            size += info.size;
        if (count == 0)
            return Content::Broken;
        return size == 0 ? Content::Empty : Content::Full;
    } catch (const std::exception&) {
        // A writer that stopped midway leaves sizes that lead nowhere.
        return Content::Broken;
    }
}

void OutputFile::RemoveIfBroken() const {
    if (!IsWritten() || GetContent() != Content::Broken)
        return;
    // Not while somebody else writes it.
    if (const OSFile::Handle handle = OSFile::Open(m_Path.c_str(), OSFile::Open_ReadWrite, true, false)) {
        OSFile::Delete(m_Path.c_str());
        OSFile::Close(handle);
    }
}
