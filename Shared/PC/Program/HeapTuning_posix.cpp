#include "Shared/PC/Program/HeapTuning.h"

#include <malloc.h>

namespace {

constexpr int s_LargestFromHeap = 32 * 1024 * 1024; // the most that the system's allocator takes
constexpr int s_KeptAtTop = 128 * 1024 * 1024;
constexpr int s_GrowsBy = 1024 * 1024;

} // namespace

void KeepFreedMemory() {
    // Hints: an allocator that refuses one serves all the same.
    mallopt(M_MMAP_THRESHOLD, s_LargestFromHeap);
    mallopt(M_TRIM_THRESHOLD, s_KeptAtTop);
    mallopt(M_TOP_PAD, s_GrowsBy);
}
