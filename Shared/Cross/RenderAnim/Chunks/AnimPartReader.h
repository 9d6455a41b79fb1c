#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>

#include <glm/vec3.hpp>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/AnimStream.h"

namespace ra {

// The data chunk of an animation that has been entered. Unlike PayloadReader it takes no copy of the payload: keys go
// from the stream to where they stay. Every fault throws Chunky::Exception with what is being read and the field; a
// string that no buffer of ours holds throws ByteStream::Exception.
class AnimPartReader {
public:
    // `what` tells messages whose data it is, such as "animation 'run', bone 'hip'". Nobody else reads the chunk
    // meanwhile. Keys come from the block if there is one.
    AnimPartReader(Chunky& chunky, std::string what, std::shared_ptr<AnimKeyBlock> pKeyBlock = nullptr)
        : m_Stream(chunky.GetStream()), m_Remaining(chunky.GetRemaining()), m_What(std::move(what)),
          m_pKeyBlock(std::move(pKeyBlock)) {}

    template <StreamScalar T>
    T Read(const char* pField) {
        T value{};
        ReadBytes(&value, sizeof(value), pField);
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

    ByteStreamAdapter& m_Stream;
    uint32_t m_Remaining; // of the chunk
    std::string m_What;
    std::shared_ptr<AnimKeyBlock> m_pKeyBlock;
};

extern template std::unique_ptr<FloatStream> AnimPartReader::ReadKeys(const char* pField);
extern template std::unique_ptr<Vec3Stream> AnimPartReader::ReadKeys(const char* pField);
extern template std::unique_ptr<QuatStream> AnimPartReader::ReadKeys(const char* pField);
extern template std::unique_ptr<MatrixStream> AnimPartReader::ReadKeys(const char* pField);

} // namespace ra
