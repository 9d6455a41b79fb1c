#include "Shared/Cross/RenderAnim/Image/Image.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Image/Chunkmap.h"
#include "Shared/Cross/RenderAnim/Image/DxtcCompression.h"
#include "Shared/Cross/RenderAnim/Image/Palette.h"
#include "Shared/PC/Memory/OSMemory.h"

namespace {

struct ImageKind {
    ImageType type;
    uint32_t cellSize; // of a pixel, or of a block
    std::unique_ptr<Image> (*pCreate)();
};

template <class T, class Cell = typename T::Pixel>
constexpr ImageKind MakeKind() {
    return {T::Type, sizeof(Cell), []() -> std::unique_ptr<Image> { return std::make_unique<T>(); }};
}

constexpr ImageKind s_Kinds[] = {
    MakeKind<Image_RGBA32>(),
    MakeKind<Image_Luminance8>(),
    MakeKind<Image_Palette>(),
    MakeKind<Image_RGB565>(),
    MakeKind<Image_RGBA5551>(),
    MakeKind<Image_RGBA4444>(),
    MakeKind<Image_RGB888>(),
    MakeKind<Image_DXT1, Image_DXT1::Chunk>(),
    MakeKind<Image_DXT3, Image_DXT3::Chunk>(),
    MakeKind<Image_DXT5, Image_DXT5::Chunk>(),
};

// Null for a type that doesn't exist.
const ImageKind* FindKind(uint32_t type) {
    const auto* const pKind = std::ranges::find(s_Kinds, static_cast<ImageType>(type), &ImageKind::type);
    return pKind != std::end(s_Kinds) ? pKind : nullptr;
}

bool ArePowersOfTwo(uint32_t width, uint32_t height) {
    return std::has_single_bit(width) && std::has_single_bit(height);
}

} // namespace

bool Image::IsTypeKnown(uint32_t type) { return FindKind(type) != nullptr; }

bool Image::IsTypeCompressed(uint32_t type) {
    return type == IMAGETYPE_DXT1 || type == IMAGETYPE_DXT3 || type == IMAGETYPE_DXT5;
}

bool Image::AreSidesAllowed(ImageType type, uint32_t width, uint32_t height) {
    if (width < 1 || height < 1 || width > MaxSide || height > MaxSide)
        return false;
    return !IsTypeCompressed(type) || ArePowersOfTwo(width, height);
}

uint32_t Image::GetMaxMipCount(uint32_t width, uint32_t height) {
    return std::max(1u, static_cast<uint32_t>(std::bit_width(std::max(width, height))));
}

uint64_t Image::GetSizeFor(ImageType type, uint32_t width, uint32_t height, uint32_t mipCount) {
    const ImageKind* const pKind = FindKind(type);
    const uint32_t cellSide = IsTypeCompressed(type) ? s_DxtcBlockSide : 1;
    uint64_t size = 0;
    for (uint32_t level = 0; level < mipCount; ++level) {
        const uint64_t columns = std::max(1u, GetLevelSide(width, level) / cellSide);
        const uint64_t rows = std::max(1u, GetLevelSide(height, level) / cellSide);
        size += columns * rows * (pKind ? pKind->cellSize : 0);
    }
    return size;
}

std::unique_ptr<Image> Image::Create(ImageType type, uint32_t width, uint32_t height, uint32_t mipCount) {
    const ImageKind* const pKind = FindKind(type);
    dbAssertText(pKind, "image type");
    std::unique_ptr<Image> pImage = pKind ? pKind->pCreate() : nullptr;
    if (!pImage || !pImage->Resize(width, height, true))
        return nullptr;
    pImage->SetMipCount(mipCount);
    return pImage;
}

Image::~Image() = default;

void Image::SetName(const char* pName) { NamedResource::SetName(pName); }

Image::Level Image::MakeLevel(uint32_t level) const {
    Level made;
    made.size = static_cast<uint32_t>(GetSizeFor(m_Type, GetWidth(level), GetHeight(level)));
    OSMemory::HeapExpect(made.size);
    made.pData = std::make_unique_for_overwrite<uint8_t[]>(made.size);
    return made;
}

void Image::SetMipCount(uint32_t count) {
    const uint32_t most = GetMaxMipCount(m_Width, m_Height);
    dbAssertText(count >= 1 && count <= most, "mip count");
    count = std::clamp(count, 1u, most);
    if (count < m_Levels.size())
        m_Levels.resize(count);
    m_Levels.reserve(count);
    while (m_Levels.size() < count)
        m_Levels.push_back(MakeLevel(static_cast<uint32_t>(m_Levels.size())));
}

bool Image::Resize(uint32_t width, uint32_t height, bool discard) {
    dbAssertText(width <= MaxSide, "w <= 4096");
    dbAssertText(height <= MaxSide, "h <= 4096");
    dbAssertText(!IsTypeCompressed(m_Type) || ArePowersOfTwo(width, height),
                 "Math::IsPowerOfTwo(w) && Math::IsPowerOfTwo(h)");
    if (!AreSidesAllowed(m_Type, width, height))
        return false;
    const Grid before = GetGrid(m_Width, m_Height);
    const Level old = m_Levels.empty() ? Level{} : std::move(m_Levels.front());
    m_Levels.clear();
    m_Width = width;
    m_Height = height;
    Level level = MakeLevel(0);
    if (!discard) {
        const Grid after = GetGrid(width, height);
        std::memset(level.pData.get(), 0, level.size);
        const size_t rows = old.pData ? std::min(before.rows, after.rows) : 0;
        const size_t rowSize = std::min(before.columns, after.columns) * after.cellSize;
        for (size_t row = 0; row < rows; ++row)
            std::memcpy(level.pData.get() + row * after.columns * after.cellSize,
                        old.pData.get() + row * before.columns * before.cellSize, rowSize);
    }
    m_Levels.push_back(std::move(level));
    return true;
}

std::span<uint8_t> Image::GetData(uint32_t level) {
    dbAssert(level < m_Levels.size());
    return level < m_Levels.size() ? std::span(m_Levels[level].pData.get(), m_Levels[level].size)
                                   : std::span<uint8_t>();
}

std::span<const uint8_t> Image::GetData(uint32_t level) const {
    dbAssert(level < m_Levels.size());
    return level < m_Levels.size() ? std::span<const uint8_t>(m_Levels[level].pData.get(), m_Levels[level].size)
                                   : std::span<const uint8_t>();
}

uint64_t Image::GetTotalSize() const {
    uint64_t size = 0;
    for (const Level& level : m_Levels)
        size += level.size;
    return size;
}

void Image::DropFirstLevel() {
    if (m_Levels.size() < 2)
        return;
    m_Levels.erase(m_Levels.begin());
    m_Width = GetLevelSide(m_Width, 1);
    m_Height = GetLevelSide(m_Height, 1);
}
