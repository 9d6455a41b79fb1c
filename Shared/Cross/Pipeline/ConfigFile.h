#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

class ByteStream;

// A text file of sections with keys and values, as "pipeline.ini" is one:
//
//     ; a comment, on a line of its own
//     [Section]
//     Key = any text behind the first equals sign, without the blanks around it
//
// Lines end with CR LF. A line is at most 1023 bytes; a longer stretch without CR LF is cut into lines of that length,
// so a file whose lines end with LF alone is no file of this kind. Names of sections and keys go without regard to case
// and are kept in lower case, in name order. All access is by the current section.
class ConfigFile {
public:
    using Section = std::map<std::string, std::string, std::less<>>;
    using SectionMap = std::map<std::string, Section, std::less<>>;

    // Reads the file, by full name or alias path, in place of what was there. A line that can't be told is logged and
    // dropped; false only for a file that can't be opened. The first section is current then.
    bool Load(const char* pName);
    bool Load(ByteStream& stream, const char* pName);
    // Under the name given, or the loaded one for null. Comments and the order of the lines don't survive. False, and
    // a line in the log, when it can't be written.
    bool Save(const char* pName) const;

    bool IsLoaded() const { return m_Loaded; }
    const char* GetFileName() const { return m_FileName.c_str(); }

    // The name is under 256 characters. That the section exists isn't looked at. The previous one's name goes to the
    // buffer, cut to it, unless that is null.
    bool SelectSection(const char* pName, char* pPreviousOut = nullptr, uint32_t previousLen = 0);
    uint32_t GetSectionCount() const;
    // Null past the end, which is the caller's mistake; good until sections or keys change. So are key names.
    const char* GetSectionName(uint32_t index) const;
    uint32_t GetKeyCount() const;
    const char* GetKeyName(uint32_t index) const;

    // False if the section or the key is missing, or the value with its end doesn't fit; the buffer is empty then.
    bool GetValue(const char* pKey, char* pOut, uint32_t outLen) const;
    bool GetValue(const char* pKey, std::string& out) const;
    // Makes the section and the key if need be. Neither text may hold "=" or ";", which is the caller's mistake.
    bool SetValue(const char* pKey, const char* pValue);
    bool DeleteKey(const char* pKey);
    // Of the current section; the first one is current then.
    bool DeleteSection();

    // For those who take it all: an index costs a walk.
    const SectionMap& GetSections() const { return m_Sections; }

private:
    class Reader;

    const Section* GetCurrent() const;
    const std::string* FindValue(const char* pKey) const;
    void SelectFirst();

    std::string m_FileName;
    bool m_Loaded = false;
    std::string m_CurrentSection;
    SectionMap m_Sections;
};
