#include "Host/Gltf/Png/PngReader.h"

#include <png.h>

#include <cstring>
#include <vector>

namespace gltf {

namespace {

// Deflate can't make more of one byte.
constexpr uint64_t s_MostBytesOfByte = 1032;

// Reading one file. The library reports an error by a jump back to the operation that called it; so what calls it has
// nothing on its stack that would have to be destroyed, and allocates nothing.
class PngJob {
public:
    PngJob(std::span<const std::byte> png, PngPicture& picture, std::string& error)
        : m_Left(png), m_Size(png.size()), m_Picture(picture), m_Error(error),
          m_pPng(png_create_read_struct(PNG_LIBPNG_VER_STRING, this, OnError, OnWarning)),
          m_pInfo(m_pPng ? png_create_info_struct(m_pPng) : nullptr) {}
    ~PngJob() { png_destroy_read_struct(&m_pPng, &m_pInfo, nullptr); }
    PngJob(const PngJob&) = delete;
    PngJob& operator=(const PngJob&) = delete;

    bool Read(size_t room) {
        if (!m_pInfo) {
            m_Error = "the PNG library can't start";
            return false;
        }
        if (!ReadHeader()) {
            m_Error = m_Reason;
            return false;
        }
        if (!CheckSize())
            return false;
        Allocate(room);
        if (ReadRows())
            return true;
        m_Error = m_Reason;
        return false;
    }

private:
    static void OnError(png_structp pPng, png_const_charp pText) {
        auto& job = *static_cast<PngJob*>(png_get_error_ptr(pPng));
        std::strncpy(job.m_Reason, pText, sizeof job.m_Reason - 1);
        png_longjmp(pPng, 1);
    }
    static void OnWarning(png_structp, png_const_charp) {}
    static void OnRead(png_structp pPng, png_bytep pDest, size_t size) {
        auto& job = *static_cast<PngJob*>(png_get_io_ptr(pPng));
        if (size > job.m_Left.size())
            png_error(pPng, "it is cut off");
        std::memcpy(pDest, job.m_Left.data(), size);
        job.m_Left = job.m_Left.subspan(size);
    }

    bool ReadHeader() {
        if (setjmp(png_jmpbuf(m_pPng)))
            return false;
        png_set_read_fn(m_pPng, this, OnRead);
        // The sides are checked here, with a message of ours.
        png_set_user_limits(m_pPng, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
        // Nothing but the picture, its palette and its transparency: neither colour spaces nor texts, which may be
        // huge.
        png_set_keep_unknown_chunks(m_pPng, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
        png_read_info(m_pPng, m_pInfo);
        m_PackedRowSize = png_get_rowbytes(m_pPng, m_pInfo);
        m_Picture.width = png_get_image_width(m_pPng, m_pInfo);
        m_Picture.height = png_get_image_height(m_pPng, m_pInfo);
        m_Picture.hasAlpha = (png_get_color_type(m_pPng, m_pInfo) & PNG_COLOR_MASK_ALPHA) != 0 ||
                             png_get_valid(m_pPng, m_pInfo, PNG_INFO_tRNS) != 0;
        png_set_expand(m_pPng);
        png_set_scale_16(m_pPng);
        png_set_gray_to_rgb(m_pPng);
        png_set_bgr(m_pPng);
        png_set_interlace_handling(m_pPng);
        return true;
    }

    bool CheckSize() {
        const std::string sides = std::to_string(m_Picture.width) + " by " + std::to_string(m_Picture.height);
        if (m_Picture.width > s_LargestPngSide || m_Picture.height > s_LargestPngSide) {
            m_Error = "it has " + sides + " pixels, and " + std::to_string(s_LargestPngSide) + " a side is the most";
            return false;
        }
        if (m_PackedRowSize * uint64_t{m_Picture.height} > s_MostBytesOfByte * m_Size) {
            m_Error = "it claims " + sides + " pixels, more than its " + std::to_string(m_Size) + " bytes can hold";
            return false;
        }
        return true;
    }

    void Allocate(size_t room) {
        const size_t rowSize = size_t{m_Picture.width} * (m_Picture.hasAlpha ? 4 : 3);
        m_Picture.size = room + rowSize * m_Picture.height;
        m_Picture.pBytes = std::make_unique_for_overwrite<std::byte[]>(m_Picture.size);
        auto* const pEnd = reinterpret_cast<png_bytep>(m_Picture.pBytes.get()) + m_Picture.size;
        for (size_t row = 1; row <= m_Picture.height; ++row)
            m_Rows.push_back(pEnd - row * rowSize);
        m_RowSize = rowSize;
    }

    bool ReadRows() {
        if (setjmp(png_jmpbuf(m_pPng)))
            return false;
        png_read_update_info(m_pPng, m_pInfo);
        if (png_get_rowbytes(m_pPng, m_pInfo) != m_RowSize)
            png_error(m_pPng, "its rows have an unexpected size");
        png_read_image(m_pPng, m_Rows.data());
        return true;
    }

    std::span<const std::byte> m_Left;
    size_t m_Size;
    PngPicture& m_Picture;
    std::string& m_Error;
    char m_Reason[128] = {};
    png_structp m_pPng;
    png_infop m_pInfo;
    size_t m_PackedRowSize = 0; // in the file, unpacked from deflate
    size_t m_RowSize = 0;       // in the picture
    std::vector<png_bytep> m_Rows;
};

} // namespace

} // namespace gltf

// Its type has to stay gltf::PngReaderFunction.
extern "C" bool PvxReadPng(std::span<const std::byte> png, size_t room, gltf::PngPicture& picture, std::string& error) {
    return gltf::PngJob(png, picture, error).Read(room);
}
