#include "Shared/Cross/RenderAnim/Image/ImageWriters.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Image/ImageWriterUtil.h"
#include "Shared/Cross/RenderAnim/Image/TgaLayout.h"

bool WriteTga(const char* pName, const Image& image) {
    const uint32_t width = image.GetWidth();
    const uint32_t height = image.GetHeight();
    if (width > 65535 || height > 65535) {
        dbWarningf("TEXTURES -- '%s': Image is too big (%dx%d)!", pName, static_cast<int>(width),
                   static_cast<int>(height));
        return false;
    }
    if (image.GetType() != IMAGETYPE_RGBA32 && image.GetType() != IMAGETYPE_RGB888) {
        dbWarningf("TEXTURES -- '%s': Unrecognized image type!", pName);
        return false;
    }
    const bool hasAlpha = image.GetType() == IMAGETYPE_RGBA32;
    uint8_t header[s_TgaHeaderSize] = {};
    header[2] = s_TgaTrueColour;
    header[12] = static_cast<uint8_t>(width);
    header[13] = static_cast<uint8_t>(width >> 8);
    header[14] = static_cast<uint8_t>(height);
    header[15] = static_cast<uint8_t>(height >> 8);
    header[16] = static_cast<uint8_t>(image.GetBitsPerPixel());
    header[17] = hasAlpha ? 8 : 0;
    return WritePictureFile(pName, {header, image.GetData()});
}
