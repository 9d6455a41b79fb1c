#include "Tests/Fuzz/Pattern/PatternInputs.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Image/Image.h"
#include "Shared/Cross/RenderAnim/Image/ImageChunks.h"
#include "Shared/Cross/TeamColour/Pattern.h"
#include "Shared/Cross/TeamColour/PatternLoad.h"
#include "Tests/Shared/Cross/FileSystem/ChunkBytes.h"

namespace {

std::unique_ptr<Image> MakeImage(ImageType type) {
    std::unique_ptr<Image> pImage = Image::Create(type, 4, 2);
    std::ranges::fill(pImage->GetData(), uint8_t{7});
    return pImage;
}

std::vector<uint8_t> MakeNewForm() {
    Pattern pattern;
    pattern.SetSize(4, 2);
    for (const int32_t layer : {Pattern::LAYER_PRIMARY, Pattern::LAYER_EYES, Pattern::LAYER_DIRT})
        pattern.SetLayer(layer, std::vector<uint8_t>(8, 9));
    pattern.SetDirtImage(MakeImage(IMAGETYPE_RGBA32));
    pattern.SetBadge({.x = 1, .y = 2, .width = 3, .height = 4});
    const std::unique_ptr<RamStream> pStream = MakeWriteStream();
    PatternLoad::Write(*pStream, pattern);
    return {pStream->GetBuffer(), pStream->GetBuffer() + pStream->GetLength()};
}

std::vector<uint8_t> MakeOldForm() {
    const std::unique_ptr<RamStream> pStream = MakeWriteStream();
    Chunky chunky{ByteStreamAdapter(pStream.get())};
    chunky.BeginFolder(FourCC("TPAT"), 2, "old");
    for (const uint32_t layer : {0u, 5u}) {
        chunky.BeginFolder(FourCC("PTLR"), 1);
        chunky.BeginData(FourCC("PTIN"), 2);
        chunky.GetStream().WriteValue(layer);
        chunky.EndChunk();
        WriteImage(chunky, *MakeImage(layer == 0 ? IMAGETYPE_RGBA4444 : IMAGETYPE_RGBA32));
        chunky.EndChunk();
    }
    chunky.EndChunk();
    return {pStream->GetBuffer(), pStream->GetBuffer() + pStream->GetLength()};
}

[[noreturn]] void Stop(const char* pReason) {
    std::fprintf(stderr, "%s\n", pReason);
    std::abort();
}

void UsePattern(const Pattern& pattern) {
    const std::unique_ptr<RamStream> pFirst = MakeWriteStream();
    PatternLoad::Write(*pFirst, pattern);
    Pattern again;
    PatternLoad::Read(*MakeReadStream(BytesOf(*pFirst)), again);
    const std::unique_ptr<RamStream> pSecond = MakeWriteStream();
    PatternLoad::Write(*pSecond, again);
    if (BytesOf(*pFirst) != BytesOf(*pSecond))
        Stop("a pattern that was read changed when it was written and read again");
}

} // namespace

std::vector<std::vector<uint8_t>> MakePatternSeeds() { return {MakeNewForm(), MakeOldForm()}; }

bool FeedPatternReader(std::span<const uint8_t> input) {
    // Images of several sizes fail an assertion, which costs a stack walk each time; stepped over they must do no harm.
    dbSetThrowOnAssert(true);
    const dbNoThrowScope stepOver;
    Pattern pattern;
    try {
        PatternLoad::Read(*MakeReadStream({reinterpret_cast<const char*>(input.data()), input.size()}), pattern);
    } catch (const Chunky::Exception&) {
        return false;
    } catch (const ByteStream::Exception&) {
        return false;
    } catch (const std::exception& exception) {
        Stop(exception.what());
    }
    UsePattern(pattern);
    return true;
}
