#include "Shared/Cross/RenderAnim/Image/Chunkmap.h"

#include <algorithm>

#include "Shared/Cross/Debug/db.h"

Image::Grid Image_ChunkmapBase::GetGrid(uint32_t width, uint32_t height) const {
    return {.columns = std::max(1u, width / m_ChunkWidth),
            .rows = std::max(1u, height / m_ChunkHeight),
            .cellSize = m_ChunkSize};
}

bool Image_ChunkmapBase::Blt(const Image&, const ImageRect&, uint32_t, uint32_t) {
    dbWarningf("Blt function not supported in Chunkmap images");
    return false;
}
