#include "Shared/Cross/RenderAnim/AnimKeyBlock.h"

#include <functional>

AnimKeyBlock::AnimKeyBlock(size_t size)
    : m_pBytes(MMAllocator<std::byte, AnimStaticPool>().allocate(size)), m_Size(size) {}

std::shared_ptr<AnimKeyBlock> AnimKeyBlock::Make(size_t size) {
    return std::allocate_shared<AnimKeyBlock>(MMAllocator<AnimKeyBlock, AnimStaticPool>(), size);
}

void* AnimKeyBlock::Take(size_t size) {
    if (size > m_Size - m_Used)
        return nullptr;
    void* pPlace = m_pBytes.get() + m_Used;
    m_Used += size;
    return pPlace;
}

bool AnimKeyBlock::Holds(const void* pPlace) const {
    const auto* pByte = static_cast<const std::byte*>(pPlace);
    return std::greater_equal<>()(pByte, m_pBytes.get()) && std::less<>()(pByte, m_pBytes.get() + m_Size);
}
