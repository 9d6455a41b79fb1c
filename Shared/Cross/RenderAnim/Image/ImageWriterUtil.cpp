#include "Shared/Cross/RenderAnim/Image/ImageWriterUtil.h"

#include <memory>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"

bool WritePictureFile(const char* pName, std::initializer_list<std::span<const uint8_t>> parts) {
    return WritePictureFile(pName, std::span(parts.begin(), parts.size()));
}

bool WritePictureFile(const char* pName, std::span<const std::span<const uint8_t>> parts) {
    const std::unique_ptr<FileReplacement> pFile = FilePath::ReplaceFile(pName);
    if (!pFile) {
        dbWarningf("TEXTURES -- '%s': Unable to open file!", pName);
        return false;
    }
    bool isWritten = true;
    for (const std::span<const uint8_t> part : parts)
        isWritten =
            isWritten && pFile->GetStream().Write(part.data(), static_cast<uint32_t>(part.size())) == part.size();
    if (!isWritten || !pFile->Finish()) {
        dbWarningf("TEXTURES -- '%s': Unable to write to file!", pName);
        return false;
    }
    return true;
}
