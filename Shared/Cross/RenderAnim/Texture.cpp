#include "Shared/Cross/RenderAnim/Texture.h"

#include <algorithm>
#include <utility>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Glaze/Device.h"
#include "Shared/Cross/Glaze/Texture.h"
#include "Shared/Cross/RenderAnim/TextureTypeInfo.h"

namespace {

bool AreLevelsOfOneTexture(const std::vector<std::unique_ptr<Image>>& images) {
    if (images.empty() || std::ranges::any_of(images, [](const auto& pImage) { return !pImage; }))
        return false;
    const Image& first = *images.front();
    for (uint32_t level = 1; level < images.size(); ++level) {
        const Image& image = *images[level];
        if (image.GetType() != first.GetType() || image.GetMipCount() != 1 || first.GetMipCount() != 1 ||
            image.GetWidth() != first.GetWidth(level) || image.GetHeight() != first.GetHeight(level))
            return false;
    }
    return images.size() <= Image::GetMaxMipCount(first.GetWidth(), first.GetHeight());
}

} // namespace

Inv::ResourceTypeInfo& Texture::GetTypeInfo() {
    static TextureTypeInfo s_typeInfo;
    return s_typeInfo;
}

Texture::Texture() = default;

Texture::~Texture() = default;

void Texture::NameImages() {
    for (const std::shared_ptr<Image>& pImage : m_Images)
        if (!pImage->GetName())
            pImage->SetName(GetName());
}

bool Texture::SetImages(std::vector<std::unique_ptr<Image>> images) {
    if (!AreLevelsOfOneTexture(images))
        return false;
    m_Images.assign(std::make_move_iterator(images.begin()), std::make_move_iterator(images.end()));
    MakeDeviceTexture();
    return true;
}

bool Texture::SetImage(std::unique_ptr<Image> pImage) {
    std::vector<std::unique_ptr<Image>> images;
    images.push_back(std::move(pImage));
    return SetImages(std::move(images));
}

void Texture::MakeDeviceTexture() {
    m_pDeviceTexture = gz::GetDevice() ? gz::GetDevice()->MakeTexture() : nullptr;
    if (!m_pDeviceTexture || !m_pDeviceTexture->Create(GetWidth(), GetHeight(), GetType(), GetLevelCount())) {
        m_pDeviceTexture.reset();
        return;
    }
    uint32_t level = 0;
    for (const std::shared_ptr<Image>& pImage : m_Images)
        for (uint32_t i = 0; i < pImage->GetMipCount(); ++i)
            m_pDeviceTexture->ShareLevel(level++, std::as_bytes(std::as_const(*pImage).GetData(i)), pImage);
}

uint32_t Texture::GetLevelCount() const {
    return m_Images.size() == 1 ? m_Images.front()->GetMipCount() : static_cast<uint32_t>(m_Images.size());
}

Texture::Level Texture::GetLevel(uint32_t level) const {
    dbAssert(level < GetLevelCount());
    if (level >= GetLevelCount())
        return {};
    return m_Images.size() == 1 ? Level{m_Images.front().get(), level} : Level{m_Images[level].get(), 0};
}

uint32_t Texture::GetWidth() const { return m_Images.empty() ? 0 : m_Images.front()->GetWidth(); }

uint32_t Texture::GetHeight() const { return m_Images.empty() ? 0 : m_Images.front()->GetHeight(); }

TextureType Texture::GetType() const {
    return m_Images.empty() ? TextureType_RGBA : GuessFormat(m_Images.front()->GetType());
}

uint64_t Texture::GetSize() const {
    uint64_t size = 0;
    for (const std::shared_ptr<Image>& pImage : m_Images)
        size += pImage->GetTotalSize();
    return size;
}
