#include "Shared/Cross/RenderAnim/Image/MipMap.h"

#include <algorithm>
#include <array>
#include <vector>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Image/ImageReaderUtil.h"
#include "Shared/Cross/RenderAnim/Image/Palette.h"

namespace {

// The mean of four colours, each channel rounded down. Two channels at a time: they lie 16 bits apart, and the sum of
// four bytes needs 10.
uint32_t GetMean(uint32_t a, uint32_t b, uint32_t c, uint32_t d) {
    constexpr uint32_t mask = 0x00FF00FF;
    const uint32_t low = (a & mask) + (b & mask) + (c & mask) + (d & mask);
    const uint32_t high = (a >> 8 & mask) + (b >> 8 & mask) + (c >> 8 & mask) + (d >> 8 & mask);
    return (low >> 2 & mask) | (high >> 2 & mask) << 8;
}

bool IsEven(const Image& image, uint32_t level) {
    return image.GetWidth(level) % 2 == 0 && image.GetHeight(level) % 2 == 0;
}

void ReduceColours(std::span<const Colour> source, uint32_t width, std::span<Colour> target) {
    const size_t columns = width / 2;
    for (size_t first = 0; first < target.size(); first += columns) {
        const auto* pUpper = reinterpret_cast<const uint8_t*>(&source[first * 4]);
        const uint8_t* pLower = pUpper + size_t{width} * 4;
        auto* pOut = reinterpret_cast<uint8_t*>(&target[first]);
        for (size_t x = 0; x < columns; ++x) {
            const uint32_t mean = GetMean(GetLittle<uint32_t>(pUpper + x * 8), GetLittle<uint32_t>(pUpper + x * 8 + 4),
                                          GetLittle<uint32_t>(pLower + x * 8), GetLittle<uint32_t>(pLower + x * 8 + 4));
            std::memcpy(pOut + x * 4, &mean, sizeof(mean));
        }
    }
}

// Finds the palette entry nearest to a colour. Pictures repeat their colours, so the answers are kept.
class NearestEntry {
public:
    explicit NearestEntry(const ImagePalette& palette) {
        for (size_t i = 0; i < palette.size(); ++i) {
            m_Blue[i] = palette[i].b;
            m_Green[i] = palette[i].g;
            m_Red[i] = palette[i].r;
            m_Alpha[i] = palette[i].a;
        }
    }

    uint8_t Find(uint32_t colour) {
        Answer& answer = m_Answers[colour * 0x9E3779B1u >> (32 - s_AnswerBits)];
        if (!answer.isThere || answer.colour != colour)
            answer = {.colour = colour, .index = Search(Colour::FromValue(colour)), .isThere = true};
        return answer.index;
    }

private:
    static constexpr int s_AnswerBits = 12;
    struct Answer {
        uint32_t colour = 0;
        uint8_t index = 0;
        bool isThere = false;
    };

    // Distance and index in one number, so that the least number is the lowest index of the nearest. The largest
    // distance, four times 255 squared, is below the bound of 1000000 from which a search could come back with nothing.
    uint8_t Search(Colour colour) const {
        std::array<int32_t, 256> keys;
        for (int32_t i = 0; i < 256; ++i) {
            const auto k = static_cast<size_t>(i);
            const int32_t blue = m_Blue[k] - colour.b;
            const int32_t green = m_Green[k] - colour.g;
            const int32_t red = m_Red[k] - colour.r;
            const int32_t alpha = m_Alpha[k] - colour.a;
            keys[k] = (blue * blue + green * green + red * red + alpha * alpha) * 256 + i;
        }
        return static_cast<uint8_t>(*std::ranges::min_element(keys) & 0xFF);
    }

    std::array<int32_t, 256> m_Blue;
    std::array<int32_t, 256> m_Green;
    std::array<int32_t, 256> m_Red;
    std::array<int32_t, 256> m_Alpha;
    std::vector<Answer> m_Answers = std::vector<Answer>(size_t{1} << s_AnswerBits);
};

void ReduceIndices(std::span<const uint8_t> source, uint32_t width, const ImagePalette& palette,
                   std::span<uint8_t> target) {
    NearestEntry nearest(palette);
    const size_t columns = width / 2;
    const auto look = [&](size_t i) { return palette[source[i]].GetValue(); };
    for (size_t i = 0; i < target.size(); ++i) {
        const size_t upper = i / columns * 2 * width + i % columns * 2;
        const size_t lower = upper + width;
        target[i] = nearest.Find(GetMean(look(upper), look(upper + 1), look(lower), look(lower + 1)));
    }
}

// From a level of the source to one of the target, which is half as large. Both are of one type, which can be reduced.
void Reduce(const Image& source, uint32_t sourceLevel, Image& target, uint32_t targetLevel) {
    const uint32_t width = source.GetWidth(sourceLevel);
    if (const Image_RGBA32* pSource = ImageCast<Image_RGBA32>(&source)) {
        Image_RGBA32* pTarget = ImageCast<Image_RGBA32>(&target);
        ReduceColours(pSource->GetPixels(sourceLevel), width, pTarget->GetPixels(targetLevel));
    } else if (const Image_Palette* pPaletted = ImageCast<Image_Palette>(&source)) {
        ReduceIndices(pPaletted->GetPixels(sourceLevel), width, pPaletted->GetPalette(), target.GetData(targetLevel));
    }
}

bool CheckEven(const Image& image) {
    if (IsEven(image, 0))
        return true;
    dbWarningf("CreateMipMap only handles images with even width & height");
    return false;
}

bool CheckType(const Image& image) {
    if (image.GetType() == IMAGETYPE_RGBA32 || image.GetType() == IMAGETYPE_PALETTE8)
        return true;
    dbWarningf("CreateMipMap: Unsupported image type (only supports 32bit or paletted textures)");
    return false;
}

} // namespace

std::unique_ptr<Image> CreateMipMap(const Image& source) {
    if (!CheckType(source) || !CheckEven(source))
        return nullptr;
    std::unique_ptr<Image> pResult = Image::Create(source.GetType(), source.GetWidth(1), source.GetHeight(1));
    Reduce(source, 0, *pResult, 0);
    if (const Image_Palette* pPaletted = ImageCast<Image_Palette>(&source))
        ImageCast<Image_Palette>(pResult.get())->GetPalette() = pPaletted->GetPalette();
    return pResult;
}

bool CreateMipMapInPlace(Image& image) {
    if (image.GetType() != IMAGETYPE_RGBA32) {
        dbWarningf("CreateMipMap only handles IMAGETYPE_RGBA32");
        return false;
    }
    if (!CheckEven(image))
        return false;
    image.SetMipCount(2);
    Reduce(image, 0, image, 1);
    image.DropFirstLevel();
    return true;
}

uint32_t CreateMipLevels(Image& image, uint32_t mipCount) {
    if (mipCount < 2 || !CheckType(image)) {
        image.SetMipCount(1);
        return 1;
    }
    uint32_t levels = 1;
    while (levels < mipCount && IsEven(image, levels - 1))
        ++levels;
    image.SetMipCount(levels);
    for (uint32_t level = 1; level < levels; ++level)
        Reduce(image, level - 1, image, level);
    return levels;
}
