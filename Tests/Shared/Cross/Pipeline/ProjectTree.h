#pragma once

#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// A folder of a test's own for the project trees that it makes, and the services around it.
class ProjectTree : public testing::Test {
protected:
    ~ProjectTree() override {
        if (Pipeline::IsInitialized())
            Pipeline::Shutdown();
    }

    // The system's form of a path in the tree, which is given with backslashes.
    std::string Path(const std::string& relative = "") const { return m_Folder.Path(Slashes(relative)); }
    std::filesystem::path Native(const std::string& relative) const { return m_Root / Slashes(relative); }
    // Makes the folders on the way.
    void Write(const std::string& relative, const std::string& text) const { m_Folder.Write(Slashes(relative), text); }
    std::string Read(const std::string& relative) const { return m_Folder.Read(Slashes(relative)); }

    static std::string Slashes(std::string path) {
        std::ranges::replace(path, '\\', '/');
        return path;
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
    TempFolder m_Folder;
    const std::filesystem::path m_Root = m_Folder.Native();
};
