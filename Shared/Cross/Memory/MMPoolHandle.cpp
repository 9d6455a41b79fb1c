#include "Shared/Cross/Memory/MMPoolHandle.h"

#include "Shared/Cross/Memory/MMSystem.h"

MMPoolHandle::MMPoolHandle(MMPoolBase& pool) { Join(&pool); }

MMPoolHandle::MMPoolHandle(const MMPoolHandle& other) { Join(other.m_pPool); }

MMPoolHandle& MMPoolHandle::operator=(const MMPoolHandle& other) {
    if (this != &other && m_pPool != other.m_pPool) {
        Release();
        Join(other.m_pPool);
    }
    return *this;
}

MMPoolHandle::~MMPoolHandle() { Release(); }

void MMPoolHandle::Join(MMPoolBase* pPool) {
    if (!pPool)
        return;
    MMCheckPool(*pPool);
    const MMLockScope lock;
    m_pPool = pPool;
    m_pNext = std::exchange(pPool->m_pFirstHandle, this);
    if (m_pNext)
        m_pNext->m_pPrevious = this;
}

void MMPoolHandle::Release() {
    if (!m_pPool)
        return;
    const MMLockScope lock;
    MMPoolBase* const pPool = std::exchange(m_pPool, nullptr);
    (m_pPrevious ? m_pPrevious->m_pNext : pPool->m_pFirstHandle) = m_pNext;
    if (m_pNext)
        m_pNext->m_pPrevious = m_pPrevious;
    m_pNext = m_pPrevious = nullptr;
    if (!pPool->m_pFirstHandle)
        MMPoolDestroy(pPool);
}
