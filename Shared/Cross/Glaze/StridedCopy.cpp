#include "Shared/Cross/Glaze/StridedCopy.h"

#include <cstring>

#include "Shared/Cross/Debug/db.h"

namespace gz {

namespace {

// With the size known the copy is a few moves.
template <size_t Size>
void Copy(std::byte* pTarget, size_t targetStride, const std::byte* pSource, size_t sourceStride, size_t count) {
    for (size_t i = 0; i < count; ++i, pTarget += targetStride, pSource += sourceStride)
        std::memcpy(pTarget, pSource, Size);
}

} // namespace

void CopyStrided(size_t size, std::byte* pTarget, size_t targetStride, const std::byte* pSource, size_t sourceStride,
                 size_t count) {
    switch (size) {
    case 4:
        return Copy<4>(pTarget, targetStride, pSource, sourceStride, count);
    case 8:
        return Copy<8>(pTarget, targetStride, pSource, sourceStride, count);
    case 12:
        return Copy<12>(pTarget, targetStride, pSource, sourceStride, count);
    case 16:
        return Copy<16>(pTarget, targetStride, pSource, sourceStride, count);
    default:
        dbBreak(); // no component has another size
    }
}

} // namespace gz
