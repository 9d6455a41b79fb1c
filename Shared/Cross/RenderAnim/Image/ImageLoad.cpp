#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

#include "Shared/Cross/Debug/RunOptions.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/RenderAnim/Image/ImageConvert.h"
#include "Shared/Cross/RenderAnim/Image/ImageReaders.h"
#include "Shared/Cross/RenderAnim/Image/ImageWriters.h"
#include "Shared/Cross/RenderAnim/Image/Pixelmap.h"

namespace {

constexpr Colour s_PlaceholderColour = Colour::FromValue(0xFF9F9F9F);

using Reader = std::unique_ptr<Image> (*)(const ImageReaderArgs& args, uint32_t& outFlags);

// In the order in which a name without an extension tries them.
struct ReaderEntry {
    const char* pExtension;
    Reader pReader;
};
constexpr ReaderEntry s_Readers[] = {
    {".dds", ReadDds}, {".jpg", ReadJpeg}, {".tga", ReadTga}, {".bmp", ReadBmp}, {".bw", ReadBw},
};

bool EqualsIgnoringCase(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right,
                              [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
}

std::string AddAlias(const char* pName) {
    const std::string name = pName ? pName : "";
    return FilePathUtil::HasAlias(name.c_str()) ? name : "DATA:" + name;
}

// With its dot; empty if there is none.
std::string GetExtension(const std::string& name) {
    std::string extension;
    return FilePathUtil::CopyExtension(extension, name.c_str()) ? "." + extension : "";
}

// The reader by the extension, or by the file that there is, whose extension goes to the name. Null with a log line.
const ReaderEntry* FindReader(std::string& name) {
    const std::string extension = GetExtension(name);
    if (!extension.empty()) {
        for (const ReaderEntry& entry : s_Readers)
            if (EqualsIgnoringCase(extension, entry.pExtension))
                return &entry;
        dbWarningf("TEXTURES -- '%s': Unrecognized file type", name.c_str());
        return nullptr;
    }
    for (const ReaderEntry& entry : s_Readers)
        if (FilePath::GetType((name + entry.pExtension).c_str()) == FilePath::Type_File) {
            name += entry.pExtension;
            return &entry;
        }
    dbWarningf("TEXTURES -- '%s': there is no such file of any picture type", name.c_str());
    return nullptr;
}

} // namespace

std::unique_ptr<Image> ImageLoad::MakePlaceholder() {
    std::unique_ptr<Image> pImage = Image::Create(IMAGETYPE_RGBA32, 1, 1);
    ImageCast<Image_RGBA32>(pImage.get())->GetPixels()[0] = s_PlaceholderColour;
    return pImage;
}

std::unique_ptr<Image> ImageLoad::Load(uint32_t& outFlags, const char* pName, ImageType wantedType,
                                       uint32_t levelsToSkip) {
    outFlags = Flags_Unknown;
    std::string name = AddAlias(pName);
    std::unique_ptr<Image> pImage;
    if (RunOptions::IsSet("noimages")) {
        pImage = MakePlaceholder();
        outFlags = Flags_NoAlpha;
    } else if (const ReaderEntry* pEntry = FindReader(name)) {
        const std::unique_ptr<ByteStream> pStream = FilePath::OpenStream(name.c_str(), FilePath::Mode::Mode_Read);
        pImage =
            pEntry->pReader({.pStream = pStream.get(), .pName = name.c_str(), .levelsToSkip = levelsToSkip}, outFlags);
    }
    if (!pImage || wantedType == IMAGETYPE_KEEP || pImage->GetType() == wantedType)
        return pImage;
    outFlags = Flags_Unknown;
    return Convert(wantedType, *pImage);
}

bool ImageLoad::Save(const char* pName, const Image& image) {
    const std::string name = AddAlias(pName);
    const std::string extension = GetExtension(name);
    if (EqualsIgnoringCase(extension, ".tga"))
        return WriteTga(name.c_str(), image);
    if (EqualsIgnoringCase(extension, ".jpg"))
        return WriteJpeg(name.c_str(), image);
    if (EqualsIgnoringCase(extension, ".dds"))
        return WriteDds(name.c_str(), image);
    dbWarningf("TEXTURES -- '%s': Unrecognized file type", name.c_str());
    return false;
}
