#pragma once

#include <memory>
#include <string>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/AnimStream.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"

namespace ra {

// The data chunk of an animation that has been entered. It takes the payload to where its keys stay: one block for all
// of them. So what ReadBytes gives is good until keys are read.
class AnimPartReader : public PayloadReader {
public:
    // Reads what is left of the chunk. `what` tells messages whose data it is, such as "animation 'run', bone 'hip'".
    AnimPartReader(Chunky& chunky, std::string what);

    // A list of keys, whose times go from 0 to 1 and never back. Null for no keys.
    template <class V>
    std::unique_ptr<AnimStream<V>> ReadKeys(const char* pField);

private:
    std::string Describe() const override { return m_What; }

    std::string m_What;
    std::shared_ptr<AnimKeyBlock> m_pBlock;
};

extern template std::unique_ptr<FloatStream> AnimPartReader::ReadKeys(const char* pField);
extern template std::unique_ptr<Vec3Stream> AnimPartReader::ReadKeys(const char* pField);
extern template std::unique_ptr<QuatStream> AnimPartReader::ReadKeys(const char* pField);
extern template std::unique_ptr<MatrixStream> AnimPartReader::ReadKeys(const char* pField);

} // namespace ra
