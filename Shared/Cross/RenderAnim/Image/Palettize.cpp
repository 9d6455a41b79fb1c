#include "Shared/Cross/RenderAnim/Image/Palettize.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Image/ImageConvert.h"

namespace {

constexpr size_t s_ChannelCount = 4;

// A pixel by its colour, or, once equal ones are brought together, a colour by its place.
struct Entry {
    uint32_t colour;
    uint32_t place;
};

uint8_t GetChannel(uint32_t colour, size_t channel) { return static_cast<uint8_t>(colour >> channel * 8); }

// Brings equal colours together. A radix sort, since a comparing one takes most of the time of the whole.
std::vector<Entry> SortByColour(std::span<const Colour> pixels) {
    constexpr uint32_t digitBits = 11;
    constexpr uint32_t digitCount = 3;
    constexpr uint32_t mask = (1u << digitBits) - 1;
    std::vector<Entry> entries(pixels.size());
    std::vector<Entry> sorted(pixels.size());
    std::array<std::array<uint32_t, mask + 1>, digitCount> starts{};
    for (size_t i = 0; i < pixels.size(); ++i) {
        entries[i] = {.colour = pixels[i].GetValue(), .place = static_cast<uint32_t>(i)};
        for (uint32_t digit = 0; digit < digitCount; ++digit)
            ++starts[digit][entries[i].colour >> digit * digitBits & mask];
    }
    for (uint32_t digit = 0; digit < digitCount; ++digit) {
        uint32_t start = 0;
        for (uint32_t& count : starts[digit])
            start += std::exchange(count, start);
        for (const Entry& entry : entries)
            sorted[starts[digit][entry.colour >> digit * digitBits & mask]++] = entry;
        entries.swap(sorted);
    }
    return entries;
}

// One of each colour, with the place where its pixels begin among the sorted ones.
std::vector<Entry> KeepOneOfEach(const std::vector<Entry>& sorted) {
    std::vector<Entry> colours;
    for (size_t i = 0; i < sorted.size(); ++i)
        if (i == 0 || sorted[i].colour != sorted[i - 1].colour)
            colours.push_back({.colour = sorted[i].colour, .place = static_cast<uint32_t>(i)});
    return colours;
}

// A box in the space of the four channels, no larger than the colours that it holds.
class ColourBox {
public:
    explicit ColourBox(std::span<Entry> colours) : m_Colours(colours) { Shrink(); }

    size_t GetCount() const { return m_Colours.size(); }
    uint32_t GetExtent(size_t channel) const { return uint32_t{m_Max[channel]} - m_Min[channel]; }
    std::span<const Entry> GetColours() const { return m_Colours; }
    Colour GetMiddle() const {
        const auto middle = [this](size_t channel) {
            return static_cast<uint8_t>((m_Min[channel] + m_Max[channel]) / 2);
        };
        return {.b = middle(0), .g = middle(1), .r = middle(2), .a = middle(3)};
    }

    // Keeps what lies up to the middle of the channel; the rest is the new box.
    ColourBox Cut(size_t channel) {
        const uint32_t cut = m_Min[channel] + GetExtent(channel) / 2;
        const auto above = std::partition(m_Colours.begin(), m_Colours.end(),
                                          [=](const Entry& entry) { return GetChannel(entry.colour, channel) <= cut; });
        const ColourBox rest{std::span<Entry>(above, m_Colours.end())};
        m_Colours = std::span<Entry>(m_Colours.begin(), above);
        Shrink();
        return rest;
    }

private:
    void Shrink() {
        m_Min.fill(255);
        m_Max.fill(0);
        for (const Entry& entry : m_Colours)
            for (size_t channel = 0; channel < s_ChannelCount; ++channel) {
                m_Min[channel] = std::min(m_Min[channel], GetChannel(entry.colour, channel));
                m_Max[channel] = std::max(m_Max[channel], GetChannel(entry.colour, channel));
            }
    }

    std::span<Entry> m_Colours;
    std::array<uint8_t, s_ChannelCount> m_Min;
    std::array<uint8_t, s_ChannelCount> m_Max;
};

std::vector<ColourBox> MakeBoxes(std::span<Entry> colours, size_t most) {
    std::vector<ColourBox> boxes = {ColourBox(colours)};
    const ColourBox* pBox = &boxes.front();
    dbAssertText(pBox->GetCount() != 0, "pBox->Count != 0");
    while (boxes.size() < most) {
        uint32_t extent = 0;
        size_t box = 0;
        size_t channel = 0;
        for (size_t i = 0; i < boxes.size(); ++i)
            for (size_t k = 0; k < s_ChannelCount; ++k)
                if (boxes[i].GetExtent(k) >= extent) {
                    extent = boxes[i].GetExtent(k);
                    box = i;
                    channel = k;
                }
        if (extent == 0)
            break;
        boxes.push_back(boxes[box].Cut(channel));
    }
    return boxes;
}

} // namespace

std::unique_ptr<Image_Palette> Palettize(const Image& source) {
    std::unique_ptr<Image> pConverted;
    if (source.GetType() != IMAGETYPE_RGBA32)
        pConverted = Convert(IMAGETYPE_RGBA32, source);
    const auto* pRGBA32 = ImageCast<Image_RGBA32>(pConverted ? pConverted.get() : &source);
    dbAssert(pRGBA32);
    if (!pRGBA32)
        return nullptr;
    auto pResult = std::make_unique<Image_Palette>();
    pResult->Resize(source.GetWidth(), source.GetHeight(), true);
    const std::vector<Entry> pixels = SortByColour(pRGBA32->GetPixels());
    std::vector<Entry> colours = KeepOneOfEach(pixels);
    const std::vector<ColourBox> boxes = MakeBoxes(colours, pResult->GetPalette().size());
    const std::span<uint8_t> indices = pResult->GetPixels();
    for (size_t i = 0; i < boxes.size(); ++i) {
        pResult->GetPalette()[i] = boxes[i].GetMiddle();
        // No two boxes share a colour.
        for (const Entry& entry : boxes[i].GetColours())
            for (size_t k = entry.place; k < pixels.size() && pixels[k].colour == entry.colour; ++k)
                indices[pixels[k].place] = static_cast<uint8_t>(i);
    }
    return pResult;
}
