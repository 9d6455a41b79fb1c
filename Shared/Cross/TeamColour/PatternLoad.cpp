#include "Shared/Cross/TeamColour/PatternLoad.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/RenderAnim/Image/ImageChunks.h"
#include "Shared/Cross/RenderAnim/Image/ImageConvert.h"
#include "Shared/Cross/RenderAnim/Image/Pixelmap.h"
#include "Shared/Cross/TeamColour/Pattern.h"
#include "Shared/Cross/TeamColour/PatternLayout.h"

#include <algorithm>
#include <stdexcept>

namespace {

constexpr uint32_t s_InfoChunk = FourCC("INFO");
constexpr uint32_t s_InfoVersion = 1;
constexpr uint32_t s_LayersChunk = FourCC("PTLD");
constexpr uint32_t s_LayersVersion = 1;
constexpr uint32_t s_BadgeChunk = FourCC("PTBD");
constexpr uint32_t s_BannerChunk = FourCC("PTBN");
constexpr uint32_t s_RectVersion = 1;
constexpr uint32_t s_OldLayerChunk = FourCC("PTLR");
constexpr uint32_t s_OldLayerVersion = 1;
constexpr uint32_t s_OldLayerInfoChunk = FourCC("PTIN");
constexpr uint32_t s_OldLayerInfoVersion = 2;

[[noreturn]] void Fail(const std::string& reason) {
    throw Chunky::Exception(ChunkyError_BadChunk, "Pattern: " + reason);
}

template <StreamScalar T>
T ReadField(Chunky& chunky, const char* pField) {
    T value{};
    if (chunky.GetRemaining() < sizeof(value) || !chunky.GetStream().ReadValue(value))
        Fail(std::string(pField) + " is missing");
    return value;
}

class Reader {
public:
    Reader(Chunky& chunky, Pattern& pattern) : m_Chunky(chunky), m_Pattern(pattern) {}

    void Read() {
        const ChunkInfo info = m_Chunky.EnterFolder(s_PatternChunk, s_PatternVersion);
        if (*info.name.GetText())
            m_Pattern.SetSchemeName(info.name.GetText());
        // What isn't known is left for NextChunk to step over.
        for (ChunkInfo child; m_Chunky.NextChunk(child);)
            child.kind == ChunkKind_Folder ? ReadFolder(child.id) : ReadData(child.id);
        m_Chunky.EndChunk();
    }

private:
    void ReadFolder(uint32_t id) {
        if (id == s_OldLayerChunk)
            ReadOldLayer();
        else if (id == s_ImageChunk)
            m_Pattern.SetDirtImage(ReadRGBA());
    }

    void ReadData(uint32_t id) {
        if (id == s_InfoChunk)
            ReadInfo();
        else if (id == s_LayersChunk)
            ReadLayers();
        else if (id == s_BadgeChunk)
            m_Pattern.SetBadge(ReadRect(id));
        else if (id == s_BannerChunk)
            m_Pattern.SetBanner(ReadRect(id));
    }

    void ReadInfo() {
        m_Chunky.EnterData(s_InfoChunk, s_InfoVersion);
        const auto width = ReadField<uint32_t>(m_Chunky, "width");
        const auto height = ReadField<uint32_t>(m_Chunky, "height");
        m_Pattern.SetSize(width, height);
        m_Chunky.EndChunk();
    }

    int32_t ReadLayerIndex() {
        const auto layer = ReadField<uint32_t>(m_Chunky, "layer index");
        if (layer >= Pattern::LAYER_PATTERN_COUNT)
            Fail("there is no layer " + std::to_string(layer));
        return static_cast<int32_t>(layer);
    }

