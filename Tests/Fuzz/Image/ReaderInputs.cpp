#include "Tests/Fuzz/Image/ReaderInputs.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/RamStream.h"
#include "Shared/Cross/RenderAnim/Image/ImageChunks.h"
#include "Shared/Cross/RenderAnim/Image/ImageReaders.h"
#include "Shared/Cross/RenderAnim/Image/Palette.h"
#include "Tests/Shared/Cross/RenderAnim/Image/PictureBytes.h"

namespace {

Bytes MakeChunk(ImageType type, uint32_t width, uint32_t height, uint32_t mipCount) {
    const std::unique_ptr<Image> pImage = Image::Create(type, width, height, mipCount);
    for (uint32_t level = 0; level < mipCount; ++level)
        std::ranges::fill(pImage->GetData(level), uint8_t{7});
    RamStream stream;
    stream.Create(64, ByteStream::Mode_Write);
    Chunky chunky{ByteStreamAdapter(&stream)};
    WriteImage(chunky, *pImage);
    return {stream.GetBuffer(), stream.GetBuffer() + stream.GetLength()};
}

// The bytes that a picture may take for each of its file: a JPEG's block of 8 by 8 pixels takes a bit, a pixel of a
// BMP half a byte and 3 in the image 4.
size_t GetMostGrowth(FuzzedReader reader) { return reader == FuzzedReader::Jpeg ? 8 * 8 * 8 * 4 : 2; }

std::unique_ptr<Image> ReadChunk(ByteStream& stream) {
    try {
        Chunky chunky{ByteStreamAdapter(&stream)};
        return ReadImage(chunky);
    } catch (const Chunky::Exception&) {
        return nullptr;
    } catch (const ByteStream::Exception&) {
        return nullptr;
    }
}

std::unique_ptr<Image> Read(FuzzedReader reader, ByteStream& stream, uint32_t levelsToSkip) {
    const ImageReaderArgs args = {.pStream = &stream, .pName = "DATA:fuzz", .levelsToSkip = levelsToSkip};
    uint32_t flags = 0;
    switch (reader) {
    case FuzzedReader::Dds:
        return ReadDds(args, flags);
    case FuzzedReader::Jpeg:
        return ReadJpeg(args, flags);
    case FuzzedReader::Tga:
        return ReadTga(args, flags);
    case FuzzedReader::Bmp:
        return ReadBmp(args, flags);
    case FuzzedReader::Bw:
        return ReadBw(args, flags);
    case FuzzedReader::Chunk:
        return ReadChunk(stream);
    }
    return nullptr;
}

// Every byte, so that a sanitizer sees a level of a wrong size.
void UseImage(FuzzedReader reader, const Image& image, size_t inputSize) {
    uint32_t sum = 0;
    for (uint32_t level = 0; level < image.GetMipCount(); ++level)
        for (const uint8_t byte : image.GetData(level))
            sum = sum * 31 + byte;
    [[maybe_unused]] static volatile uint32_t s_Sum;
    s_Sum = sum;
    if (!Image::AreSidesAllowed(image.GetType(), image.GetWidth(), image.GetHeight()) ||
        image.GetTotalSize() > (inputSize + 1) * GetMostGrowth(reader)) {
        std::fprintf(stderr, "%zu bytes of file gave %ux%u pixels of type %u\n", inputSize, image.GetWidth(),
                     image.GetHeight(), image.GetType());
        std::abort();
    }
}

} // namespace

std::vector<Bytes> MakeSeeds(FuzzedReader reader) {
    switch (reader) {
    case FuzzedReader::Dds:
        return {MakeDds(8, 8, '1'), MakeDds(16, 8, '3', 5), MakeDds(4, 16, '5', 3)};
    case FuzzedReader::Jpeg:
        return {MakeGreyJpeg(), MakeProgressiveJpeg()};
    case FuzzedReader::Tga:
        return {MakeTga(5, 3, 24, 6), MakeTga(3, 4, 32)};
    case FuzzedReader::Bmp:
        return {MakeBmp(5, 3, 4), MakeBmp(5, -3, 8, 9), MakeBmp(3, 4, 24), MakeBmp(2, 3, 32)};
    case FuzzedReader::Bw:
        return {MakeBw(7, 5)};
    case FuzzedReader::Chunk:
        return {MakeChunk(IMAGETYPE_RGBA32, 4, 4, 3), MakeChunk(IMAGETYPE_PALETTE8, 4, 2, 2),
                MakeChunk(IMAGETYPE_DXT5, 8, 4, 4)};
    }
    return {};
}

bool FeedReader(FuzzedReader reader, std::span<const uint8_t> input) {
    dbSetThrowOnAssert(true);
    // A block of its own, so that a sanitizer sees a read of one byte too many.
    const auto pBlock = std::make_unique<uint8_t[]>(input.size() + 1);
    std::ranges::copy(input, pBlock.get());
    RamStream stream;
    stream.Attach(pBlock.get(), static_cast<uint32_t>(input.size()), false, ByteStream::Mode_Read);
    try {
        const uint32_t levelsToSkip = input.empty() ? 0 : input.back() % 4u;
        const std::unique_ptr<Image> pImage = Read(reader, stream, levelsToSkip);
        if (pImage)
            UseImage(reader, *pImage, input.size());
        return pImage != nullptr;
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "the reader threw: %s\n", exception.what());
        std::abort();
    }
}
