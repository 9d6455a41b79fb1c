#include "Shared/Cross/Pipeline/ConfigFile.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/Pipeline/TextUtil.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <array>
#include <cstring>

namespace {

constexpr size_t s_MaxLine = 1023;
constexpr size_t s_MaxName = 256;
constexpr size_t s_ValueRoom = 2048;

std::unique_ptr<ByteStream> OpenByName(const char* pName, ByteStream::Mode mode) {
    if (FilePathUtil::HasAlias(pName))
        return FilePath::OpenStream(pName, mode);
    return FilePathHDRaw(mode == ByteStream::Mode_Read).Open(pName, mode);
}

void MakeWritable(const char* pName) {
    std::string full = pName;
    if (FilePathUtil::HasAlias(pName) && !FilePath::GetFullName(full, ByteStream::Mode_Write))
        return;
    const uint32_t attributes = OSFile::FileAttr(full.c_str());
    if ((attributes & OSFile::F_ATTRIBUTE_FILE) && !(attributes & OSFile::F_ATTRIBUTE_WRITABLE))
        OSFile::SetWritable(full.c_str(), true);
}

// As sections and keys are kept.
std::string ToName(std::string_view text) { return ToLower(text.substr(0, s_MaxName)); }

// Cuts a stream into lines.
class LineReader {
public:
    explicit LineReader(ByteStream& stream) : m_Stream(stream) {}

    // False at the end. The line is good until the next call.
    bool Read(std::string_view& line) {
        if (m_Available.size() < s_MaxLine)
            Fill();
        if (m_Available.empty())
            return false;
        const std::string_view piece = m_Available.substr(0, s_MaxLine);
        const size_t end = piece.find("\r\n");
        line = piece.substr(0, end);
        m_Available.remove_prefix(end != std::string_view::npos ? end + 2 : piece.size());
        return true;
    }

private:
    void Fill() {
        const size_t kept = m_Available.size();
        memmove(m_Buffer.data(), m_Available.data(), kept);
        const auto room = static_cast<uint32_t>(m_Buffer.size() - kept);
        m_Available = {m_Buffer.data(), kept + m_Stream.Read(m_Buffer.data() + kept, room)};
    }

    ByteStream& m_Stream;
    std::array<char, 0x4000> m_Buffer = {};
    std::string_view m_Available = {m_Buffer.data(), 0};
};

} // namespace

// Sorts the lines of a file into sections.
class ConfigFile::Reader {
public:
    Reader(SectionMap& sections, const char* pFileName) : m_Sections(sections), m_pFileName(pFileName) {}

    void Read(ByteStream& stream) {
        LineReader lines(stream);
        for (std::string_view line; lines.Read(line); ++m_Line)
            ReadLine(TrimLine(line));
    }

private:
    void ReadLine(std::string_view line) {
        if (line.empty() || line.front() == ';')
            return;
        if (line.front() == '[')
            ReadHeader(line);
        else
            ReadKey(line);
    }

    void ReadHeader(std::string_view line) {
        if (line.size() < 2 || line.back() != ']') {
            Report("Failed to read line %d from %s");
            return;
        }
        const std::string name = ToLower(TrimLine(line.substr(1, line.size() - 2)));
        const auto [it, isNew] = m_Sections.try_emplace(name);
        if (!isNew)
            Report("Duplicate section at line %d from %s");
        m_pSection = &it->second;
    }

    void ReadKey(std::string_view line) {
        const size_t equals = line.find('=');
        if (equals == std::string_view::npos || equals == 0)
            Report("Failed to read line %d from %s");
        else if (!m_pSection)
            Report("Key outside section at line %d from %s");
        else // the first one of a name stays
            m_pSection->try_emplace(ToLower(TrimLine(line.substr(0, equals))), TrimLine(line.substr(equals + 1)));
    }

    void Report(const char* pFormat) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
        dbWarningf(pFormat, m_Line, m_pFileName);
#pragma GCC diagnostic pop
    }

    SectionMap& m_Sections;
    const char* m_pFileName;
    Section* m_pSection = nullptr;
    int m_Line = 0;
};

bool ConfigFile::Load(const char* pName) {
    const std::unique_ptr<ByteStream> pStream = OpenByName(pName, ByteStream::Mode_Read);
    return pStream && Load(*pStream, pName);
}

