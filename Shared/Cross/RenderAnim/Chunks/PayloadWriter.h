#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>

#include <glm/gtc/quaternion.hpp>
#include <glm/mat4x3.hpp>
#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>

#include "Shared/Cross/FileSystem/Chunky.h"

// Gathers the payload of a data chunk, so that it reaches the stream in one piece. Keeps its memory from one chunk to
// the next; make one for a whole file.
class PayloadWriter {
public:
    template <StreamScalar T>
    void Write(T value) {
        std::memcpy(Append(sizeof(value)).data(), &value, sizeof(value));
    }
    // A uint32 length and the characters; null is written as empty.
    void WriteString(const char* pText);
    void WriteVec3(const glm::vec3& v);
    void WriteQuat(const glm::quat& q); // x, y, z, w
    void WriteMat43(const glm::mat4x3& m);
    void WriteMat4(const glm::mat4& m);
    void WriteBytes(std::span<const std::byte> bytes);
    // Room to be filled in place. Good until the next operation.
    std::span<std::byte> Append(size_t size);

    // Writes a data chunk with what was gathered and starts over. Throws std::runtime_error when the stream doesn't
    // take all of it.
    void WriteChunk(Chunky& chunky, uint32_t id, uint32_t version, const char* pName = nullptr);

private:
    void Grow(size_t size);

    std::unique_ptr<std::byte[]> m_pBytes;
    size_t m_Capacity = 0;
    size_t m_Size = 0;
};
