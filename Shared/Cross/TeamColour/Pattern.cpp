#include "Shared/Cross/TeamColour/Pattern.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Image/Image.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr const char* s_DefaultScheme = "default";

constexpr const char* s_LayerNames[Pattern::LAYER_PATTERN_COUNT] = {"primary", "secondary", "trim",
                                                                    "weapons", "eyes",      "dirt"};

} // namespace

const char* Pattern::GetLayerName(int32_t layer) { return IsLayer(layer) ? s_LayerNames[layer] : ""; }

Pattern::Pattern() { SetSchemeName(s_DefaultScheme); }

Pattern::~Pattern() = default;
Pattern::Pattern(Pattern&& other) noexcept = default;
Pattern& Pattern::operator=(Pattern&& other) noexcept = default;

void Pattern::SetSchemeName(const char* pSchemeName) {
    const size_t length = std::strlen(pSchemeName);
    dbAssertText(length < SchemeNameSize, "strlen( schemeName ) < num");
    m_SchemeName = {};
    std::copy_n(pSchemeName, std::min(length, SchemeNameSize - 1), m_SchemeName.begin());
}

void Pattern::SetSize(uint32_t width, uint32_t height) {
    if (width == m_Width && height == m_Height)
        return;
    m_Width = width;
    m_Height = height;
    m_Layers = {};
}

bool Pattern::IsLayer(int32_t layer) {
    dbAssertText(layer >= 0, "layer >= 0");
    dbAssertText(layer < LAYER_PATTERN_COUNT, "layer < Pattern::LAYER_PATTERN_COUNT");
    return layer >= 0 && layer < LAYER_PATTERN_COUNT;
}

std::span<const uint8_t> Pattern::GetLayer(int32_t layer) const {
    return IsLayer(layer) ? std::span<const uint8_t>(m_Layers[static_cast<size_t>(layer)]) : std::span<const uint8_t>();
}

void Pattern::SetLayer(int32_t layer, std::vector<uint8_t> bytes) {
    const bool fits = bytes.empty() || bytes.size() == GetLayerSize();
    dbAssert(fits);
    if (IsLayer(layer) && fits)
        m_Layers[static_cast<size_t>(layer)] = std::move(bytes);
}

void Pattern::SetDirtImage(std::unique_ptr<Image> pImage) { m_pDirtImage = std::move(pImage); }
