#include "Shared/Cross/RenderAnim/Image/LevelSkip.h"

#include <algorithm>

#include "Shared/Cross/Debug/db.h"

uint32_t ClampLevelSkip(ImageType type, uint32_t width, uint32_t height, uint32_t mipCount, uint32_t wanted) {
    constexpr uint32_t leastSide = 4;
    uint32_t numToSkip = std::min(wanted, std::max(mipCount, 1u) - 1);
    if (!Image::IsTypeCompressed(type) || numToSkip == 0)
        return numToSkip;
    if ((width >> numToSkip) >= leastSide && (height >> numToSkip) >= leastSide)
        return numToSkip;
    const uint32_t oldNumToSkip = numToSkip;
    numToSkip = 0;
    for (; width > leastSide && height > leastSide; width /= 2, height /= 2)
        ++numToSkip;
    dbAssert(oldNumToSkip > numToSkip);
    return std::min(numToSkip, oldNumToSkip);
}
