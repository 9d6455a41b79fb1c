#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "Shared/Cross/RenderAnim/Image/PixelFormats.h"

// The JPEG library, which is loaded by name, so that programs start without it and do without it. Rows are bottom up.
// Failures are false with the library's reason.
class JpegLibrary {
public:
    // Of the process; loaded when first asked for.
    static const JpegLibrary& Get();
    explicit JpegLibrary(const char* pLibraryName);
    ~JpegLibrary();
    JpegLibrary(const JpegLibrary&) = delete;
    JpegLibrary& operator=(const JpegLibrary&) = delete;

    bool IsLoaded() const { return m_pEntries != nullptr; }
    // Why it isn't.
    const std::string& GetError() const { return m_Error; }

    bool ReadSize(std::span<const uint8_t> file, uint32_t& width, uint32_t& height, std::string& error) const;
    // Opaque pixels, as many as ReadSize told. A file that the library can only guess at counts as a failure.
    bool Read(std::span<const uint8_t> file, uint32_t width, uint32_t height, std::span<Colour> pixels,
              std::string& error) const;
    // One pass over three channels, in the best quality.
    bool Write(std::span<const Colour_RGB888> pixels, uint32_t width, uint32_t height, std::vector<uint8_t>& file,
               std::string& error) const;

private:
    struct Entries;

    std::unique_ptr<Entries> m_pEntries;
    std::string m_Error;
};
