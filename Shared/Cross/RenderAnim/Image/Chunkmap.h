#pragma once

#include <cstdint>
#include <span>

#include "Shared/Cross/RenderAnim/Image/Image.h"

// One compressed block of 4 by 4 pixels.
struct Chunk_S3TC_64 {
    uint8_t bytes[8];
};
struct Chunk_S3TC_128 {
    uint8_t bytes[16];
};

// The part of all images of blocks that doesn't depend on the kind of block.
class Image_ChunkmapBase : public Image {
public:
    // Always fails: pixels don't have places of their own here.
    bool Blt(const Image& source, const ImageRect& from, uint32_t x, uint32_t y) override;

protected:
    Image_ChunkmapBase(ImageType type, uint32_t chunkSize, uint32_t chunkWidth, uint32_t chunkHeight)
        : Image(type, chunkSize * 8 / (chunkWidth * chunkHeight)), m_ChunkSize(chunkSize), m_ChunkWidth(chunkWidth),
          m_ChunkHeight(chunkHeight) {}
    Grid GetGrid(uint32_t width, uint32_t height) const override;

private:
    uint32_t m_ChunkSize;
    uint32_t m_ChunkWidth;
    uint32_t m_ChunkHeight;
};

// Sides are powers of two. A level that is smaller than a block still takes a whole one.
template <class ChunkType, ImageType ImageTypeNumber, uint32_t ChunkWidth, uint32_t ChunkHeight>
class Image_Chunkmap : public Image_ChunkmapBase {
public:
    using Chunk = ChunkType;
    static constexpr ImageType Type = ImageTypeNumber;

    Image_Chunkmap() : Image_ChunkmapBase(Type, sizeof(Chunk), ChunkWidth, ChunkHeight) {}

    // Row of blocks by row of blocks. Good until the levels change.
    std::span<const Chunk> GetChunks(uint32_t level = 0) const {
        const std::span<const uint8_t> data = GetData(level);
        return {reinterpret_cast<const Chunk*>(data.data()), data.size() / sizeof(Chunk)};
    }
};

using Image_DXT1 = Image_Chunkmap<Chunk_S3TC_64, IMAGETYPE_DXT1, 4, 4>;
using Image_DXT3 = Image_Chunkmap<Chunk_S3TC_128, IMAGETYPE_DXT3, 4, 4>;
using Image_DXT5 = Image_Chunkmap<Chunk_S3TC_128, IMAGETYPE_DXT5, 4, 4>;
