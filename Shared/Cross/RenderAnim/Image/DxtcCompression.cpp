#include "Shared/Cross/RenderAnim/Image/DxtcCompression.h"

#include <algorithm>
#include <array>
#include <cstring> // for stb_dxt too, which leaves it to others
#include <thread>
#include <vector>

#include <squish.h>

#define STB_DXT_STATIC
#define STB_DXT_IMPLEMENTATION
#include <stb_dxt.h>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Image/Pixelmap.h"
#include "Shared/Cross/RenderAnim/Image/SquishLibrary.h"

namespace {

using BlockPixels = std::array<uint8_t, 64>; // red, green, blue, alpha

struct Job {
    std::span<const Colour> pixels;
    uint32_t width;
    uint32_t height;
    ImageType format;
    std::span<uint8_t> blocks;
    bool thorough; // by squish
    int squishFlags;

    uint32_t GetBlockSize() const { return format == IMAGETYPE_DXT1 ? 8 : 16; }
    uint32_t GetColumns() const { return std::max(1u, width / s_DxtcBlockSide); }
    uint32_t GetRows() const { return std::max(1u, height / s_DxtcBlockSide); }
};

// A picture smaller than a block goes on with its last pixels.
BlockPixels GatherBlock(const Job& job, uint32_t column, uint32_t row) {
    BlockPixels block;
    uint8_t* pOut = block.data();
    for (uint32_t y = 0; y < s_DxtcBlockSide; ++y) {
        const size_t line = size_t{std::min(row * s_DxtcBlockSide + y, job.height - 1)} * job.width;
        for (uint32_t x = 0; x < s_DxtcBlockSide; ++x, pOut += 4) {
            const Colour colour = job.pixels[line + std::min(column * s_DxtcBlockSide + x, job.width - 1)];
            pOut[0] = colour.r;
            pOut[1] = colour.g;
            pOut[2] = colour.b;
            pOut[3] = colour.a;
        }
    }
    return block;
}

// DXT3's alpha: four bits a pixel, the nearest of sixteen.
void WriteSharpAlpha(const BlockPixels& pixels, uint8_t* pOut) {
    const auto nearest = [&pixels](size_t pixel) { return (pixels[pixel * 4 + 3] * 15 + 127) / 255; };
    for (size_t i = 0; i < 8; ++i)
        pOut[i] = static_cast<uint8_t>(nearest(i * 2) | nearest(i * 2 + 1) << 4);
}

void CompressFast(const BlockPixels& pixels, ImageType format, uint8_t* pBlock) {
    if (format == IMAGETYPE_DXT1) {
        stb_compress_dxt_block(pBlock, pixels.data(), 0, STB_DXT_NORMAL);
        return;
    }
    // The colours behind the alpha are the same in both.
    stb_compress_dxt_block(pBlock, pixels.data(), 1, STB_DXT_NORMAL);
    if (format == IMAGETYPE_DXT3)
        WriteSharpAlpha(pixels, pBlock);
}

void CompressRow(const Job& job, uint32_t row) {
    constexpr int allPixels = 0xFFFF;
    for (uint32_t column = 0; column < job.GetColumns(); ++column) {
        const BlockPixels pixels = GatherBlock(job, column, row);
        uint8_t* pBlock = &job.blocks[(size_t{row} * job.GetColumns() + column) * job.GetBlockSize()];
        if (job.thorough)
            SquishLibrary::Get().Compress(pixels.data(), allPixels, pBlock, job.squishFlags);
        else
            CompressFast(pixels, job.format, pBlock);
    }
}

// Every block depends on its pixels alone, so the threads can't show in the result.
void CompressOnThreads(const Job& job) {
    // Fewer blocks are done before a thread has started.
    constexpr uint32_t leastBlocks = 1024;
    const uint32_t wanted = std::min(job.GetRows() * job.GetColumns() / leastBlocks, job.GetRows());
    const uint32_t threadCount = std::min(std::max(wanted, 1u), std::max(std::thread::hardware_concurrency(), 1u));
    std::vector<std::jthread> threads;
    for (uint32_t i = 1; i < threadCount; ++i)
        threads.emplace_back([&job, i, threadCount] {
            for (uint32_t row = i; row < job.GetRows(); row += threadCount)
                CompressRow(job, row);
        });
    for (uint32_t row = 0; row < job.GetRows(); row += threadCount)
        CompressRow(job, row);
}

int GetSquishFlags(ImageType format, DxtcQuality quality) {
    const int fit = quality == DxtcQuality::Best ? squish::kColourClusterFit : squish::kColourRangeFit;
    switch (format) {
    case IMAGETYPE_DXT3:
        return squish::kDxt3 | fit;
    case IMAGETYPE_DXT5:
        return squish::kDxt5 | fit;
    default:
        return squish::kDxt1 | fit;
    }
}

// Half and more is opaque.
bool HasHoles(std::span<const Colour> pixels) {
    return std::ranges::any_of(pixels, [](Colour colour) { return colour.a < 128; });
}

bool NeedsSquish(std::span<const Colour> pixels, ImageType format, DxtcQuality quality) {
    return quality == DxtcQuality::Best || (format == IMAGETYPE_DXT1 && HasHoles(pixels));
}

} // namespace

bool DXTC_DoCompression(std::span<const Colour> pixels, uint32_t width, uint32_t height, ImageType format,
                        std::span<uint8_t> blocks, DxtcQuality quality) {
    if (!Image::IsTypeCompressed(format)) {
        dbWarningf("Unsupported DXTC format! %d", static_cast<int>(format));
        return false;
    }
    if (!Image::AreSidesAllowed(format, width, height) || pixels.size() != size_t{width} * height ||
        blocks.size() != Image::GetSizeFor(format, width, height)) {
        dbWarningf("TEXTURES -- %ux%u pixels can't be compressed: sides are powers of two up to %u", width, height,
                   Image::MaxSide);
        return false;
    }
    const bool thorough = NeedsSquish(pixels, format, quality);
    if (thorough && !SquishLibrary::Get().IsLoaded()) {
        dbWarningf("TEXTURES -- the compression needs a library that can't be loaded: %s",
                   SquishLibrary::Get().GetError().c_str());
        return false;
    }
    const Job job = {.pixels = pixels,
                     .width = width,
                     .height = height,
                     .format = format,
                     .blocks = blocks,
                     .thorough = thorough,
                     .squishFlags = GetSquishFlags(format, quality)};
    CompressOnThreads(job);
    return true;
}

std::unique_ptr<Image> CompressImage(const Image& source, ImageType format, DxtcQuality quality) {
    const Image_RGBA32* pSource = ImageCast<Image_RGBA32>(&source);
    if (!pSource) {
        dbWarningf("TEXTURES -- an image of type %u can't be compressed", source.GetType());
        return nullptr;
    }
    std::unique_ptr<Image> pResult;
    if (Image::AreSidesAllowed(format, source.GetWidth(), source.GetHeight()) && Image::IsTypeCompressed(format))
        pResult = Image::Create(format, source.GetWidth(), source.GetHeight(), source.GetMipCount());
    for (uint32_t level = 0; level < source.GetMipCount(); ++level)
        if (!DXTC_DoCompression(pSource->GetPixels(level), source.GetWidth(level), source.GetHeight(level), format,
                                pResult ? pResult->GetData(level) : std::span<uint8_t>(), quality))
            return nullptr;
    return pResult;
}
