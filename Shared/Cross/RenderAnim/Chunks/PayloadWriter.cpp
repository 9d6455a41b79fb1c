#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include <glm/gtc/type_ptr.hpp>

namespace {

constexpr size_t s_FirstCapacity = size_t{64} * 1024; // a mesh of a thousand vertices

std::span<const std::byte> BytesOf(const float* pFloats, size_t count) {
    return std::as_bytes(std::span<const float>(pFloats, count));
}

} // namespace

std::span<std::byte> PayloadWriter::Append(size_t size) {
    if (size > m_Capacity - m_Size)
        Grow(m_Size + size);
    std::byte* pPlace = m_pBytes.get() + m_Size;
    m_Size += size;
    return {pPlace, size};
}

void PayloadWriter::Grow(size_t size) {
    const size_t capacity = std::max({size, m_Capacity * 2, s_FirstCapacity});
    auto pBytes = std::make_unique_for_overwrite<std::byte[]>(capacity);
    std::copy_n(m_pBytes.get(), m_Size, pBytes.get());
    m_pBytes = std::move(pBytes);
    m_Capacity = capacity;
}

void PayloadWriter::WriteBytes(std::span<const std::byte> bytes) {
    if (!bytes.empty())
        std::memcpy(Append(bytes.size()).data(), bytes.data(), bytes.size());
}

void PayloadWriter::WriteString(const char* pText) {
    const size_t length = pText ? std::strlen(pText) : 0;
    Write(static_cast<uint32_t>(length));
    WriteBytes(std::as_bytes(std::span<const char>(pText, length)));
}

void PayloadWriter::WriteVec3(const glm::vec3& v) { WriteBytes(BytesOf(glm::value_ptr(v), 3)); }

void PayloadWriter::WriteQuat(const glm::quat& q) {
    // The order in memory is a setting of the library, the one in files isn't.
    const float values[] = {q.x, q.y, q.z, q.w};
    WriteBytes(BytesOf(values, 4));
}

void PayloadWriter::WriteMat43(const glm::mat4x3& m) { WriteBytes(BytesOf(glm::value_ptr(m), 12)); }

void PayloadWriter::WriteMat4(const glm::mat4& m) { WriteBytes(BytesOf(glm::value_ptr(m), 16)); }

void PayloadWriter::WriteChunk(Chunky& chunky, uint32_t id, uint32_t version, const char* pName) {
    if (m_Size > std::numeric_limits<uint32_t>::max())
        throw std::runtime_error("a chunk of more than 4 GB can't be written");
    const auto size = static_cast<uint32_t>(m_Size);
    m_Size = 0;
    chunky.BeginData(id, version, pName);
    if (chunky.GetStream().Write(m_pBytes.get(), size) != size)
        throw std::runtime_error("Unable to write to file!");
    chunky.EndChunk();
}
