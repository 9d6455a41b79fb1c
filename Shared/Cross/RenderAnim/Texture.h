#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/RenderAnim/TextureType.h"

namespace gz {
class Texture;
}

// A picture on shaders' channels: image levels, the largest first, which the renderer's texture looks on at without a
// copy of its own. Without a picture it has no level, no size and the type of nothing in particular.
class Texture : public Inv::NamedResource {
public:
    static Inv::ResourceTypeInfo& GetTypeInfo();

    Texture();
    ~Texture() override;

    // One image with all levels, or one image a level. False, and nothing changed, when they are no levels of one
    // texture: none at all, of different types, or with sides that aren't half of those before.
    bool SetImages(std::vector<std::unique_ptr<Image>> images);
    bool SetImage(std::unique_ptr<Image> pImage);
    const std::vector<std::shared_ptr<Image>>& GetImages() const { return m_Images; }
    // Images that have no name take the texture's.
    void NameImages();

    uint32_t GetLevelCount() const;
    // The image that holds a level, and which of its levels it is. Null past the last, which is the caller's mistake.
    struct Level {
        const Image* pImage = nullptr;
        uint32_t level = 0; // of the image
    };
    Level GetLevel(uint32_t level) const;
    uint32_t GetWidth() const;
    uint32_t GetHeight() const;
    TextureType GetType() const;
    // Bytes of all levels.
    uint64_t GetSize() const;

    // Null as long as there is no picture, and without a device.
    const std::shared_ptr<gz::Texture>& GetDeviceTexture() const { return m_pDeviceTexture; }

private:
    void MakeDeviceTexture();

    std::vector<std::shared_ptr<Image>> m_Images; // shared with the renderer's side
    std::shared_ptr<gz::Texture> m_pDeviceTexture;
};
