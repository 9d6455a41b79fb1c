#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// A folder of a test's own, empty at first and gone at its end.
class TestFolder : public testing::Test {
protected:
    TestFolder() {
        std::string path = (std::filesystem::temp_directory_path() / "pvxhost-test-XXXXXX").string();
        if (!mkdtemp(path.data()))
            throw std::runtime_error("no temporary folder");
        m_Folder = path;
    }
    ~TestFolder() override { std::filesystem::remove_all(m_Folder); }

    std::string At(const std::string& name) const { return (m_Folder / name).string(); }

    std::string Write(const std::string& name, const std::string& content) const {
        std::ofstream(m_Folder / name, std::ios::binary) << content;
        return At(name);
    }

    std::string Read(const std::string& name) const {
        std::ifstream in(m_Folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    // The names of what lies in the folder, sorted.
    std::vector<std::string> List() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_Folder))
            names.push_back(entry.path().filename().string());
        std::ranges::sort(names);
        return names;
    }

    std::filesystem::path m_Folder;
};
