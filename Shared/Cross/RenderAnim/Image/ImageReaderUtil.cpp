#include "Shared/Cross/RenderAnim/Image/ImageReaderUtil.h"

#include "Shared/Cross/Debug/db.h"

uint32_t GetBytesAhead(ByteStream& stream) {
    const uint32_t length = stream.GetLength();
    const uint32_t pos = stream.GetPos();
    return pos < length ? length - pos : 0;
}

std::unique_ptr<Image> Refuse(const char* pName, const std::string& reason) {
    dbWarningf("TEXTURES -- '%s': %s", pName, reason.c_str());
    return nullptr;
}

std::unique_ptr<Image> RefuseNameLast(const char* pReason, const char* pName) {
    dbWarningf("%s [%s]", pReason, pName);
    return nullptr;
}

std::unique_ptr<Image> RefuseWithoutName(const char* pReason) {
    dbWarningf("%s", pReason);
    return nullptr;
}

bool CheckSides(const char* pName, ImageType type, uint32_t width, uint32_t height) {
    if (Image::AreSidesAllowed(type, width, height))
        return true;
    if (width < 1 || height < 1)
        dbWarningf("TEXTURES -- '%s': the picture has no pixels (%ux%u)", pName, width, height);
    else if (width > Image::MaxSide || height > Image::MaxSide)
        dbWarningf("TEXTURES -- '%s': the picture has %ux%u pixels; a side can have up to %u", pName, width, height,
                   Image::MaxSide);
    else
        dbWarningf("TEXTURES -- '%s': the picture has %ux%u pixels; sides of a compressed one are powers of two", pName,
                   width, height);
    return false;
}
