#include "Shared_Tools/PVXExport/Merge/OmbrelTeamPattern.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Shared/Cross/RenderAnim/Image/Pixelmap.h"
#include "Shared/Cross/TeamColour/Pattern.h"
#include "Shared_Tools/PVXExport/Merge/mergeburn.h"

namespace {

constexpr const char* s_DefaultScheme = "default";

// The dirt layer is none of them: its picture is more than a layer.
constexpr Pattern::Layer s_ColourLayers[] = {Pattern::LAYER_PRIMARY, Pattern::LAYER_SECONDARY, Pattern::LAYER_TRIM,
                                             Pattern::LAYER_WEAPONS, Pattern::LAYER_EYES};

// Pixels that a badge and a banner take on a texture.
constexpr int32_t s_BadgeWidth = 64;
constexpr int32_t s_BadgeHeight = 64;
constexpr int32_t s_BannerWidth = 64;
constexpr int32_t s_BannerHeight = 96;

// Null for a picture that isn't there, which is no mistake, and for one that can't be read, which is in the log.
std::unique_ptr<Image_RGBA32> LoadPicture(const std::string& path) {
    if (FilePath::GetType(path.c_str()) != FilePath::Type_File)
        return nullptr;
    uint32_t flags = 0;
    std::unique_ptr<Image> pImage = ImageLoad::Load(flags, path.c_str(), IMAGETYPE_RGBA32);
    return std::unique_ptr<Image_RGBA32>(ImageCast<Image_RGBA32>(pImage.release()));
}

// Any first pixel of full red and full blue marks the place; how much is painted doesn't matter.
Pattern::Rect FindMarkedRectangle(const Image_RGBA32& image, const std::string& path, int32_t width, int32_t height) {
    dbAssertText(image.GetWidth() * image.GetHeight() * 4 == image.GetDataSize(),
                 "( width * height * 4 ) == pImage->GetDataSize()");
    const std::span<const Colour> pixels = image.GetPixels();
    const auto marker =
        std::ranges::find_if(pixels, [](const Colour& pixel) { return pixel.b == 255 && pixel.r == 255; });
    if (marker == pixels.end())
        return {};
    const auto place = static_cast<uint32_t>(marker - pixels.begin());
    const auto x = static_cast<int32_t>(place % image.GetWidth());
    const auto y = static_cast<int32_t>(place / image.GetWidth());
    if (x > static_cast<int32_t>(image.GetWidth()) - width || y > static_cast<int32_t>(image.GetHeight()) - height)
        throw std::runtime_error("Merge: Invalid Badge or Banner Coordinates for '" + path +
                                 "'!  The area must fit completely inside the image!\n");
    return {.x = static_cast<float>(x),
            .y = static_cast<float>(y),
            .width = static_cast<float>(width),
            .height = static_cast<float>(height)};
}

// Puts a pattern together from the pictures beside its texture.
class PatternBuilder {
public:
    // Null, as a result, for a texture that isn't there.
    static std::unique_ptr<Pattern> Build(const std::string& sourcePath, const char* pSchemeName) {
        const std::unique_ptr<Image_RGBA32> pSource = LoadPicture(sourcePath);
        return pSource ? PatternBuilder(sourcePath, pSchemeName, *pSource).Build() : nullptr;
    }

private:
    PatternBuilder(const std::string& sourcePath, const char* pSchemeName, const Image_RGBA32& source)
        : m_SourcePath(sourcePath), m_SchemeName(pSchemeName), m_Source(source),
          m_pPattern(std::make_unique<Pattern>()) {
        m_pPattern->SetSchemeName(pSchemeName);
        m_pPattern->SetSize(source.GetWidth(), source.GetHeight());
    }

    std::unique_ptr<Pattern> Build() {
        for (const Pattern::Layer layer : s_ColourLayers)
            if (const std::unique_ptr<Image_RGBA32> pImage = LoadPicture(GetPath(Pattern::GetLayerName(layer))))
                FillLayer(layer, *pImage);
        if (const auto badge = FindPlace("badge", s_BadgeWidth, s_BadgeHeight))
            m_pPattern->SetBadge(*badge);
        if (const auto banner = FindPlace("banner", s_BannerWidth, s_BannerHeight))
            m_pPattern->SetBanner(*banner);
        AddDirt();
        if (!m_AnyLayer)
            return nullptr;
        ReportMissing();
        return std::move(m_pPattern);
    }

