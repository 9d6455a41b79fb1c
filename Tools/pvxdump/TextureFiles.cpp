#include "Tools/pvxdump/TextureFiles.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>

#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Shared/Cross/RenderAnim/Files/TextureFile.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared/Cross/Util/Hash.h"
#include "Shared/PC/FileSystem/OSFile.h"

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

TextureFiles::TextureFiles(const std::string& folder) : m_Folder(folder) {
    const std::string root = OSFile::FromNative(folder);
    std::shared_ptr<FilePathHD> pRoot;
    if (!root.empty())
        pRoot = FilePathHD::Create(root.c_str(), ByteStream::Mode_Write);
    if (!pRoot || !FilePath::AddSource(s_Alias, s_Source, 0, pRoot))
        throw std::runtime_error("no pictures can be written to the folder '" + folder +
                                 "': " + OSFile::LastErrorText());
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
    if (!ra::SaveTexture((std::string(s_Alias) + ":" + file).c_str(), texture))
        throw std::runtime_error("its texture '" + name + "' can't be written to '" + m_Folder + "/" + file + "'");
    return file;
}