bool ConfigFile::Load(ByteStream& stream, const char* pName) {
    m_FileName = pName;
    m_Sections.clear();
    Reader(m_Sections, m_FileName.c_str()).Read(stream);
    m_Loaded = true;
    SelectFirst();
    return true;
}

bool ConfigFile::Save(const char* pName) const {
    const char* const pTarget = pName ? pName : m_FileName.c_str();
    MakeWritable(pTarget);
    const std::unique_ptr<ByteStream> pStream = OpenByName(pTarget, ByteStream::Mode_Write);
    if (!pStream) {
        dbWarningf("Couldn't open config file %s for writing", pTarget);
        return false;
    }
    for (const auto& [name, section] : m_Sections) {
        pStream->WriteText(("[" + name + "]\n").c_str(), false);
        for (const auto& [key, value] : section)
            pStream->WriteText(std::string(key).append("=").append(value).append("\n").c_str(), false);
        pStream->WriteText("", true);
    }
    if (pStream->Flush())
        return true;
    dbWarningf("Couldn't write config file %s: %s", pTarget, OSFile::LastErrorText().c_str());
    return false;
}

void ConfigFile::SelectFirst() { m_CurrentSection = m_Sections.empty() ? "" : m_Sections.begin()->first; }

bool ConfigFile::SelectSection(const char* pName, char* pPreviousOut, uint32_t previousLen) {
    dbAssert(pName && strlen(pName) < s_MaxName);
    if (!pName || strlen(pName) >= s_MaxName)
        return false;
    if (pPreviousOut && previousLen > 0)
        CopyOut(std::string_view(m_CurrentSection).substr(0, previousLen - 1), pPreviousOut, previousLen);
    m_CurrentSection = ToName(pName);
    return true;
}

uint32_t ConfigFile::GetSectionCount() const { return static_cast<uint32_t>(m_Sections.size()); }

const char* ConfigFile::GetSectionName(uint32_t index) const {
    dbAssert(index < GetSectionCount());
    return index < GetSectionCount() ? std::next(m_Sections.begin(), index)->first.c_str() : nullptr;
}

const ConfigFile::Section* ConfigFile::GetCurrent() const {
    const auto it = m_Sections.find(m_CurrentSection);
    return it != m_Sections.end() ? &it->second : nullptr;
}

uint32_t ConfigFile::GetKeyCount() const {
    const Section* const pSection = GetCurrent();
    return pSection ? static_cast<uint32_t>(pSection->size()) : 0;
}

const char* ConfigFile::GetKeyName(uint32_t index) const {
    dbAssert(index < GetKeyCount());
    return index < GetKeyCount() ? std::next(GetCurrent()->begin(), index)->first.c_str() : nullptr;
}

const std::string* ConfigFile::FindValue(const char* pKey) const {
    const Section* const pSection = GetCurrent();
    if (!pSection)
        return nullptr;
    const auto it = pSection->find(ToName(pKey));
    return it != pSection->end() ? &it->second : nullptr;
}

bool ConfigFile::GetValue(const char* pKey, char* pOut, uint32_t outLen) const {
    const std::string* const pValue = FindValue(pKey);
    return CopyOut(pValue ? *pValue : "", pOut, outLen) && pValue;
}

bool ConfigFile::GetValue(const char* pKey, std::string& out) const {
    char value[s_ValueRoom];
    const bool found = GetValue(pKey, value, sizeof(value));
    out = value;
    return found;
}

bool ConfigFile::SetValue(const char* pKey, const char* pValue) {
    const bool readable = pKey && pValue && !strpbrk(pKey, "=;") && !strpbrk(pValue, "=;");
    dbAssertText(readable, "pKey && pValue && !strpbrk( pKey, \"=;\" ) && !strpbrk( pValue, \"=;\" )");
    if (!readable)
        return false;
    m_Sections[m_CurrentSection][ToName(pKey)] = pValue;
    return true;
}

bool ConfigFile::DeleteKey(const char* pKey) {
    const auto it = m_Sections.find(m_CurrentSection);
    return it != m_Sections.end() && it->second.erase(ToName(pKey)) > 0;
}

bool ConfigFile::DeleteSection() {
    const bool existed = m_Sections.erase(m_CurrentSection) > 0;
    SelectFirst();
    return existed;
}
