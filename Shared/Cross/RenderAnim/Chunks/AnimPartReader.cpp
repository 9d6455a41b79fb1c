#include "Shared/Cross/RenderAnim/Chunks/AnimPartReader.h"

#include <cstring>

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

void AnimPartReader::Fail(const std::string& fault) const {
    throw Chunky::Exception(ChunkyError_BadChunk, m_What + ": " + fault);
}

void AnimPartReader::ReadBytes(void* pTarget, size_t size, const char* pField) {
    const auto bytes = static_cast<uint32_t>(size); // held against the chunk
    if (m_Remaining < size || m_Stream.Read(pTarget, bytes) != bytes)
        Fail(std::string(pField) + " goes beyond its chunk");
    m_Remaining -= bytes;
}

glm::vec3 AnimPartReader::ReadVec3(const char* pField) {
    glm::vec3 v;
    ReadBytes(glm::value_ptr(v), sizeof(v), pField);
    return v;
}

std::string AnimPartReader::ReadString(const char* pField) {
    const auto length = Read<uint32_t>(pField);
    if (length > PayloadReader::MaxStringLength)
        throw ByteStream::Exception(0, "String buffer overrun!");
    std::string text(length, '\0');
    ReadBytes(text.data(), length, pField);
    text.resize(strnlen(text.data(), length));
    return text;
}

uint32_t AnimPartReader::ReadCount(size_t leastBytes, const char* pField) {
    const auto count = Read<uint32_t>(pField);
    if (count > m_Remaining / leastBytes)
        Fail(std::string(pField) + ' ' + std::to_string(count) + " exceeds its chunk");
    return count;
}

template <class V>
std::unique_ptr<AnimStream<V>> AnimPartReader::ReadKeys(const char* pField) {
    using Stream = AnimStream<V>;
    const auto count = Read<uint32_t>(pField);
    if (count > m_Remaining / sizeof(AnimKey<V>))
        Fail(std::string(pField) + " count " + std::to_string(count) + " exceeds its chunk");
    if (count > Stream::MaxKeyCount)
        Fail(std::string(pField) + " count " + std::to_string(count) + " exceeds " +
             std::to_string(Stream::MaxKeyCount));
    if (count == 0)
        return nullptr;
    auto pStream = std::make_unique<Stream>(m_pKeyBlock);
    const std::span<AnimKey<V>> keys = pStream->SetKeyCount(count);
    ReadBytes(static_cast<void*>(keys.data()), keys.size_bytes(), pField);
    if (const size_t place = FindBackward<V>(keys); place != 0)
        Fail(std::string(pField) + ' ' + std::to_string(place) + " is earlier than the one before it");
    return pStream;
}

template std::unique_ptr<FloatStream> AnimPartReader::ReadKeys(const char* pField);
template std::unique_ptr<Vec3Stream> AnimPartReader::ReadKeys(const char* pField);
template std::unique_ptr<QuatStream> AnimPartReader::ReadKeys(const char* pField);
template std::unique_ptr<MatrixStream> AnimPartReader::ReadKeys(const char* pField);

} // namespace ra
