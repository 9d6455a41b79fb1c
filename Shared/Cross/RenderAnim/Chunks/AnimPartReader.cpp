#include "Shared/Cross/RenderAnim/Chunks/AnimPartReader.h"

#include <utility>

#include <glm/gtc/type_ptr.hpp>

#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"

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
        Fail("data of " + std::to_string(size) + " bytes is more than can be read");
    m_pBlock = AnimKeyBlock::Make(size);
    void* pBytes = m_pBlock->GetBytes().data();
    if (chunky.GetStream().Read(pBytes, size) != size)
        Fail("data is cut off");
    m_Rest = m_pBlock->GetBytes();
}

void AnimPartReader::Fail(const std::string& fault) const {
    throw Chunky::Exception(ChunkyError_BadChunk, m_What + ": " + fault);
}

const std::byte* AnimPartReader::ReadBytes(size_t size, const char* pField) {
    if (size > m_Rest.size())
        Fail(std::string(pField) + " goes beyond its chunk");
    const std::byte* pBytes = m_Rest.data();
    m_Rest = m_Rest.subspan(size);
    return pBytes;
}

glm::vec3 AnimPartReader::ReadVec3(const char* pField) {
    glm::vec3 v;
    std::memcpy(glm::value_ptr(v), ReadBytes(sizeof(v), pField), sizeof(v));
    return v;
}

std::string AnimPartReader::ReadString(const char* pField) {
    const auto length = Read<uint32_t>(pField);
    if (length > PayloadReader::MaxStringLength)
        throw ByteStream::Exception(0, "String buffer overrun!");
    const auto* pText = reinterpret_cast<const char*>(ReadBytes(length, pField));
    return {pText, strnlen(pText, length)};
}

uint32_t AnimPartReader::ReadCount(size_t leastBytes, const char* pField) {
    const auto count = Read<uint32_t>(pField);
    if (count > m_Rest.size() / leastBytes)
        Fail(std::string(pField) + ' ' + std::to_string(count) + " exceeds its chunk");
    return count;
}

template <class V>
std::unique_ptr<AnimStream<V>> AnimPartReader::ReadKeys(const char* pField) {
    using Stream = AnimStream<V>;
    const auto count = Read<uint32_t>(pField);
    if (count > m_Rest.size() / sizeof(AnimKey<V>))
        Fail(std::string(pField) + " count " + std::to_string(count) + " exceeds its chunk");
    if (count > Stream::MaxKeyCount)
        Fail(std::string(pField) + " count " + std::to_string(count) + " exceeds " +
             std::to_string(Stream::MaxKeyCount));
    if (count == 0)
        return nullptr;
    const std::byte* pBytes = ReadBytes(count * sizeof(AnimKey<V>), pField);
    auto pStream = std::make_unique<Stream>(m_pBlock);
    const std::span<AnimKey<V>> keys = pStream->SetKeyCount(count);
    // All that streams have taken of the block was read before, so that the keys move to the front and onto nothing
    // that is still to be read.
    std::memmove(static_cast<void*>(keys.data()), pBytes, keys.size_bytes());
    if (const size_t place = FindBackward<V>(keys); place != 0)
        Fail(std::string(pField) + ' ' + std::to_string(place) + " is earlier than the one before it");
    return pStream;
}

template std::unique_ptr<FloatStream> AnimPartReader::ReadKeys(const char* pField);
template std::unique_ptr<Vec3Stream> AnimPartReader::ReadKeys(const char* pField);
template std::unique_ptr<QuatStream> AnimPartReader::ReadKeys(const char* pField);
template std::unique_ptr<MatrixStream> AnimPartReader::ReadKeys(const char* pField);

} // namespace ra