    void ReadLayers() {
        m_Chunky.EnterData(s_LayersChunk, s_LayersVersion);
        while (m_Chunky.GetRemaining() > 0) {
            const int32_t layer = ReadLayerIndex();
            const auto size = ReadField<uint32_t>(m_Chunky, "byte count");
            if (size != m_Pattern.GetLayerSize())
                Fail("layer " + std::to_string(layer) + " has " + std::to_string(size) + " bytes where " +
                     std::to_string(m_Pattern.GetWidth()) + "x" + std::to_string(m_Pattern.GetHeight()) +
                     " pixels have one each");
            if (size > m_Chunky.GetRemaining())
                Fail("layer " + std::to_string(layer) + " goes beyond its chunk");
            std::vector<uint8_t> bytes(size);
            if (m_Chunky.GetStream().Read(bytes.data(), size) != size)
                Fail("the file ends within layer " + std::to_string(layer));
            m_Pattern.SetLayer(layer, std::move(bytes));
        }
        m_Chunky.EndChunk();
    }

    Pattern::Rect ReadRect(uint32_t id) {
        m_Chunky.EnterData(id, s_RectVersion);
        Pattern::Rect rect;
        rect.x = ReadField<float>(m_Chunky, "x");
        rect.y = ReadField<float>(m_Chunky, "y");
        rect.width = ReadField<float>(m_Chunky, "width");
        rect.height = ReadField<float>(m_Chunky, "height");
        m_Chunky.EndChunk();
        return rect;
    }

    void ReadOldLayer() {
        m_Chunky.EnterFolder(s_OldLayerChunk, s_OldLayerVersion);
        const ChunkInfo info = m_Chunky.EnterData(s_OldLayerInfoChunk, s_OldLayerInfoVersion);
        const int32_t layer = ReadLayerIndex();
        if (info.version < 2)
            ReadField<uint32_t>(m_Chunky, "second word");
        m_Chunky.EndChunk();
        if (m_Chunky.FindChunk(ChunkKind_Folder, s_ImageChunk))
            TakeLayerImage(layer, ReadRGBA());
        m_Chunky.EndChunk();
    }

    void TakeLayerImage(int32_t layer, std::unique_ptr<Image_RGBA32> pImage) {
        if (m_Pattern.GetLayerSize() == 0)
            m_Pattern.SetSize(pImage->GetWidth(), pImage->GetHeight());
        const bool sameSize =
            pImage->GetWidth() == m_Pattern.GetWidth() && pImage->GetHeight() == m_Pattern.GetHeight();
        dbAssertText(sameSize,
                     "pImage->GetWidth() == pattern.GetWidth() && pImage->GetHeight() == pattern.GetHeight()");
        if (!sameSize)
            return;
        const std::span<Colour> pixels = pImage->GetPixels();
        std::vector<uint8_t> bytes(pixels.size());
        std::ranges::transform(pixels, bytes.begin(), &Colour::a);
        m_Pattern.SetLayer(layer, std::move(bytes));
        if (layer != Pattern::LAYER_DIRT)
            return;
        for (Colour& pixel : pixels)
            pixel.a = 255;
        m_Pattern.SetDirtImage(std::move(pImage));
    }

    std::unique_ptr<Image_RGBA32> ReadRGBA() {
        std::unique_ptr<Image> pImage = ReadImage(m_Chunky);
        if (pImage->GetType() != IMAGETYPE_RGBA32) {
            std::unique_ptr<Image> pConverted = Convert(IMAGETYPE_RGBA32, *pImage);
            if (!pConverted)
                Fail("an image of type " + std::to_string(pImage->GetType()) + " has no pixels of 32 bits");
            pConverted->SetName(pImage->GetName());
            pImage = std::move(pConverted);
        }
        return std::unique_ptr<Image_RGBA32>(ImageCast<Image_RGBA32>(pImage.release()));
    }

