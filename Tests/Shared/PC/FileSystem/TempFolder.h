#pragma once

#include "Shared/PC/FileSystem/OSFile.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

// A folder of its own on disk, gone with its object. Names are native and relative to it.
class TempFolder {
public:
    TempFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "PvxTest.XXXXXX").string();
        m_Path = std::filesystem::canonical(mkdtemp(pattern.data()));
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_Path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::string Native(const std::string& name = "") const { return name.empty() ? m_Path : m_Path / name; }
    // The same in the system's form; what stands behind the folder may be in any spelling.
    std::string Path(const std::string& name = "") const { return OSFile::FromNative(Native(name)); }

    void MakeFolder(const std::string& name) const { std::filesystem::create_directories(m_Path / name); }
    void Write(const std::string& name, const std::string& text) const {
        std::filesystem::create_directories((m_Path / name).parent_path());
        std::ofstream(m_Path / name, std::ios::binary) << text;
    }
    std::string Read(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(m_Path / name, std::ios::binary).rdbuf();
        return text.str();
    }
    bool Has(const std::string& name) const { return std::filesystem::exists(m_Path / name); }
    void Remove(const std::string& name) const { std::filesystem::remove_all(m_Path / name); }
    void Rename(const std::string& from, const std::string& to) const {
        std::filesystem::rename(m_Path / from, m_Path / to);
    }

private:
    std::filesystem::path m_Path;
};

// As a root that the system keeps in upper case reaches it.
inline std::string UpperCase(std::string path) {
    for (char& character : path)
        if (character >= 'a' && character <= 'z')
            character = static_cast<char>(character - 'a' + 'A');
    return path;
}
