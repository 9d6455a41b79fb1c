#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "Shared/Cross/Glaze/Object.h"

namespace gz {

// The renderer's side of a texture: a stack of image levels, the largest first.
class Texture : public Core {
public:
    static constexpr uint32_t MaxSide = 4096; // pixels

    // Sides in pixels. False for a side of 0 or above MaxSide, and for no level or more than the sides can be halved.
    virtual bool Create(uint32_t width, uint32_t height, uint32_t format, uint32_t levelCount) = 0;
    virtual uint32_t GetWidth() const = 0;
    virtual uint32_t GetHeight() const = 0;
    virtual uint32_t GetFormat() const = 0;
    virtual uint32_t GetLevelCount() const = 0;
    // Keeps a copy of the level's data, in the format's layout. False for a level that the texture hasn't.
    virtual bool SetLevel(uint32_t level, std::span<const std::byte> data) = 0;
    // The same without a copy: the owner keeps the data, and is held for as long as the level has it.
    virtual bool ShareLevel(uint32_t level, std::span<const std::byte> data, std::shared_ptr<const void> pOwner) = 0;
    // Empty for a level without data. Good until that level's next data.
    virtual std::span<const std::byte> GetLevel(uint32_t level) const = 0;
};

} // namespace gz
