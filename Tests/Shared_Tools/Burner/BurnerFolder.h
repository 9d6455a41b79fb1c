#pragma once

#include "Shared/PC/Debug/Process.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

// A folder with a project, and another that stands for the network with a burner in it: the stand-in, or the program
// itself. Pipes have a folder of their own as long as it lives.
class BurnerFolder {
public:
    explicit BurnerFolder(const std::string& program) {
        m_Folder.MakeFolder("net");
        std::filesystem::copy_file(Process::GetExecutableFolder() + program, m_Folder.Native("net/BurnerImp.exe"));
        for (const char* pName : {"tools", "gen", "fin"})
            m_Folder.MakeFolder(pName);
        WriteIni(GetIni());
        setenv("PVX_PIPES", m_Folder.Native("pipes").c_str(), 1);
        setenv("BURNER_STANDIN_LOG", m_Folder.Native("log").c_str(), 1);
    }
    ~BurnerFolder() {
        for (const char* pName : {"PVX_PIPES", "BURNER_STANDIN", "BURNER_STANDIN_LOG"})
            unsetenv(pName);
    }
    BurnerFolder(const BurnerFolder&) = delete;
    BurnerFolder& operator=(const BurnerFolder&) = delete;

    static std::string GetIni(const std::string& port = "") {
        return "[global]\r\nToolsData=tools\r\n[burner]\r\nburnerPath=net\r\n[p4]\r\nRevControlPort=" + port +
               "\r\n[project:a]\r\nDescription=a\r\nDataBurn=b\r\nDataSource=s\r\nDataSourceShared=h\r\n"
               "DataIntermediate=i\r\nDataGeneric=gen\r\nDataFinal=fin\r\nDataPreview=p\r\nLocaleFolder=l\r\n"
               "AttrLoc=x\r\nParent=\r\n";
    }
    void WriteIni(const std::string& text) const { m_Folder.Write("pipeline.ini", text); }

    const TempFolder& Get() const { return m_Folder; }
    std::string Path(const std::string& name = "") const { return m_Folder.Path(name); }
    void Write(const std::string& name, const std::string& text) const { m_Folder.Write(name, text); }
    std::string Read(const std::string& name) const { return m_Folder.Read(name); }
    bool Has(const std::string& name) const { return m_Folder.Has(name); }

    // The stand-in's steps, and its log line by line.
    static void Play(const std::string& steps) { setenv("BURNER_STANDIN", steps.c_str(), 1); }
    std::vector<std::string> GetLog() const {
        std::vector<std::string> lines;
        std::istringstream text(m_Folder.Read("log"));
        for (std::string line; std::getline(text, line);)
            lines.push_back(line);
        return lines;
    }

    // What a job must not leave: a name on the pipe's folder, and the copy that ran.
    bool IsClean() const {
        const std::vector<std::string> log = GetLog();
        return (!Has("pipes") || std::filesystem::is_empty(m_Folder.Native("pipes"))) &&
               (log.empty() || !std::filesystem::exists(log[0]));
    }

private:
    TempFolder m_Folder;
};
