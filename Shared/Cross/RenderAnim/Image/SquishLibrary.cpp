#include "Shared/Cross/RenderAnim/Image/SquishLibrary.h"

#include <squish.h>

namespace {

constexpr char s_SquishLibraryName[] = "libsquish.so.0";
// squish::CompressMasked as the compiler names it.
constexpr char s_CompressName[] = "_ZN6squish14CompressMaskedEPKhiPviPf";

} // namespace

const SquishLibrary& SquishLibrary::Get() {
    static const SquishLibrary s_Library;
    return s_Library;
}

SquishLibrary::SquishLibrary() {
    if (!m_Module.LoadByName(s_SquishLibraryName)) {
        m_Error = m_Module.GetError();
        return;
    }
    m_pCompress = reinterpret_cast<decltype(&squish::CompressMasked)>(m_Module.Find(s_CompressName));
    if (!m_pCompress)
        m_Error = std::string(s_SquishLibraryName) + " lacks the operation for a block";
}
