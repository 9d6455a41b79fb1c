#pragma once

#include "Shared/PC/Program/ProgramPath.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

// Makes the folder a project's, found from there: its source tree lies in DataSource.
class ProjectFolder {
public:
    explicit ProjectFolder(const TempFolder& folder) {
        std::string ini = "[project:Game]\r\nParent=\r\n";
        for (const std::string key : {"DataSource", "DataSourceShared", "DataBurn", "DataIntermediate", "DataGeneric",
                                      "DataFinal", "DataPreview", "LocaleFolder", "AttrLoc"})
            ini += key + "=" + key + "\r\n";
        folder.Write("pipeline.ini", ini);
        ProgramPath::SetHome(folder.Native());
    }
    ~ProjectFolder() { ProgramPath::SetHome(""); }
    ProjectFolder(const ProjectFolder&) = delete;
    ProjectFolder& operator=(const ProjectFolder&) = delete;
};
