#pragma once

#include "Shared/PC/FileSystem/OSFile.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>

// A folder of the test's own, with verbs for what is in it.
class LogFolder : public testing::Test {
protected:
    LogFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "pvxlogXXXXXX").string();
        m_Folder = mkdtemp(pattern.data());
    }
    ~LogFolder() override { std::filesystem::remove_all(m_Folder); }

    // In the system's form.
    std::string GetPath(const std::string& name) const { return OSFile::FromNative((m_Folder / name).string()); }
    static std::string ReadNative(const std::filesystem::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    std::string Read(const std::string& name) const { return ReadNative(m_Folder / name); }

    std::filesystem::path m_Folder;
};
