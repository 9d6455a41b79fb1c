#pragma once

#include <memory>

#include "Shared/Cross/Assist/Inventory.h"

namespace gz {
class Texture;
}

// A picture on shaders' channels.
class Texture : public Inv::NamedResource {
public:
    static Inv::ResourceTypeInfo& GetTypeInfo();

    // The renderer's side; null as long as there is no picture.
    const std::shared_ptr<gz::Texture>& GetDeviceTexture() const { return m_pDeviceTexture; }
    void SetDeviceTexture(std::shared_ptr<gz::Texture> pTexture) { m_pDeviceTexture = std::move(pTexture); }

private:
    std::shared_ptr<gz::Texture> m_pDeviceTexture;
};
