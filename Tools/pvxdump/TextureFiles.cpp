#include "Tools/pvxdump/TextureFiles.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>

#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Shared/Cross/RenderAnim/Files/TextureFile.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared/Cross/Util/Hash.h"
#include "Shared/PC/Console/InterruptGuard.h"
#include "Shared/PC/FileSystem/DiskFileReplacement.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Tools/pvxdump/TextFormat.h"

namespace {

constexpr const char* s_Alias = "PICTURES";
constexpr const char* s_Source = "HD";
constexpr size_t s_MaxTitle = 120; // characters, so that number and extension fit wherever the folder lies

// Letters and digits of every language, since their bytes are all above the ASCII range.
bool IsHarmless(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
           c == '-' || c == '.';
}

bool IsInsideCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

std::string ToLowerText(std::string text) {
    std::ranges::transform(text, text.begin(), ToLower);
    return text;
}

} // namespace

TextureFiles::TextureFiles(const std::string& folder) : m_Native(folder), m_Root(OSFile::FromNative(folder)) {
    const bool isTooLong = m_Root.size() >= FilePath::MAXPATH;
    std::shared_ptr<FilePathHD> pDisk;
    if (!m_Root.empty() && !isTooLong)
        pDisk = FilePathHD::Create(m_Root.c_str(), ByteStream::Mode_Write);
    if (!pDisk || !FilePath::AddSource(s_Alias, s_Source, 0, pDisk))
        throw std::runtime_error("no pictures can be written to the folder '" + folder +
                                 "': " + (isTooLong ? "its path is too long" : OSFile::LastErrorText()) +
                                 "; give --textures another folder");
    if (m_Root.back() != '\\')
        m_Root += '\\';
}

TextureFiles::~TextureFiles() { FilePath::RemoveSource(s_Alias, s_Source); }

std::string TextureFiles::MakeFileTitle(std::string_view name) {
    std::string title(name.substr(0, s_MaxTitle));
    if (name.size() > s_MaxTitle) {
        while (!title.empty() && IsInsideCharacter(name[title.size()]))
            title.pop_back();
    }
    std::ranges::replace_if(
        title, [](char c) { return !IsHarmless(c); }, '_');
    // The first point of a name would hide the file.
    if (title.starts_with('.'))
        title.front() = '_';
    return title.empty() ? "texture" : title;
}

std::string TextureFiles::MakeUnique(const std::string& title) {
    if (m_Taken.insert(ToLowerText(title)).second)
        return title;
    uint32_t& last = m_LastUsed.try_emplace(ToLowerText(title), 1).first->second;
    for (;;) {
        std::string numbered = title + "_" + std::to_string(++last);
        if (m_Taken.insert(ToLowerText(numbered)).second)
            return numbered;
    }
}

std::string TextureFiles::Write(const Texture& texture) {
    const std::string name = texture.GetName() ? texture.GetName() : "";
    std::string file = MakeUnique(MakeFileTitle(name)) + (texture.GetType() >= TextureType_DXT1 ? ".dds" : ".tga");
    const InterruptGuard guard(OSFile::ToNative(m_Root + file), OSFile::ToNative(GetUnfinishedName(m_Root + file)));
    if (!ra::SaveTexture((std::string(s_Alias) + ":" + file).c_str(), texture))
        throw std::runtime_error("its texture '" + TextFormat::Name(name) + "' can't be written to '" + m_Native + "/" +
                                 file + "': " + OSFile::LastErrorText() +
                                 "; make room there, or give --textures another folder");
    return file;
}
