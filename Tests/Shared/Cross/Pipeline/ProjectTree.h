#pragma once

#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// A folder of a test's own for the project trees that it makes, and the services around it.
class ProjectTree : public testing::Test {
protected:
    ProjectTree() {
        std::string name = (std::filesystem::temp_directory_path() / "pvx-Tree-XXXXXX").string();
        m_Root = mkdtemp(name.data());
    }
    ~ProjectTree() override {
        if (Pipeline::IsInitialized())
            Pipeline::Shutdown();
        std::filesystem::remove_all(m_Root);
    }

    // The system's form of a path in the tree, which is given with backslashes.
    std::string Path(const std::string& relative = "") const {
        return OSFile::FromNative(m_Root.string()) + (relative.empty() ? "" : "\\" + relative);
    }
    std::filesystem::path Native(std::string relative) const {
        std::ranges::replace(relative, '\\', '/');
        return m_Root / relative;
    }
    // Makes the folders on the way.
    void Write(const std::string& relative, const std::string& text) const {
        std::filesystem::create_directories(Native(relative).parent_path());
        std::ofstream(Native(relative), std::ios::binary) << text;
    }
    std::string Read(const std::string& relative) const {
        std::stringstream text;
        text << std::ifstream(Native(relative), std::ios::binary).rdbuf();
        return text.str();
    }

    // CR LF in place of each LF.
    static std::string Lines(const std::string& text) {
        std::string result;
        for (const char c : text)
            result += c == '\n' ? std::string("\r\n") : std::string(1, c);
        return result;
    }
    // A section with all keys, so that "art" has its source in art\src and so on.
    static std::string Project(const std::string& name, const std::string& folder, const std::string& further = "") {
        return "[Project:" + name + "]\nDescription=The " + name + "\nDataBurn=" + folder +
               "\\burn\nDataSource=" + folder + "\\src\nDataSourceShared=" + folder +
               "\\shared\nDataIntermediate=" + folder + "\\int\nDataGeneric=" + folder + "\\gen\nDataFinal=" + folder +
               "\\Data\nDataPreview=" + folder + "\\pre\nLocaleFolder=" + folder + "\\loc\nAttrLoc=attr\n" + further +
               (further.find("Parent") == std::string::npos ? "Parent=\n" : "");
    }

    int Initialize(const std::string& iniText) {
        Write("proj\\pipeline.ini", Lines(iniText));
        return Pipeline::Initialize(Path("proj\\x.pvx").c_str());
    }

    ReportCapture m_Reports;
    std::filesystem::path m_Root;
};
