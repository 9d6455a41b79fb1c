#include "Host/Scene/UserProperties.h"

#include <algorithm>

namespace scene {

namespace {

char ToLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

} // namespace

const std::string* UserProperties::Find(std::string_view key) const {
    const auto it = std::ranges::find_if(
        m_Items, [key](const Item& item) { return std::ranges::equal(item.key, key, {}, ToLower, ToLower); });
    return it != m_Items.end() ? &it->value : nullptr;
}

} // namespace scene
