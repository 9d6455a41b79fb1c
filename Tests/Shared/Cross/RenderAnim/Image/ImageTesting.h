#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string_view>

#include "Shared/Cross/FileSystem/RamStream.h"
#include "Shared/Cross/RenderAnim/Image/ImageReaders.h"
#include "Shared/Cross/RenderAnim/Image/Palette.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/Cross/RenderAnim/Image/PictureBytes.h"

// Pixels without a pattern; the same at every run.
inline std::unique_ptr<Image> MakeRandomImage(ImageType type, uint32_t width, uint32_t height, uint32_t mipCount = 1,
                                              uint32_t seed = 1) {
    std::mt19937 random(seed);
    std::unique_ptr<Image> pImage = Image::Create(type, width, height, mipCount);
    for (uint32_t level = 0; level < mipCount; ++level)
        for (uint8_t& byte : pImage->GetData(level))
            byte = static_cast<uint8_t>(random());
    if (Image_Palette* pPaletted = ImageCast<Image_Palette>(pImage.get()))
        for (Colour& colour : pPaletted->GetPalette())
            colour = Colour::FromValue(static_cast<uint32_t>(random()));
    return pImage;
}

constexpr uint8_t Colour::*s_Channels[] = {&Colour::b, &Colour::g, &Colour::r, &Colour::a};

inline Bytes GetBytes(const Image& image) { return {image.GetData().begin(), image.GetData().end()}; }
inline Colour GetPixel(const Image& image, uint32_t x, uint32_t y, uint32_t level = 0) {
    return ImageCast<Image_RGBA32>(&image)->GetPixels(level)[size_t{y} * image.GetWidth(level) + x];
}

// All that an image is, but for its name.
inline bool HaveSameData(const Image& left, const Image& right) {
    if (left.GetType() != right.GetType() || left.GetMipCount() != right.GetMipCount() ||
        left.GetWidth() != right.GetWidth() || left.GetHeight() != right.GetHeight())
        return false;
    for (uint32_t level = 0; level < left.GetMipCount(); ++level)
        if (!std::ranges::equal(left.GetData(level), right.GetData(level)))
            return false;
    const Image_Palette* pLeft = ImageCast<Image_Palette>(&left);
    return !pLeft || pLeft->GetPalette() == ImageCast<Image_Palette>(&right)->GetPalette();
}

// Feeds readers with bytes in a block of their very size, so that a sanitizer sees a read of one byte too many.
class PictureReading : public testing::Test {
protected:
    using Reader = std::unique_ptr<Image> (*)(const ImageReaderArgs& args, uint32_t& outFlags);

    std::unique_ptr<Image> Read(Reader pReader, const Bytes& bytes, uint32_t levelsToSkip = 0) {
        const auto pBlock = std::make_unique<uint8_t[]>(bytes.size());
        std::ranges::copy(bytes, pBlock.get());
        RamStream stream;
        stream.Attach(pBlock.get(), static_cast<uint32_t>(bytes.size()), false, ByteStream::Mode_Read);
        m_Flags = 99;
        return pReader({.pStream = &stream, .pName = "DATA:pic", .levelsToSkip = levelsToSkip}, m_Flags);
    }

    // That the reader gives nothing and says this.
    void ExpectRefused(Reader pReader, const Bytes& bytes, std::string_view text) {
        ReportCapture capture;
        EXPECT_EQ(Read(pReader, bytes), nullptr) << text;
        EXPECT_EQ(capture.GetWarnings().size(), 1u) << text;
        EXPECT_TRUE(ReportCapture::HasWarning(text))
            << text << " expected, but: " << testing::PrintToString(capture.GetWarnings());
    }

    // A sound file cut to every size below its own, and with each of the values in it, of the type given.
    struct Fault {
        size_t offset;
        uint32_t value;
        const char* pText;
    };
    template <typename T>
    void ExpectFaultsRefused(Reader pReader, const Bytes& sound, std::initializer_list<Fault> faults) {
        for (size_t size = 1; size < sound.size(); ++size) {
            SCOPED_TRACE("cut to " + std::to_string(size));
            ExpectRefused(pReader, Bytes(sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(size)), "");
        }
        for (const auto& [offset, value, pText] : faults) {
            Bytes bytes = sound;
            Put(bytes, offset, static_cast<T>(value));
            ExpectRefused(pReader, bytes, pText);
        }
    }

    uint32_t m_Flags = 0;
};
