#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <glm/gtc/quaternion.hpp>
#include <glm/mat4x3.hpp>
#include <glm/vec3.hpp>

// A value at a time, which goes from 0 to 1 over the whole animation. In memory a key is what it is in files, so that a
// block of keys is saved and loaded as it stands:
//
//   float key     8 bytes   time, value
//   vec3 key     16 bytes   time, x, y, z
//   quat key     20 bytes   time, x, y, z, w
//   matrix key   52 bytes   time, three rows of rotation, translation
template <class V>
struct AnimKey {
    float time;
    V value;
};

using FloatKey = AnimKey<float>;
using Vec3Key = AnimKey<glm::vec3>;
using QuatKey = AnimKey<glm::quat>;
using MatrixKey = AnimKey<glm::mat4x3>;

static_assert(std::endian::native == std::endian::little);
static_assert(sizeof(FloatKey) == 8 && offsetof(FloatKey, value) == 4);
static_assert(sizeof(Vec3Key) == 16 && offsetof(Vec3Key, value) == 4);
static_assert(sizeof(QuatKey) == 20 && offsetof(QuatKey, value) == 4);
static_assert(sizeof(MatrixKey) == 52 && offsetof(MatrixKey, value) == 4);
static_assert(offsetof(glm::quat, x) == 0 && offsetof(glm::quat, w) == 12, "the order of a quaternion in files");
// A stream's keys are laid down without being cleared first.
static_assert(std::is_trivially_default_constructible_v<MatrixKey> && std::is_trivially_copyable_v<MatrixKey> &&
              std::is_trivially_default_constructible_v<QuatKey> && std::is_trivially_copyable_v<QuatKey>);
