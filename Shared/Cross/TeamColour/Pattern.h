#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

class Image;

// How a texture is painted in a team's colours: for each colour a layer, which says pixel by pixel how strongly that
// colour applies, and the places of the team's badge and banner. The layers lie as the texture does, its pixels in
// memory order.
class Pattern {
public:
    // The numbers are in files.
    enum Layer : int32_t {
        LAYER_PRIMARY = 0,
        LAYER_SECONDARY = 1,
        LAYER_TRIM = 2,
        LAYER_WEAPONS = 3,
        LAYER_EYES = 4,
        LAYER_DIRT = 5,
        LAYER_PATTERN_COUNT = 6,
    };
    static constexpr size_t SchemeNameSize = 32; // with the terminator
    // "primary", "secondary" and so on; empty for an index out of range, which is a mistake.
    static const char* GetLayerName(int32_t layer);

    // A place on the texture, in pixels from the first one in memory.
    struct Rect {
        float x = 0.0f;
        float y = 0.0f;
        float width = 0.0f; // 0 when there is none
        float height = 0.0f;

        bool IsPresent() const { return width != 0.0f; }
        bool operator==(const Rect&) const = default;
    };

    Pattern();
    virtual ~Pattern();
    Pattern(Pattern&& other) noexcept;
    Pattern& operator=(Pattern&& other) noexcept;

    // "default" at first. A longer name than there is room for is a mistake and is cut.
    const char* GetSchemeName() const { return m_SchemeName.data(); }
    void SetSchemeName(const char* pSchemeName);

    uint32_t GetWidth() const { return m_Width; }
    uint32_t GetHeight() const { return m_Height; }
    // Layers of another size are dropped.
    void SetSize(uint32_t width, uint32_t height);
    // Bytes of a layer.
    uint64_t GetLayerSize() const { return uint64_t{m_Width} * m_Height; }

    // A byte a pixel; empty for a layer that isn't there. An index out of range is a mistake: there is no such layer.
    std::span<const uint8_t> GetLayer(int32_t layer) const;
    bool HasLayer(int32_t layer) const { return !GetLayer(layer).empty(); }
    // As many bytes as the pattern has pixels; any other number is a mistake and changes nothing. None takes the layer
    // away.
    void SetLayer(int32_t layer, std::vector<uint8_t> bytes);

    // What dirt looks like, as RGBA32; null without one.
    const Image* GetDirtImage() const { return m_pDirtImage.get(); }
    void SetDirtImage(std::unique_ptr<Image> pImage);

    const Rect& GetBadge() const { return m_Badge; }
    void SetBadge(const Rect& badge) { m_Badge = badge; }
    const Rect& GetBanner() const { return m_Banner; }
    void SetBanner(const Rect& banner) { m_Banner = banner; }

    // Pattern files, ".otp", by alias path. False, with a line in the log, for a file that can't be opened, read or
    // written; a pattern that wasn't loaded is as it was before, and so is a file that wasn't saved.
    static bool Load(const char* pPath, Pattern& pattern);
    static bool Save(const char* pPath, const Pattern& pattern);
    // Where the pattern of a texture lies: beside it, as "<name>_<scheme>.otp", and under "DATA" when the texture's
    // name has no alias. False, and an empty path, when that path is too long.
    static bool GetPatternFilename(std::string& outPath, const char* pTextureName, const char* pSchemeName);
    // Whether that file can be opened.
    static bool Exists(const char* pTextureName, const char* pSchemeName);

private:
    static bool IsLayer(int32_t layer);

    std::array<char, SchemeNameSize> m_SchemeName = {};
    uint32_t m_Width = 0;
    uint32_t m_Height = 0;
    std::array<std::vector<uint8_t>, LAYER_PATTERN_COUNT> m_Layers;
    std::unique_ptr<Image> m_pDirtImage;
    Rect m_Badge;
    Rect m_Banner;
};
