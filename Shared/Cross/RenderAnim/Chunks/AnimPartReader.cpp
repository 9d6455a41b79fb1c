#include "Shared/Cross/RenderAnim/Chunks/AnimPartReader.h"

#include <cstring>
#include <utility>

namespace ra {

namespace {

bool IsOrdered(float before, float time) { return before <= time; }

// The first key that is earlier than the one before it; 0 without one. Sound streams cost no branch a key.
template <class V>
size_t FindBackward(std::span<const AnimKey<V>> keys) {
    bool isOrdered = true;
    for (size_t i = 1; i < keys.size(); ++i)
        isOrdered &= IsOrdered(keys[i - 1].time, keys[i].time);
    size_t place = 1;
    while (!isOrdered && IsOrdered(keys[place - 1].time, keys[place].time))
        ++place;
    return isOrdered ? 0 : place;
}

} // namespace

AnimPartReader::AnimPartReader(Chunky& chunky, std::string what) : m_What(std::move(what)) {
    // The container has held the size against the stream.
    const uint32_t size = chunky.GetRemaining();
    if (size >= s_MMSizeLimit)
        Fail("data", "of " + std::to_string(size) + " bytes is more than can be read");
    m_pBlock = AnimKeyBlock::Make(size);
    ReadPayload(chunky, m_pBlock->GetBytes());
}

template <class V>
std::unique_ptr<AnimStream<V>> AnimPartReader::ReadKeys(const char* pField) {
    using Stream = AnimStream<V>;
    const auto count = Read<uint32_t>(pField);
    if (count > GetRemaining() / sizeof(AnimKey<V>))
        Fail(pField, "count " + std::to_string(count) + " exceeds its chunk");
    if (count > Stream::MaxKeyCount)
        Fail(pField, "count " + std::to_string(count) + " exceeds " + std::to_string(Stream::MaxKeyCount));
    if (count == 0)
        return nullptr;
    const std::span<const std::byte> bytes = ReadBytes(count * sizeof(AnimKey<V>), pField);
    auto pStream = std::make_unique<Stream>(m_pBlock);
    const std::span<AnimKey<V>> keys = pStream->SetKeyCount(count);
    // All that streams have taken of the block was read before, so that the keys move to the front and onto nothing
    // that is still to be read.
    std::memmove(static_cast<void*>(keys.data()), bytes.data(), bytes.size());
    if (const size_t place = FindBackward<V>(keys); place != 0)
        Fail(pField, std::to_string(place) + " is earlier than the one before it");
    return pStream;
}

template std::unique_ptr<FloatStream> AnimPartReader::ReadKeys(const char* pField);
template std::unique_ptr<Vec3Stream> AnimPartReader::ReadKeys(const char* pField);
template std::unique_ptr<QuatStream> AnimPartReader::ReadKeys(const char* pField);
template std::unique_ptr<MatrixStream> AnimPartReader::ReadKeys(const char* pField);

} // namespace ra
