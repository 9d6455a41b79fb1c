#include "Shared/Cross/RenderAnim/AnimList.h"

#include <cstring>
#include <utility>

#include "Shared/Cross/Debug/db.h"

AnimListNode* AnimList::GetNode(uint32_t index) const {
    dbAssert(index < m_pAnimNodes.size());
    return index < m_pAnimNodes.size() ? m_pAnimNodes[index].get() : nullptr;
}

int32_t AnimList::FindNode(const char* pName) const {
    for (size_t i = 0; i < m_pAnimNodes.size(); ++i)
        if (const char* pNodeName = m_pAnimNodes[i]->GetAnim()->GetName(); std::strcmp(pNodeName, pName) == 0)
            return static_cast<int32_t>(i);
    return InvalidIndex;
}

void AnimList::AddNode(std::unique_ptr<AnimListNode> pNode) {
    dbAssert(pNode && pNode->GetAnim().GetData());
    if (pNode && pNode->GetAnim().GetData())
        m_pAnimNodes.push_back(std::move(pNode));
}
