#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include <glm/vec3.hpp>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/AnimStream.h"

namespace ra {

// The data chunk of an animation that has been entered. Unlike PayloadReader it takes no copy of the payload: keys go
// from the stream to where they stay. Every fault throws Chunky::Exception with what is being read and the field; a
// string that no buffer of ours holds throws ByteStream::Exception.
class AnimPartReader {
public:
    // `what` tells messages whose data it is, such as "animation 'run', bone 'hip'".
    AnimPartReader(Chunky& chunky, std::string what) : m_Chunky(chunky), m_What(std::move(what)) {}

    template <StreamScalar T>
    T Read(const char* pField) {
        T value{};
        if (m_Chunky.GetRemaining() < sizeof(value) || !m_Chunky.GetStream().ReadValue(value))
            Fail(std::string(pField) + " goes beyond its chunk");
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
    void ReadBytes(void* pTarget, size_t size, const char* pField);

    Chunky& m_Chunky;
    std::string m_What;
};

extern template std::unique_ptr<FloatStream> AnimPartReader::ReadKeys(const char* pField);
extern template std::unique_ptr<Vec3Stream> AnimPartReader::ReadKeys(const char* pField);
extern template std::unique_ptr<QuatStream> AnimPartReader::ReadKeys(const char* pField);
extern template std::unique_ptr<MatrixStream> AnimPartReader::ReadKeys(const char* pField);

} // namespace ra
