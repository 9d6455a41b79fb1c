#include "Shared_Tools/PVXExport/BoneNodes.h"

#include <algorithm>

#include "Host/Sdk/Node.h"
#include "Shared/Cross/Util/Hash.h"

namespace {

std::string LowerCased(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), ToLower);
    return lower;
}

} // namespace

int32_t BoneNodes::Add(INode* pNode, int32_t parent, bool visible, const glm::mat4x3& transform) {
    const auto index = static_cast<int32_t>(m_Bones.size());
    m_Bones.push_back({pNode, MakeUniqueName(pNode->GetName()), parent, visible, transform});
    m_IndexOfNode.emplace(pNode, index);
    return index;
}

int32_t BoneNodes::Find(const INode* pNode) const {
    const auto it = m_IndexOfNode.find(pNode);
    return it != m_IndexOfNode.end() ? it->second : -1;
}

void BoneNodes::Clear() {
    m_Bones.clear();
    m_IndexOfNode.clear();
    m_LastNumber.clear();
}

// Names are never given back, so the search for a free number goes on where the last one for this name ended.
std::string BoneNodes::MakeUniqueName(std::string_view name) {
    const auto [known, isFree] = m_LastNumber.try_emplace(LowerCased(name), 1);
    if (isFree)
        return std::string(name);
    int& lastNumber = known->second; // elements stay where they are when the table grows
    for (;;) {
        std::string numbered = std::string(name) + "(" + std::to_string(++lastNumber) + ")";
        if (m_LastNumber.try_emplace(LowerCased(numbered), 1).second)
            return numbered;
    }
}
