#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"

#include <glm/gtc/type_ptr.hpp>

PayloadReader::PayloadReader(Chunky& chunky, const char* pKind, const char* pName) : m_pKind(pKind), m_pName(pName) {
    // The container has held the size against the stream.
    const uint32_t size = chunky.GetRemaining();
    m_pPayload = std::make_unique_for_overwrite<std::byte[]>(size);
    ReadPayload(chunky, {m_pPayload.get(), size});
}

void PayloadReader::ReadPayload(Chunky& chunky, std::span<std::byte> payload) {
    if (chunky.GetStream().Read(payload.data(), static_cast<uint32_t>(payload.size())) != payload.size())
        Fail("data", "is cut off");
    m_Rest = payload;
}

std::string PayloadReader::Describe() const {
    return *m_pName ? std::string(m_pKind) + " '" + m_pName + '\'' : std::string(m_pKind);
}

void PayloadReader::Fail(const std::string& field, const std::string& reason) const {
    throw Chunky::Exception(ChunkyError_BadChunk, Describe() + ": " + field + ' ' + reason);
}

std::span<const std::byte> PayloadReader::ReadBytes(size_t size, const char* pField) {
    if (size > m_Rest.size())
        Fail(pField, "goes beyond its chunk");
    const std::span<const std::byte> bytes = m_Rest.first(size);
    m_Rest = m_Rest.subspan(size);
    return bytes;
}

std::string PayloadReader::ReadString(const char* pField) {
    const auto length = Read<uint32_t>(pField);
    if (length > MaxStringLength)
        throw ByteStream::Exception(0, "String buffer overrun!");
    const std::span<const std::byte> bytes = ReadBytes(length, pField);
    const auto* pText = reinterpret_cast<const char*>(bytes.data());
    return {pText, strnlen(pText, length)};
}

glm::vec3 PayloadReader::ReadVec3(const char* pField) {
    glm::vec3 v;
    std::memcpy(glm::value_ptr(v), ReadBytes(sizeof(v), pField).data(), sizeof(v));
    return v;
}

glm::quat PayloadReader::ReadQuat(const char* pField) {
    float values[4];
    std::memcpy(values, ReadBytes(sizeof(values), pField).data(), sizeof(values));
    return {values[3], values[0], values[1], values[2]};
}

glm::mat4x3 PayloadReader::ReadMat43(const char* pField) {
    glm::mat4x3 m;
    std::memcpy(glm::value_ptr(m), ReadBytes(sizeof(m), pField).data(), sizeof(m));
    return m;
}

glm::mat4 PayloadReader::ReadMat4(const char* pField) {
    glm::mat4 m;
    std::memcpy(glm::value_ptr(m), ReadBytes(sizeof(m), pField).data(), sizeof(m));
    return m;
}

uint32_t PayloadReader::ReadCount(size_t leastBytes, const char* pField) {
    const auto count = Read<uint32_t>(pField);
    if (count > m_Rest.size() / leastBytes)
        Fail(pField, std::to_string(count) + " exceeds its chunk");
    return count;
}

ChunkInfo EnterData(Chunky& chunky, uint32_t id, uint32_t minVersion, uint32_t maxVersion) {
    ChunkInfo info = chunky.EnterData(id, maxVersion);
    if (info.version < minVersion)
        throw Chunky::Exception(ChunkyError_BadChunk,
                                "chunk of version " + std::to_string(info.version) + ", older than any that is known");
    return info;
}
