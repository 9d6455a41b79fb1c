#include "Shared/Cross/RenderAnim/Image/ImageWriters.h"

#include <memory>
#include <string>
#include <vector>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Image/ImageConvert.h"
#include "Shared/Cross/RenderAnim/Image/ImageWriterUtil.h"
#include "Shared/Cross/RenderAnim/Image/JpegLibrary.h"
#include "Shared/Cross/RenderAnim/Image/Pixelmap.h"

bool WriteJpeg(const char* pName, const Image& image) {
    if (image.GetType() != IMAGETYPE_RGBA32 && image.GetType() != IMAGETYPE_RGB888) {
        dbWarningf("TEXTURES -- '%s': Unrecognized image type!", pName);
        return false;
    }
    std::unique_ptr<Image> pConverted;
    if (image.GetType() != IMAGETYPE_RGB888)
        pConverted = Convert(IMAGETYPE_RGB888, image);
    const auto* pImage = ImageCast<Image_RGB888>(pConverted ? pConverted.get() : &image);
    const JpegLibrary& library = JpegLibrary::Get();
    std::vector<uint8_t> file;
    std::string error = library.GetError();
    if (!library.Write(pImage->GetPixels(), image.GetWidth(), image.GetHeight(), file, error)) {
        dbWarningf("TEXTURES -- '%s': the JPEG can't be made: %s", pName, error.c_str());
        return false;
    }
    return WritePictureFile(pName, {file});
}
