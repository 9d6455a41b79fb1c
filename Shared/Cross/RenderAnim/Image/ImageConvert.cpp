#include "Shared/Cross/RenderAnim/Image/ImageConvert.h"

#include <algorithm>
#include <vector>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Image/Palette.h"
#include "Shared/Cross/RenderAnim/Image/Palettize.h"

namespace {

// Each level of the source through one function of a pixel.
template <class Target, class Source, class Function>
std::unique_ptr<Image> ConvertPixels(const Image& source, Function&& convert) {
    std::unique_ptr<Image> pResult =
        Image::Create(Target::Type, source.GetWidth(), source.GetHeight(), source.GetMipCount());
    const Source* pSource = ImageCast<Source>(&source);
    Target* pTarget = ImageCast<Target>(pResult.get());
    for (uint32_t level = 0; level < source.GetMipCount(); ++level)
        std::ranges::transform(pSource->GetPixels(level), pTarget->GetPixels(level).begin(), convert);
    return pResult;
}

template <class Source>
std::unique_ptr<Image> GrowToRGBA32(const Image& source) {
    return ConvertPixels<Image_RGBA32, Source>(source, [](typename Source::Pixel pixel) { return pixel.GetColour(); });
}

std::unique_ptr<Image> LookUpColours(const Image& source) {
    const ImagePalette& palette = ImageCast<Image_Palette>(&source)->GetPalette();
    return ConvertPixels<Image_RGBA32, Image_Palette>(source, [&palette](uint8_t index) { return palette[index]; });
}

// Rounded; by the usual weights of red, green and blue, in 256 parts, so that grey stays what it is.
uint8_t GetBrightness(Colour colour) {
    return static_cast<uint8_t>((colour.r * 77u + colour.g * 150u + colour.b * 29u + 128) / 256);
}

std::unique_ptr<Image> LookUpBrightness(const Image& source) {
    std::array<uint8_t, 256> brightness;
    std::ranges::transform(ImageCast<Image_Palette>(&source)->GetPalette(), brightness.begin(), GetBrightness);
    return ConvertPixels<Image_Luminance8, Image_Palette>(source,
                                                          [&brightness](uint8_t index) { return brightness[index]; });
}

std::unique_ptr<Image> ConvertToRGBA32(const Image& source) {
    switch (source.GetType()) {
    case IMAGETYPE_LUMINANCE8:
        return ConvertPixels<Image_RGBA32, Image_Luminance8>(
            source, [](uint8_t light) { return Colour{.b = light, .g = light, .r = light, .a = 255}; });
    case IMAGETYPE_PALETTE8:
        return LookUpColours(source);
    case IMAGETYPE_RGB565:
        return GrowToRGBA32<Image_RGB565>(source);
    case IMAGETYPE_RGBA5551:
        return GrowToRGBA32<Image_RGBA5551>(source);
    case IMAGETYPE_RGBA4444:
        return GrowToRGBA32<Image_RGBA4444>(source);
    case IMAGETYPE_RGB888:
        return GrowToRGBA32<Image_RGB888>(source);
    default:
        return nullptr;
    }
}

template <class Target>
std::unique_ptr<Image> ShrinkFromRGBA32(const Image& source) {
    return ConvertPixels<Target, Image_RGBA32>(source, [](Colour colour) { return Target::Pixel::FromColour(colour); });
}

std::unique_ptr<Image> Copy(const Image& source) {
    std::unique_ptr<Image> pResult =
        Image::Create(source.GetType(), source.GetWidth(), source.GetHeight(), source.GetMipCount());
    for (uint32_t level = 0; level < source.GetMipCount(); ++level)
        std::ranges::copy(source.GetData(level), pResult->GetData(level).begin());
    if (const Image_Palette* pSource = ImageCast<Image_Palette>(&source))
        ImageCast<Image_Palette>(pResult.get())->GetPalette() = pSource->GetPalette();
    return pResult;
}

// Null for a pair that doesn't exist.
std::unique_ptr<Image> ConvertPair(ImageType targetType, const Image& source) {
    const ImageType type = source.GetType();
    if (targetType == type)
        return Copy(source);
    if (targetType == IMAGETYPE_RGBA32)
        return ConvertToRGBA32(source);
    if (targetType == IMAGETYPE_LUMINANCE8 && type == IMAGETYPE_PALETTE8)
        return LookUpBrightness(source);
    if (targetType == IMAGETYPE_PALETTE8 && (type == IMAGETYPE_RGBA32 || type == IMAGETYPE_RGB888))
        return Palettize(source);
    if (targetType == IMAGETYPE_RGBA4444 && type == IMAGETYPE_RGBA32)
        return ShrinkFromRGBA32<Image_RGBA4444>(source);
    if (targetType == IMAGETYPE_RGB888 && type == IMAGETYPE_RGBA32)
        return ShrinkFromRGBA32<Image_RGB888>(source);
    return nullptr;
}

// How a row or column of the source is shared out among that of the target: whole numbers, where a source pixel is as
// long as the target has pixels and the other way round.
struct Share {
    uint32_t from;
    uint32_t to;
    uint32_t weight;
};

std::vector<Share> MakeShares(uint32_t fromCount, uint32_t toCount) {
    std::vector<Share> shares;
    shares.reserve(fromCount + toCount);
    for (uint32_t from = 0, to = 0; from < fromCount && to < toCount;) {
        const uint32_t fromEnd = (from + 1) * toCount;
        const uint32_t toEnd = (to + 1) * fromCount;
        const uint32_t start = std::max(from * toCount, to * fromCount);
        shares.push_back({.from = from, .to = to, .weight = std::min(fromEnd, toEnd) - start});
        from += fromEnd <= toEnd;
        to += toEnd <= fromEnd;
    }
    return shares;
}

// The row's pixels shared out over the target's columns: four channels a column.
void SumRow(std::span<const uint8_t> row, std::span<const Share> shares, std::span<uint32_t> sums) {
    std::ranges::fill(sums, 0);
    for (const Share& share : shares)
        for (size_t channel = 0; channel < 4; ++channel)
            sums[size_t{share.to} * 4 + channel] += row[size_t{share.from} * 4 + channel] * share.weight;
}

} // namespace

