#include "Tools/pvxdump/PatternDump.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <stdexcept>

#include <nlohmann/json.hpp>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Image/ImageConvert.h"
#include "Shared/Cross/RenderAnim/Image/Pixelmap.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared/Cross/TeamColour/Pattern.h"
#include "Shared/Cross/TeamColour/PatternLoad.h"
#include "Tools/pvxdump/Dump.h"
#include "Tools/pvxdump/TextFormat.h"
#include "Tools/pvxdump/TextTable.h"
#include "Tools/pvxdump/TextureFiles.h"

namespace {

using nlohmann::json;
using TextFormat::Number;

PatternLayer DescribeLayer(int32_t layer, std::span<const uint8_t> bytes) {
    uint64_t sum = 0;
    for (const uint8_t byte : bytes)
        sum += byte;
    return {.name = Pattern::GetLayerName(layer),
            .coveredPixels = static_cast<uint64_t>(std::ranges::count_if(bytes, [](uint8_t byte) { return byte > 0; })),
            .mean = static_cast<double>(sum) / 255.0 / static_cast<double>(bytes.size()),
            .file = {}};
}

std::unique_ptr<Image> MakeGreyPicture(const Pattern& pattern, std::span<const uint8_t> bytes) {
    std::unique_ptr<Image> pImage = Image::Create(IMAGETYPE_RGB888, pattern.GetWidth(), pattern.GetHeight());
    if (!pImage)
        throw std::runtime_error("a layer of " + std::to_string(pattern.GetWidth()) + "x" +
                                 std::to_string(pattern.GetHeight()) + " pixels can't be written as a picture");
    std::ranges::transform(bytes, ImageCast<Image_RGB888>(pImage.get())->GetPixels().begin(),
                           [](uint8_t byte) { return Colour_RGB888{.b = byte, .g = byte, .r = byte}; });
    return pImage;
}

class PartReader {
public:
    PartReader(const Pattern& pattern, const std::string& file, const DumpOptions& options)
        : m_Pattern(pattern), m_Title(file.substr(file.rfind('/') + 1)) {
        m_Title = m_Title.substr(0, m_Title.rfind('.'));
        if (!options.texturesFolder.empty())
            m_Files.emplace(options.texturesFolder);
    }

    std::vector<PatternLayer> ReadLayers() {
        std::vector<PatternLayer> layers;
        for (int32_t layer = 0; layer < Pattern::LAYER_PATTERN_COUNT; ++layer) {
            const std::span<const uint8_t> bytes = m_Pattern.GetLayer(layer);
            if (bytes.empty())
                continue;
            PatternLayer& entry = layers.emplace_back(DescribeLayer(layer, bytes));
            if (m_Files)
                entry.file = Write(entry.name, MakeGreyPicture(m_Pattern, bytes));
        }
        return layers;
    }

    // Empty without pictures.
    std::string WriteDirtImage() {
        const Image* const pImage = m_Pattern.GetDirtImage();
        return pImage && m_Files ? Write("dirt_image", Convert(IMAGETYPE_RGBA32, *pImage)) : "";
    }

private:
    std::string Write(const std::string& part, std::unique_ptr<Image> pImage) {
        Texture texture;
        texture.SetName((m_Title + "_" + part).c_str());
        texture.SetImage(std::move(pImage));
        return m_Files->Write(texture);
    }

    const Pattern& m_Pattern;
    std::string m_Title; // what the pictures' names begin with
    std::optional<TextureFiles> m_Files;
};

std::string FormatRect(const Pattern::Rect& rect) {
    return Number(rect.width) + "x" + Number(rect.height) + " at " +
           TextFormat::Numbers(std::array<float, 2>{rect.x, rect.y});
}

json RectToJson(const Pattern::Rect& rect) {
    return {{"x", rect.x}, {"y", rect.y}, {"width", rect.width}, {"height", rect.height}};
}

} // namespace

PatternContent ReadPatternContent(Chunky& chunky, const std::string& file, const DumpOptions& options) {
    PatternContent content;
    PatternLoad::Read(chunky, content.pattern);
    PartReader reader(content.pattern, file, options);
    content.layers = reader.ReadLayers();
    content.dirtFile = reader.WriteDirtImage();
    return content;
}

void PrintPattern(std::string& out, const PatternContent& content) {
    const Pattern& pattern = content.pattern;
    out += "pattern " + TextFormat::Name(pattern.GetSchemeName()) + ", " + std::to_string(pattern.GetWidth()) + "x" +
           std::to_string(pattern.GetHeight()) + " pixels, " +
           TextFormat::Count(content.layers.size(), "layer", "layers") + '\n';
    if (const Image* const pImage = pattern.GetDirtImage())
        out += "dirt image: " + std::to_string(pImage->GetWidth()) + "x" + std::to_string(pImage->GetHeight()) +
               " pixels" + (content.dirtFile.empty() ? "" : ", " + content.dirtFile) + '\n';
    if (pattern.GetBadge().IsPresent())
        out += "badge: " + FormatRect(pattern.GetBadge()) + '\n';
    if (pattern.GetBanner().IsPresent())
        out += "banner: " + FormatRect(pattern.GetBanner()) + '\n';
    using enum TextTable::Align;
    TextTable table({{"layer", Left}, {"pixels covered", Right}, {"mean strength", Right}, {"picture", Left}});
    for (const PatternLayer& layer : content.layers)
        table.AddRow({layer.name, TextFormat::Count(layer.coveredPixels), Number(layer.mean), layer.file});
    table.PrintSection(out, "layers");
}

json ToJson(const PatternContent& content) {
    const Pattern& pattern = content.pattern;
    json out = {{"kind", "pattern"},
                {"scheme", pattern.GetSchemeName()},
                {"width", pattern.GetWidth()},
                {"height", pattern.GetHeight()},
                {"layers", json::array()}};
    for (const PatternLayer& layer : content.layers) {
        json& entry = out["layers"].emplace_back(
            json{{"name", layer.name}, {"coveredPixels", layer.coveredPixels}, {"mean", layer.mean}});
        if (!layer.file.empty())
            entry["file"] = layer.file;
    }
    if (const Image* const pImage = pattern.GetDirtImage()) {
        out["dirtImage"] = {{"width", pImage->GetWidth()}, {"height", pImage->GetHeight()}};
        if (!content.dirtFile.empty())
            out["dirtImage"]["file"] = content.dirtFile;
    }
    if (pattern.GetBadge().IsPresent())
        out["badge"] = RectToJson(pattern.GetBadge());
    if (pattern.GetBanner().IsPresent())
        out["banner"] = RectToJson(pattern.GetBanner());
    return out;
}
