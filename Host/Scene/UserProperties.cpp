#include "Host/Scene/UserProperties.h"

#include "Shared/Cross/Util/Hash.h"

#include <algorithm>

namespace scene {

const std::string* UserProperties::Find(std::string_view key) const {
    const auto it = std::ranges::find_if(
        m_Items, [key](const Item& item) { return std::ranges::equal(item.key, key, {}, ToLower, ToLower); });
    return it != m_Items.end() ? &it->value : nullptr;
}

} // namespace scene