    Chunky& m_Chunky;
    Pattern& m_Pattern;
};

void WriteInfo(Chunky& chunky, const Pattern& pattern) {
    chunky.BeginData(s_InfoChunk, s_InfoVersion);
    chunky.GetStream().WriteValue(pattern.GetWidth());
    chunky.GetStream().WriteValue(pattern.GetHeight());
    chunky.EndChunk();
}

void WriteLayers(Chunky& chunky, const Pattern& pattern) {
    chunky.BeginData(s_LayersChunk, s_LayersVersion);
    for (int32_t layer = 0; layer < Pattern::LAYER_PATTERN_COUNT; ++layer) {
        const std::span<const uint8_t> bytes = pattern.GetLayer(layer);
        if (bytes.empty())
            continue;
        chunky.GetStream().WriteValue(static_cast<uint32_t>(layer));
        chunky.GetStream().WriteValue(static_cast<uint32_t>(bytes.size()));
        chunky.GetStream().Write(bytes.data(), static_cast<uint32_t>(bytes.size()));
    }
    chunky.EndChunk();
}

void WriteRect(Chunky& chunky, uint32_t id, const Pattern::Rect& rect) {
    if (!rect.IsPresent())
        return;
    chunky.BeginData(id, s_RectVersion);
    for (const float value : {rect.x, rect.y, rect.width, rect.height})
        chunky.GetStream().WriteValue(value);
    chunky.EndChunk();
}

// One line in the log for whatever goes wrong with a file.
template <class Work>
bool Guard(const char* pPath, Work&& work) {
    try {
        work();
        return true;
    } catch (const std::exception& exception) {
        dbWarningf("TEAM COLOUR -- '%s': %s", pPath, exception.what());
        return false;
    }
}

} // namespace

void PatternLoad::Read(ByteStream& stream, Pattern& pattern) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    Read(chunky, pattern);
}

void PatternLoad::Read(Chunky& chunky, Pattern& pattern) { Reader(chunky, pattern).Read(); }

void PatternLoad::Write(Chunky& chunky, const Pattern& pattern) {
    chunky.BeginFolder(s_PatternChunk, s_PatternVersion, pattern.GetSchemeName());
    WriteInfo(chunky, pattern);
    WriteLayers(chunky, pattern);
    if (pattern.GetDirtImage())
        WriteImage(chunky, *pattern.GetDirtImage());
    WriteRect(chunky, s_BadgeChunk, pattern.GetBadge());
    WriteRect(chunky, s_BannerChunk, pattern.GetBanner());
    chunky.EndChunk();
}

void PatternLoad::Write(ByteStream& stream, const Pattern& pattern) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    Write(chunky, pattern);
    if (!stream.Flush())
        throw std::runtime_error("Unable to write to file!");
}

bool Pattern::Load(const char* pPath, Pattern& pattern) {
    return Guard(pPath, [&] {
        const std::unique_ptr<ByteStream> pStream = FilePath::OpenStream(pPath, ByteStream::Mode_Read);
        if (!pStream)
            throw Chunky::Exception(ChunkyError_OpenFailed, "Unable to open file!");
        Pattern loaded;
        PatternLoad::Read(*pStream, loaded);
        pattern = std::move(loaded);
    });
}

bool Pattern::Save(const char* pPath, const Pattern& pattern) {
    return Guard(pPath, [&] {
        const std::unique_ptr<FileReplacement> pFile = FilePath::ReplaceFile(pPath);
        if (!pFile)
            throw Chunky::Exception(ChunkyError_OpenFailed, "Unable to open file!");
        PatternLoad::Write(pFile->GetStream(), pattern);
        if (!pFile->Finish())
            throw std::runtime_error("Unable to write to file!");
    });
}

bool Pattern::GetPatternFilename(std::string& outPath, const char* pTextureName, const char* pSchemeName) {
    const std::string texture =
        FilePathUtil::HasAlias(pTextureName) ? pTextureName : std::string("DATA:") + pTextureName;
    std::string alias;
    std::string folder;
    std::string name;
    if (FilePathUtil::SplitPath(texture.c_str(), &alias, &folder, &name, nullptr)) {
        name += std::string("_") + pSchemeName;
        if (FilePathUtil::MakePath(outPath, alias.c_str(), folder.c_str(), name.c_str(), ".otp"))
            return true;
    }
    outPath.clear();
    return false;
}

bool Pattern::Exists(const char* pTextureName, const char* pSchemeName) {
    std::string path;
    return GetPatternFilename(path, pTextureName, pSchemeName) &&
           FilePath::OpenStream(path.c_str(), ByteStream::Mode_Read);
}
