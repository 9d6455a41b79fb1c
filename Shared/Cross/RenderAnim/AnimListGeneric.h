#pragma once

#include <cstdint>

#include "Shared/Cross/RenderAnim/AnimList.h"

// The list as the tools load and fill it.
class AnimListGeneric : public AnimList {
public:
    using AnimList::AnimList;

    // The version of the animation that was read last, 0 before the first.
    uint32_t GetFileVersion() const { return m_FileVersion; }
    void SetFileVersion(uint32_t version) { m_FileVersion = version; }

private:
    uint32_t m_FileVersion = 0;
};
