#include "Shared/Cross/RenderAnim/Image/Pixelmap.h"

#include <cstring>

#include "Shared/Cross/Debug/db.h"

namespace {

bool IsInside(const Image& image, const ImageRect& rect) {
    return rect.x <= image.GetWidth() && rect.width <= image.GetWidth() - rect.x && rect.y <= image.GetHeight() &&
           rect.height <= image.GetHeight() - rect.y;
}

} // namespace

Image::Grid Image_PixelmapBase::GetGrid(uint32_t width, uint32_t height) const {
    return {.columns = width, .rows = height, .cellSize = GetBitsPerPixel() / 8};
}

bool Image_PixelmapBase::Blt(const Image& source, const ImageRect& from, uint32_t x, uint32_t y) {
    if (source.GetType() != GetType()) {
        dbWarningf("Can only Blt images of same type");
        return false;
    }
    if (!IsInside(source, from) || !IsInside(*this, {x, y, from.width, from.height})) {
        dbWarningf("Blt of %ux%u pixels from %u,%u to %u,%u leaves its image", from.width, from.height, from.x, from.y,
                   x, y);
        return false;
    }
    const Grid sourceGrid = GetGrid(source.GetWidth(), source.GetHeight());
    const Grid grid = GetGrid(GetWidth(), GetHeight());
    const std::span<const uint8_t> sourceData = source.GetData();
    const std::span<uint8_t> data = GetData();
    for (uint32_t row = 0; row < from.height && from.width > 0; ++row)
        std::memcpy(&data[((y + row) * grid.columns + x) * grid.cellSize],
                    &sourceData[((from.y + row) * sourceGrid.columns + from.x) * grid.cellSize],
                    from.width * grid.cellSize);
    return true;
}
