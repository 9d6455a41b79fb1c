#include "Shared/Cross/RenderAnim/Chunks/SaveFile.h"

#include <stdexcept>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"

namespace ra {

bool SaveFile(const char* pPath, const std::function<void(ByteStream&)>& write) {
    try {
        const std::unique_ptr<FileReplacement> pFile = FilePath::ReplaceFile(pPath);
        if (!pFile)
            throw Chunky::Exception(ChunkyError_OpenFailed, "Unable to open file!");
        write(pFile->GetStream());
        if (!pFile->Finish())
            throw std::runtime_error("Unable to write to file!");
        return true;
    } catch (const std::exception& exception) {
        dbWarningf("RENDER ANIM -- %s: %s", pPath, exception.what());
        return false;
    }
}

} // namespace ra
