#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string>

#include <glm/gtc/quaternion.hpp>
#include <glm/mat4x3.hpp>
#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>

#include "Shared/Cross/FileSystem/Chunky.h"

// The payload of a data chunk, taken from the stream in one piece and read field by field. Every fault throws
// Chunky::Exception with what is being read and the field; a string that no buffer of ours holds throws
// ByteStream::Exception. Nothing is allocated by a number of the file before ReadCount has seen it.
class PayloadReader {
public:
    static constexpr uint32_t MaxStringLength = 259;

    // What is left of the data chunk that chunky has entered. `pKind` and `pName` tell messages whose data it is, such
    // as "mesh" and its name, and have to stay.
    PayloadReader(Chunky& chunky, const char* pKind, const char* pName);
    virtual ~PayloadReader() = default;
    PayloadReader(const PayloadReader&) = delete;
    PayloadReader& operator=(const PayloadReader&) = delete;

    template <StreamScalar T>
    T Read(const char* pField) {
        T value;
        std::memcpy(&value, ReadBytes(sizeof(value), pField).data(), sizeof(value));
        return value;
    }
    std::string ReadString(const char* pField);
    glm::vec3 ReadVec3(const char* pField);
    glm::quat ReadQuat(const char* pField); // x, y, z, w
    glm::mat4x3 ReadMat43(const char* pField);
    glm::mat4 ReadMat4(const char* pField);
    // In the payload itself: no copy, and no alignment. Good as long as the payload is.
    std::span<const std::byte> ReadBytes(size_t size, const char* pField);

    // A count of elements of which each takes at least that many bytes.
    uint32_t ReadCount(size_t leastBytes, const char* pField);
    size_t GetRemaining() const { return m_Rest.size(); }

    [[noreturn]] void Fail(const std::string& field, const std::string& reason) const;

    // The payload, for those who keep spans into it. Reading goes on.
    std::unique_ptr<std::byte[]> TakePayload() { return std::move(m_pPayload); }

protected:
    // For a payload that lies elsewhere: ReadPayload comes next.
    PayloadReader() = default;
    // Fills all of it from the chunk.
    void ReadPayload(Chunky& chunky, std::span<std::byte> payload);

private:
    // Whose data it is.
    virtual std::string Describe() const;

    const char* m_pKind = "";
    const char* m_pName = "";
    std::unique_ptr<std::byte[]> m_pPayload;
    std::span<const std::byte> m_Rest;
};

// Enters a data chunk whose layouts before `minVersion` nobody knows any more. As Chunky::EnterData otherwise.
ChunkInfo EnterData(Chunky& chunky, uint32_t id, uint32_t minVersion, uint32_t maxVersion);