    std::string GetPath(const char* pSuffix) const {
        std::string alias;
        std::string folder;
        std::string name;
        std::string extension;
        std::string path;
        FilePathUtil::SplitPath(m_SourcePath.c_str(), &alias, &folder, &name, &extension);
        name += "_" + m_SchemeName + "_" + pSuffix;
        // A path that is too long is that of no file.
        FilePathUtil::MakePath(path, alias.c_str(), folder.c_str(), name.c_str(), extension.c_str());
        return path;
    }

    void FillLayer(Pattern::Layer layer, const Image_RGBA32& image) {
        if (image.GetWidth() != m_pPattern->GetWidth() || image.GetHeight() != m_pPattern->GetHeight())
            throw std::runtime_error(std::string("Merge: Layer '") + Pattern::GetLayerName(layer) +
                                     "' does not match texture '" + m_SourcePath + "' dimensions!");
        std::vector<uint8_t> bytes(image.GetPixels().size());
        std::ranges::transform(image.GetPixels(), bytes.begin(), &Colour::a);
        m_pPattern->SetLayer(layer, std::move(bytes));
        m_AnyLayer = true;
    }

    std::optional<Pattern::Rect> FindPlace(const char* pSuffix, int32_t width, int32_t height) const {
        const std::string path = GetPath(pSuffix);
        const std::unique_ptr<Image_RGBA32> pImage = LoadPicture(path);
        const Pattern::Rect rect = pImage ? FindMarkedRectangle(*pImage, path, width, height) : Pattern::Rect();
        return rect.width > 0 && rect.height > 0 ? std::optional(rect) : std::nullopt;
    }

    // Dirt covers what the texture covers, so the picture takes its alpha from there.
    void AddDirt() {
        std::unique_ptr<Image_RGBA32> pResult = LoadPicture(GetPath(Pattern::GetLayerName(Pattern::LAYER_DIRT)));
        if (!pResult)
            return;
        FillLayer(Pattern::LAYER_DIRT, *pResult);
        dbAssertText(pResult->GetDataSize() == m_Source.GetDataSize(), "pResult->GetDataSize() == pSrc->GetDataSize()");
        std::ranges::transform(pResult->GetPixels(), m_Source.GetPixels(), pResult->GetPixels().begin(),
                               [](Colour dirt, const Colour& source) {
                                   dirt.a = source.a;
                                   return dirt;
                               });
        m_pPattern->SetDirtImage(std::move(pResult));
    }

    void ReportMissing() const {
        const std::pair<bool, const char*> parts[] = {
            {m_pPattern->HasLayer(Pattern::LAYER_PRIMARY), "primary team colour layer"},
            {m_pPattern->HasLayer(Pattern::LAYER_DIRT), "dirt team colour layer"},
            {m_pPattern->GetDirtImage() != nullptr, "dirt team colour image"},
        };
        for (const auto& [present, pPart] : parts)
            if (!present)
                dbWarningf("Team Pattern Export -- Unable to find '%s' %s for '%s'!", m_SchemeName.c_str(), pPart,
                           m_SourcePath.c_str());
    }

    std::string m_SourcePath;
    std::string m_SchemeName;
    const Image_RGBA32& m_Source;
    std::unique_ptr<Pattern> m_pPattern;
    bool m_AnyLayer = false;
};

} // namespace

namespace OmbrelTeamPattern {

bool ExportTeamPattern(const char* pProject, const char* pTextureName) {
    const std::unique_ptr<Pattern> pPattern = MakeTeamPattern(pProject, s_DefaultScheme, pTextureName);
    if (!pPattern)
        return true;
    const std::string file = std::string(Pipeline::Get()->GetFolder(pProject, Pipeline::Kind_Generic)) + "\\" +
                             pTextureName + "_" + s_DefaultScheme + ".otp";
    MergeBurnWrite(file, "team colour pattern", [&](const char* pPath) { Pattern::Save(pPath, *pPattern); });
    return true;
}

std::unique_ptr<Pattern> MakeTeamPattern(const char* pProject, const char* pSchemeName, const char* pTextureName) {
    const std::string sourcePath = std::string("TOOL:") + Pipeline::Get()->GetFolder(pProject, Pipeline::Kind_Source) +
                                   "\\" + pTextureName + ".tga";
    return PatternBuilder::Build(sourcePath, pSchemeName);
}

} // namespace OmbrelTeamPattern
