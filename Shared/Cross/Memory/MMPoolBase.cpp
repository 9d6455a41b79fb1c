#include "Shared/Cross/Memory/MMPoolBase.h"

#include <algorithm>
#include <cstring>

MMPoolBase::MMPoolBase(const char* pName, MMMagic magic, uint32_t flags) : m_Magic(magic), m_Flags(flags) {
    const size_t length = std::min(strlen(pName), MaxName - 1);
    memcpy(m_Name, pName, length);
    m_Name[length] = '\0';
}

MMPoolBase::~MMPoolBase() {
    // Through a volatile, or the store to a dying object would be dropped; a stale handle is told by it.
    *const_cast<volatile MMMagic*>(&m_Magic) = MMMagic{};
}

void MMPoolBase::ResetCounts() {
    m_Counts.usedMemory = 0;
    m_Counts.liveCount = 0;
}

void MMPoolBase::MoveBlock(AllocRequest& request, void* pOld, size_t oldSize) {
    Alloc(request);
    memcpy(request.pResult, pOld, std::min(oldSize, request.size));
    Free(pOld, MMFreeKindOf(request.kind));
}
