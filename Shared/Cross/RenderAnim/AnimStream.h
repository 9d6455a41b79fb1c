#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

#include "Shared/Cross/RenderAnim/AnimKey.h"
#include "Shared/Cross/RenderAnim/AnimKeyBlock.h"

// Keys in the order of their times. A stream is either laid down in one piece, sized once and filled through the span,
// or grown key by key. For float, glm::vec3, glm::quat and, apart from sampling, glm::mat4x3.
template <class V>
class AnimStream : public MMPooled<AnimStaticPool> {
public:
    using Key = AnimKey<V>;

    static constexpr uint32_t MaxKeyCount = 65535;

    AnimStream() = default;
    // With keys from the block, which may be null.
    explicit AnimStream(std::shared_ptr<AnimKeyBlock> pBlock) : m_keyData(AnimKeyAllocator<Key>(std::move(pBlock))) {}

    bool IsEmpty() const { return m_keyData.empty(); }
    uint16_t GetKeyCount() const { return static_cast<uint16_t>(m_keyData.size()); }

    // Sizes the stream and gives its keys to be filled. Those that are new hold nothing: the caller writes each one,
    // its time as well, with times that don't go back. The span is good until a key is added or removed or the stream
    // is sized again. More than MaxKeyCount are logged, and that many are made.
    std::span<Key> SetKeyCount(uint32_t count);
    std::span<Key> GetKeys() { return m_keyData; }
    std::span<const Key> GetKeys() const { return m_keyData; }

    // An index out of range is a mistake of the caller: a getter then gives a key of zeros, the others do nothing.
    Key GetKey(uint32_t index) const;
    void SetKey(uint32_t index, const V& value); // the time stays
    void RemoveKey(uint32_t index);
    // Overwrites the key at exactly that time, or else inserts one in the order of times. False, which is logged, when
    // the stream is full; it stays as it was.
    bool AddKey(float time, const V& value);

    // The value at a time below 0 is that at 0. With `loops` a time above 1 begins over; without, the last key holds.
    // Between two keys floats and vectors go straight, quaternions the shorter way round. `hint` is the caller's, one
    // for each stream, 0 at first: the key to look from, so that playing on costs the same however long the stream is.
    // With `loops` a time ahead of that key is looked for from the start again; without, whoever goes back sets the
    // hint to 0. A time ahead of all keys that are looked at gives the last one's value. An empty stream is a mistake
    // and gives zeros. Matrices aren't sampled.
    V Sample(float time, bool loops, uint16_t& hint) const requires(!std::is_same_v<V, glm::mat4x3>);

private:
    std::vector<Key, AnimKeyAllocator<Key>> m_keyData;
};

using FloatStream = AnimStream<float>;
using Vec3Stream = AnimStream<glm::vec3>;
using QuatStream = AnimStream<glm::quat>;
using MatrixStream = AnimStream<glm::mat4x3>;

extern template class AnimStream<float>;
extern template class AnimStream<glm::vec3>;
extern template class AnimStream<glm::quat>;
extern template class AnimStream<glm::mat4x3>;

// Takes out keys that sampling the others gives to within the tolerance. Passes over every other key from the second
// on, and again until a pass takes out none: a key that was taken out or stayed is followed by one that isn't tried.
// The first key stays, and the last one unless it is the second. Times rise from key to key.
void ThinKeys(FloatStream& stream, float tolerance);
