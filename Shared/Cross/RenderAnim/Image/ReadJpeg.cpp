#include "Shared/Cross/RenderAnim/Image/ImageReaders.h"

#include <algorithm>
#include <span>
#include <string>

#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Shared/Cross/RenderAnim/Image/ImageReaderUtil.h"
#include "Shared/Cross/RenderAnim/Image/JpegLibrary.h"
#include "Shared/Cross/RenderAnim/Image/Pixelmap.h"

namespace {

// Even an empty block of 8 by 8 pixels takes a bit of the file.
constexpr uint32_t s_PixelsPerByte = 8 * 8 * 8;
// A progressive picture has about ten. Each is a pass over the whole picture that a file gets for a few bytes.
constexpr uint32_t s_MaxScans = 64;

uint32_t CountScans(std::span<const uint8_t> file) {
    constexpr uint8_t startOfScan[] = {0xFF, 0xDA};
    uint32_t count = 0;
    auto it = std::search(file.begin(), file.end(), std::begin(startOfScan), std::end(startOfScan));
    for (; it != file.end(); it = std::search(it + 2, file.end(), std::begin(startOfScan), std::end(startOfScan)))
        ++count;
    return count;
}

} // namespace

std::unique_ptr<Image> ReadJpeg(const ImageReaderArgs& args, uint32_t& outFlags) {
    return ReadJpeg(args, outFlags, JpegLibrary::Get());
}

std::unique_ptr<Image> ReadJpeg(const ImageReaderArgs& args, uint32_t& outFlags, const JpegLibrary& library) {
    if (!library.IsLoaded())
        return Refuse(args.pName, "no JPEG can be read: " + library.GetError());
    if (!args.pStream)
        return Refuse(args.pName, "Unable to open file!");
    const uint32_t size = GetBytesAhead(*args.pStream);
    const auto pFile = std::make_unique_for_overwrite<uint8_t[]>(size);
    const std::span<const uint8_t> file(pFile.get(), args.pStream->Read(pFile.get(), size));
    uint32_t width = 0;
    uint32_t height = 0;
    std::string error;
    if (!library.ReadSize(file, width, height, error))
        return Refuse(args.pName, "this is no JPEG that can be read: " + error);
    if (!CheckSides(args.pName, IMAGETYPE_RGBA32, width, height))
        return nullptr;
    if (width * height / s_PixelsPerByte > file.size())
        return Refuse(args.pName, "the JPEG is too short for its " + std::to_string(width) + "x" +
                                      std::to_string(height) + " pixels");
    if (CountScans(file) > s_MaxScans)
        return Refuse(args.pName, "the JPEG has more than " + std::to_string(s_MaxScans) + " scans");
    std::unique_ptr<Image> pImage = Image::Create(IMAGETYPE_RGBA32, width, height);
    if (!library.Read(file, width, height, ImageCast<Image_RGBA32>(pImage.get())->GetPixels(), error))
        return Refuse(args.pName, "the JPEG can't be decoded: " + error);
    outFlags = ImageLoad::Flags_NoAlpha;
    return pImage;
}