std::unique_ptr<Image> Convert(ImageType targetType, const Image& source) {
    std::unique_ptr<Image> pResult = ConvertPair(targetType, source);
    if (!pResult)
        dbWarningf("Conversion not handled");
    return pResult;
}

std::unique_ptr<Image> Rescale(const Image& source, uint32_t width, uint32_t height) {
    if (source.GetType() != IMAGETYPE_RGBA32) {
        dbWarningf("Rescale not handled");
        return nullptr;
    }
    if (!Image::AreSidesAllowed(IMAGETYPE_RGBA32, width, height))
        return nullptr;
    std::unique_ptr<Image> pResult = Image::Create(IMAGETYPE_RGBA32, width, height);
    const std::vector<Share> columns = MakeShares(source.GetWidth(), width);
    const std::vector<Share> rows = MakeShares(source.GetHeight(), height);
    const size_t sourceRowSize = size_t{source.GetWidth()} * 4;
    const size_t rowSize = size_t{width} * 4;
    const uint64_t area = uint64_t{source.GetWidth()} * source.GetHeight();
    std::vector<uint32_t> rowSums(rowSize);
    std::vector<uint64_t> sums(rowSize, 0);
    for (uint32_t i = 0, summed = UINT32_MAX; i < rows.size(); ++i) {
        if (rows[i].from != summed)
            SumRow(source.GetData().subspan(rows[i].from * sourceRowSize, sourceRowSize), columns, rowSums);
        summed = rows[i].from;
        for (size_t k = 0; k < rowSize; ++k)
            sums[k] += uint64_t{rowSums[k]} * rows[i].weight;
        if (i + 1 < rows.size() && rows[i + 1].to == rows[i].to)
            continue;
        std::ranges::transform(sums, pResult->GetData().begin() + static_cast<std::ptrdiff_t>(rows[i].to * rowSize),
                               [area](uint64_t sum) { return static_cast<uint8_t>(sum / area); });
        std::ranges::fill(sums, 0);
    }
    return pResult;
}
