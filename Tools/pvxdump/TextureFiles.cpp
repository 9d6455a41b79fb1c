#include "Tools/pvxdump/TextureFiles.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <utility>

#include "Shared/Cross/FileSystem/FileReplacement.h"
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

// The stream of a file that is finished elsewhere.
class PictureStream : public ByteStream {
public:
    explicit PictureStream(ByteStream& stream) : m_Stream(stream) { SetMode(Mode_Write); }

    uint32_t Read(void*, uint32_t) override { return 0; }
    uint32_t Write(const void* pSource, uint32_t size) override { return m_Stream.Write(pSource, size); }
    bool Flush() override { return m_Stream.Flush(); }
    bool Seek(uint32_t pos) override { return m_Stream.Seek(pos); }
    uint32_t GetPos() override { return m_Stream.GetPos(); }
    uint32_t GetLength() override { return m_Stream.GetLength(); }

private:
    ByteStream& m_Stream;
};

} // namespace

// Where pictures are saved to: takes one at a time and shows none. One that isn't finished leaves nothing of itself.
class TextureFiles::Folder : public FilePath::Source {
public:
    explicit Folder(std::shared_ptr<FilePathHD> pDisk) : m_pDisk(std::move(pDisk)) {}

    std::unique_ptr<ByteStream> Open(const char* pName, FilePath::Mode mode) override {
        if (mode != ByteStream::Mode_Write)
            return nullptr;
        m_WasAsked = true;
        m_pFile = m_pDisk->Replace(pName);
        return m_pFile ? std::make_unique<PictureStream>(m_pFile->GetStream()) : nullptr;
    }
    bool GetFullName(std::string&, const char*, FilePath::Mode) override { return false; }
    bool GetAliasName(std::string&, const char*) override { return false; }
    bool Delete(const char*) override { return false; }
    bool IsAccessible(const char*, FilePath::Mode) override { return false; }
    FilePath::Type GetType(const char*) override { return FilePath::Type_None; }
    void Enumerate(const char*, FilePath::FileListObj&) override {}

    void Begin() { m_WasAsked = false; }
    // Whether a file was asked for since Begin.
    bool WasAsked() const { return m_WasAsked; }
    // Puts the file that was opened last under its name, or takes away what there is of it.
    bool End(bool isWhole) {
        const std::unique_ptr<FileReplacement> pFile = std::exchange(m_pFile, nullptr);
        return isWhole && pFile && pFile->Finish();
    }

private:
    std::shared_ptr<FilePathHD> m_pDisk;
    std::unique_ptr<FileReplacement> m_pFile;
    bool m_WasAsked = false;
};

TextureFiles::TextureFiles(const std::string& folder) : m_Native(folder), m_Root(OSFile::FromNative(folder)) {
    const bool isTooLong = m_Root.size() >= FilePath::MAXPATH;
    std::shared_ptr<FilePathHD> pDisk;
    if (!m_Root.empty() && !isTooLong)
        pDisk = FilePathHD::Create(m_Root.c_str(), ByteStream::Mode_Write);
    m_pFolder = std::make_shared<Folder>(pDisk);
    if (!pDisk || !FilePath::AddSource(s_Alias, s_Source, 0, m_pFolder))
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

void TextureFiles::Fail(const std::string& name, const std::string& file) const {
    // Without a file it wasn't the system that failed.
    const std::string reason = m_pFolder->WasAsked()
                                   ? OSFile::LastErrorText() + "; make room there, or give --textures another folder"
                                   : "no picture file takes it; the file is shown without --textures";
    throw std::runtime_error("its texture '" + TextFormat::Name(name) + "' can't be written to '" + m_Native + "/" +
                             file + "': " + reason);
}

std::string TextureFiles::Write(const Texture& texture) {
    const std::string name = texture.GetName() ? texture.GetName() : "";
    std::string file = MakeUnique(MakeFileTitle(name)) + (texture.GetType() >= TextureType_DXT1 ? ".dds" : ".tga");
    const InterruptGuard guard(OSFile::ToNative(m_Root + file), OSFile::ToNative(GetUnfinishedName(m_Root + file)));
    m_pFolder->Begin();
    const bool isSaved = ra::SaveTexture((std::string(s_Alias) + ":" + file).c_str(), texture);
    if (!m_pFolder->End(isSaved))
        Fail(name, file);
    return file;
}
