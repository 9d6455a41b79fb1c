#pragma once

#include "Shared/Cross/Memory/MMPool.h"

// One of those who hold a pool together: the last handle to go destroys it. A copy is a further handle.
class MMPoolHandle {
public:
    MMPoolHandle() = default;
    explicit MMPoolHandle(MMPoolBase& pool);
    MMPoolHandle(const MMPoolHandle& other);
    MMPoolHandle& operator=(const MMPoolHandle& other);
    ~MMPoolHandle();

    // Null for a handle of nothing.
    MMPoolBase* Get() const { return m_pPool; }
    void Release();

private:
    void Join(MMPoolBase* pPool);

    MMPoolBase* m_pPool = nullptr;
    MMPoolHandle* m_pNext = nullptr;
    MMPoolHandle* m_pPrevious = nullptr;
};
