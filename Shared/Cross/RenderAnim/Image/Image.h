#pragma once

#include "Shared/Cross/Assist/Inventory.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

// What a pixel is. The numbers are in files: 3 and 9 were never given and are not to be.
enum ImageType : uint32_t {
    IMAGETYPE_RGBA32 = 0,     // Image_RGBA32: 4 bytes as they lie in a 32-bit value: blue, green, red, alpha
    IMAGETYPE_LUMINANCE8 = 1, // Image_Luminance8
    IMAGETYPE_PALETTE8 = 2,   // Image_Palette: an index into 256 colours
    IMAGETYPE_RGB565 = 4,     // Image_RGB565: 16-bit values, blue in the lowest bits
    IMAGETYPE_RGBA5551 = 5,   // Image_RGBA5551
    IMAGETYPE_RGBA4444 = 6,   // Image_RGBA4444
    IMAGETYPE_RGB888 = 7,     // Image_RGB888: blue, green, red
    IMAGETYPE_DXT1 = 8,       // Image_DXT1: 8 bytes for each block of 4 by 4 pixels
    IMAGETYPE_DXT3 = 10,      // Image_DXT3: 16 bytes a block
    IMAGETYPE_DXT5 = 11,      // Image_DXT5: 16 bytes a block
    IMAGETYPE_KEEP = 12,      // no image has it; as an argument: the type that the file has
};

struct ImageRect {
    uint32_t x = 0;
    uint32_t y = 0;
    uint32_t width = 0;
    uint32_t height = 0;
};

// Pixels in memory in one of the formats above, in levels that halve from the picture down. Rows lie as in the file
// that they came from: the bottom row first for all picture files but DDS, whose top row is first. The name is the one
// that the image has in a model file.
class Image : public Inv::NamedResource {
public:
    static constexpr uint32_t MaxSide = 4096;

    // One level, whose content is undefined until it is written. Null for a type that doesn't exist and for sides that
    // it doesn't allow; callers with sides from a file ask AreSidesAllowed first.
    static std::unique_ptr<Image> Create(ImageType type, uint32_t width, uint32_t height, uint32_t mipCount = 1);
    // From 1 to 4096; powers of two for the compressed types.
    static bool AreSidesAllowed(ImageType type, uint32_t width, uint32_t height);
    static bool IsTypeKnown(uint32_t type);
    // The types in blocks.
    static bool IsTypeCompressed(uint32_t type);
    // The levels from these sides down to 1 by 1.
    static uint32_t GetMaxMipCount(uint32_t width, uint32_t height);
    // Bytes of the first `mipCount` levels.
    static uint64_t GetSizeFor(ImageType type, uint32_t width, uint32_t height, uint32_t mipCount = 1);

    ~Image() override;
    void SetName(const char* pName) override;
    // Levels that stay keep their content, new ones have none yet. Between 1 and what the sides allow.
    virtual void SetMipCount(uint32_t count);
    virtual uint32_t GetMipCount() const { return static_cast<uint32_t>(m_Levels.size()); }
    // Gives one level of the new size. Discard leaves its content undefined; otherwise what both sizes have of the
    // first level stays in place, and the rest is 0. False, and nothing changed, for sides that aren't allowed.
    virtual bool Resize(uint32_t width, uint32_t height, bool discard);
    // Copies a rectangle between first levels, which both images hold whole. False, with a log line, when one of them
    // doesn't, or the types differ. The images may be the same if the rectangles don't overlap.
    virtual bool Blt(const Image& source, const ImageRect& from, uint32_t x, uint32_t y) = 0;

    ImageType GetType() const { return m_Type; }
    uint32_t GetBitsPerPixel() const { return m_BitsPerPixel; }
    uint32_t GetWidth(uint32_t level = 0) const { return GetLevelSide(m_Width, level); }
    uint32_t GetHeight(uint32_t level = 0) const { return GetLevelSide(m_Height, level); }
    // The bytes of a level, rows or rows of blocks without padding. Empty past the last, which is the caller's mistake.
    std::span<uint8_t> GetData(uint32_t level = 0);
    std::span<const uint8_t> GetData(uint32_t level = 0) const;
    uint32_t GetDataSize(uint32_t level = 0) const { return static_cast<uint32_t>(GetData(level).size()); }
    // Of all levels together.
    uint64_t GetTotalSize() const;

    // Makes the second level the first. Nothing happens to the last one.
    void DropFirstLevel();

protected:
    Image(ImageType type, uint32_t bitsPerPixel) : m_Type(type), m_BitsPerPixel(bitsPerPixel) {}

    static constexpr uint32_t GetLevelSide(uint32_t side, uint32_t level) { return side >> level ? side >> level : 1; }
    // What Resize keeps from: rows of cells, which are pixels or blocks.
    struct Grid {
        size_t columns;
        size_t rows;
        size_t cellSize;
    };
    virtual Grid GetGrid(uint32_t width, uint32_t height) const = 0;

private:
    struct Level {
        uint32_t size = 0;
        std::unique_ptr<uint8_t[]> pData;
    };

    Level MakeLevel(uint32_t level) const;

    ImageType m_Type;
    uint32_t m_Width = 0;
    uint32_t m_Height = 0;
    std::vector<Level> m_Levels; // the largest first
    uint32_t m_BitsPerPixel;
};

// The image as one of its classes, which say their type; null when it is of another type.
template <class T>
T* ImageCast(Image* pImage) {
    return pImage && pImage->GetType() == T::Type ? static_cast<T*>(pImage) : nullptr;
}
template <class T>
const T* ImageCast(const Image* pImage) {
    return pImage && pImage->GetType() == T::Type ? static_cast<const T*>(pImage) : nullptr;
}
