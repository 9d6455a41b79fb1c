#include "Shared/Cross/RenderAnim/Image/Palettize.h"

#include <array>
#include <set>
#include <stdexcept>

#include "Shared/Cross/RenderAnim/Image/ImageConvert.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"

namespace {

using Channels = std::array<int, 4>; // blue, green, red, alpha
using Box = std::set<Channels>;      // by the colours in it

Channels Split(Colour colour) { return {colour.b, colour.g, colour.r, colour.a}; }

// The least and the largest of a channel.
std::pair<int, int> GetBounds(const Box& box, size_t channel) {
    std::pair<int, int> bounds = {255, 0};
    for (const Channels& colour : box)
        bounds = {std::min(bounds.first, colour[channel]), std::max(bounds.second, colour[channel])};
    return bounds;
}

std::vector<Box> ReferenceBoxes(const Box& colours) {
    std::vector<Box> boxes = {colours};
    while (boxes.size() < 256) {
        int extent = 0;
        size_t box = 0;
        size_t channel = 0;
        for (size_t i = 0; i < boxes.size(); ++i)
            for (size_t k = 0; k < 4; ++k)
                if (const auto [low, high] = GetBounds(boxes[i], k); high - low >= extent) {
                    extent = high - low;
                    box = i;
                    channel = k;
                }
        if (extent == 0)
            break;
        const int cut = GetBounds(boxes[box], channel).first + extent / 2;
        Box rest;
        std::erase_if(boxes[box],
                      [&](const Channels& colour) { return colour[channel] > cut && rest.insert(colour).second; });
        boxes.push_back(rest);
    }
    return boxes;
}

void ExpectLikeReference(const Image& source) {
    const std::span<const Colour> pixels = ImageCast<Image_RGBA32>(&source)->GetPixels();
    Box colours;
    for (const Colour pixel : pixels)
        colours.insert(Split(pixel));
    const std::vector<Box> boxes = ReferenceBoxes(colours);
    const std::unique_ptr<Image_Palette> pResult = Palettize(source);
    for (size_t i = 0; i < 256; ++i) {
        Channels middle{};
        for (size_t k = 0; k < 4 && i < boxes.size(); ++k)
            middle[k] = (GetBounds(boxes[i], k).first + GetBounds(boxes[i], k).second) / 2;
        EXPECT_EQ(Split(pResult->GetPalette()[i]), middle) << i;
    }
    for (size_t i = 0; i < pixels.size(); ++i)
        ASSERT_TRUE(boxes.at(pResult->GetPixels()[i]).contains(Split(pixels[i]))) << i;
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
