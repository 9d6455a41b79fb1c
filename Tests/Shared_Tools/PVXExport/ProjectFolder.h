#pragma once

#include <filesystem>
#include <fstream>

#include "Shared/PC/Program/ProgramPath.h"

// Makes the folder a project's, found from there: its source tree lies in DataSource.
class ProjectFolder {
public:
    explicit ProjectFolder(const std::filesystem::path& folder) {
        std::ofstream ini(folder / "pipeline.ini", std::ios::binary);
        ini << "[project:Game]\r\n";
        for (const char* pKey : {"DataSource", "DataSourceShared", "DataBurn", "DataIntermediate", "DataGeneric",
                                 "DataFinal", "DataPreview", "LocaleFolder", "AttrLoc"})
            ini << pKey << '=' << pKey << "\r\n";
        ini << "Parent=\r\n";
        ini.close();
        ProgramPath::SetHome(folder.string());
    }
    ~ProjectFolder() { ProgramPath::SetHome(""); }
    ProjectFolder(const ProjectFolder&) = delete;
    ProjectFolder& operator=(const ProjectFolder&) = delete;
};
