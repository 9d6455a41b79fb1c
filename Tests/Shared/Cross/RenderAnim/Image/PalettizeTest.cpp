#include "Shared/Cross/RenderAnim/Image/Palettize.h"

#include <array>
#include <set>
#include <stdexcept>

#include "Shared/Cross/RenderAnim/Image/ImageConvert.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"

namespace {

using Channels = std::array<int, 4>; // blue, green, red, alpha

Channels Split(Colour colour) { return {colour.b, colour.g, colour.r, colour.a}; }

// A box by its bounds; what it holds is looked up among all colours each time.
struct Box {
    Channels low;
    Channels high;

    bool Holds(const Channels& colour) const {
        for (size_t i = 0; i < 4; ++i)
            if (colour[i] < low[i] || colour[i] > high[i])
                return false;
        return true;
    }
    void Shrink(const std::set<Channels>& colours) {
        Box fit{{255, 255, 255, 255}, {0, 0, 0, 0}};
        for (const Channels& colour : colours)
            if (Holds(colour))
                for (size_t i = 0; i < 4; ++i) {
                    fit.low[i] = std::min(fit.low[i], colour[i]);
                    fit.high[i] = std::max(fit.high[i], colour[i]);
                }
        *this = fit;
    }
};

std::vector<Box> ReferenceBoxes(const std::set<Channels>& colours) {
    std::vector<Box> boxes = {{{0, 0, 0, 0}, {255, 255, 255, 255}}};
    boxes[0].Shrink(colours);
    while (boxes.size() < 256) {
        int extent = 0;
        size_t box = 0;
        size_t channel = 0;
        for (size_t i = 0; i < boxes.size(); ++i)
            for (size_t k = 0; k < 4; ++k)
                if (boxes[i].high[k] - boxes[i].low[k] >= extent) {
                    extent = boxes[i].high[k] - boxes[i].low[k];
                    box = i;
                    channel = k;
                }
        if (extent == 0)
            break;
        Box rest = boxes[box];
        const int cut = boxes[box].low[channel] + extent / 2;
        boxes[box].high[channel] = cut;
        rest.low[channel] = cut + 1;
        boxes[box].Shrink(colours);
        rest.Shrink(colours);
        boxes.push_back(rest);
    }
    return boxes;
}

void ExpectLikeReference(const Image& source) {
    const std::span<const Colour> pixels = ImageCast<Image_RGBA32>(&source)->GetPixels();
    std::set<Channels> colours;
    for (const Colour pixel : pixels)
        colours.insert(Split(pixel));
    const std::vector<Box> boxes = ReferenceBoxes(colours);
    const std::unique_ptr<Image_Palette> pResult = Palettize(source);
    for (size_t i = 0; i < 256; ++i) {
        Channels middle{};
        for (size_t k = 0; k < 4 && i < boxes.size(); ++k)
            middle[k] = (boxes[i].low[k] + boxes[i].high[k]) / 2;
        EXPECT_EQ(Split(pResult->GetPalette()[i]), middle) << i;
    }
    for (size_t i = 0; i < pixels.size(); ++i) {
        size_t first = 0;
        while (!boxes[first].Holds(Split(pixels[i])))
            ++first;
        ASSERT_EQ(pResult->GetPixels()[i], first) << i;
    }
}

} // namespace

TEST(Palettize, CutsAsThePlainFormDoes) {
    for (uint32_t seed = 1; seed <= 5; ++seed) {
        const std::unique_ptr<Image> pSource = MakeRandomImage(IMAGETYPE_RGBA32, 40, 25, 1, seed);
        for (Colour& colour : ImageCast<Image_RGBA32>(pSource.get())->GetPixels()) {
            if (seed == 2)
                colour.a = 255;
            if (seed >= 3) // few colours, many ties
                colour = Colour::FromValue(colour.GetValue() & (0x03030303u << seed));
            if (seed == 5)
                colour.g = colour.b;
        }
        ExpectLikeReference(*pSource);
    }
}

TEST(Palettize, FewColoursAreExact) {
    const std::unique_ptr<Image> pSource = MakeRandomImage(IMAGETYPE_RGBA32, 64, 64);
    std::array<Colour, 256> colours;
    std::ranges::copy(ImageCast<Image_RGBA32>(pSource.get())->GetPixels().first(256), colours.begin());
    for (Colour& colour : ImageCast<Image_RGBA32>(pSource.get())->GetPixels())
        colour = colours[colour.r];
    EXPECT_TRUE(HaveSameData(*Convert(IMAGETYPE_RGBA32, *Palettize(*pSource)), *pSource));
    const std::unique_ptr<Image> pPixel = MakeRandomImage(IMAGETYPE_RGBA32, 1, 1);
    EXPECT_TRUE(HaveSameData(*Convert(IMAGETYPE_RGBA32, *Palettize(*pPixel)), *pPixel));
}

TEST(Palettize, OthersAreConvertedFirst) {
    const std::unique_ptr<Image> pSource = MakeRandomImage(IMAGETYPE_RGB565, 16, 8);
    EXPECT_TRUE(HaveSameData(*Palettize(*pSource), *Palettize(*Convert(IMAGETYPE_RGBA32, *pSource))));
    ReportCapture capture;
    EXPECT_THROW(Palettize(*MakeRandomImage(IMAGETYPE_DXT1, 4, 4)), std::runtime_error);
    EXPECT_TRUE(ReportCapture::HasWarning("Conversion not handled"));
}
