#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string>

#include <glm/vec3.hpp>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/AnimStream.h"

namespace ra {

// The data chunk of an animation that has been entered. Unlike PayloadReader it takes the payload to where its keys
// stay: one block for all of them. Every fault throws Chunky::Exception with what is being read and the field; a string
// that no buffer of ours holds throws ByteStream::Exception.
class AnimPartReader {
public:
    // Reads what is left of the chunk. `what` tells messages whose data it is, such as "animation 'run', bone 'hip'".
    AnimPartReader(Chunky& chunky, std::string what);

    template <StreamScalar T>
    T Read(const char* pField) {
        T value;
        std::memcpy(&value, ReadBytes(sizeof(value), pField), sizeof(value));
        return value;
    }
    glm::vec3 ReadVec3(const char* pField);
    std::string ReadString(const char* pField);
    // A count of elements of which each takes at least that many bytes.
    uint32_t ReadCount(size_t leastBytes, const char* pField);
    // A list of keys, whose times go from 0 to 1 and never back. Null for no keys.
    template <class V>
    std::unique_ptr<AnimStream<V>> ReadKeys(const char* pField);

    [[noreturn]] void Fail(const std::string& fault) const;

private:
    // Good until keys are read.
    const std::byte* ReadBytes(size_t size, const char* pField);

    std::string m_What;
    std::shared_ptr<AnimKeyBlock> m_pBlock;
    std::span<const std::byte> m_Rest;
};

extern template std::unique_ptr<FloatStream> AnimPartReader::ReadKeys(const char* pField);
extern template std::unique_ptr<Vec3Stream> AnimPartReader::ReadKeys(const char* pField);
extern template std::unique_ptr<QuatStream> AnimPartReader::ReadKeys(const char* pField);
extern template std::unique_ptr<MatrixStream> AnimPartReader::ReadKeys(const char* pField);

} // namespace ra
