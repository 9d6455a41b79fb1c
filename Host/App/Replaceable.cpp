#include "Host/App/Replaceable.h"

#include "Host/App/Messages.h"
#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/PC/FileSystem/DiskFileStream.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <memory>

namespace {

bool IsOther(const std::string& path) {
    const std::unique_ptr<ByteStream> pStream = OpenFile(path.c_str(), ByteStream::Mode_Read, true);
    if (!pStream || pStream->GetLength() == 0)
        return false;
    try {
        const Chunky chunky{ByteStreamAdapter(pStream.get())};
        return false;
    } catch (const Chunky::Exception&) {
        return true;
    }
}

} // namespace

std::string GetOutputPath(const std::string& nativePath) {
    std::string path = OSFile::FromNative(nativePath);
    if (path.empty())
        throw HostError(2, nativePath + ": take backslashes and colons out of the names of the file and its folders");
    return path;
}

void RequireReplaceable(const std::string& nativePath) {
    const std::string path = GetOutputPath(nativePath);
    if (!FilePathUtil::HasExtension(path.c_str(), ".pvx") && IsOther(path))
        throw HostError(2, nativePath +
                               ": is another kind of file, which the model would replace; choose another name, "
                               "or delete the file first");
}
