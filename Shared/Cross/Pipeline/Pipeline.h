#pragma once

#include <cstdint>
#include <memory>
#include <string>

struct PipelineData;

// What "pipeline.ini" says of a studio's projects: where each keeps its source art, intermediate, generic and final
// files, and which project it inherits from. Every tool finds the file by itself, by walking up from where it starts.
// One instance a process, used by one thread, between Initialize and Shutdown.
class Pipeline {
public:
    // The folders of a project; each fills an alias of its own when it is mapped.
    enum DataKind : uint32_t {
        Kind_Source = 0,       // "DATASRC"
        Kind_SourceShared = 1, // "DATASRCSHARED"
        Kind_Burn = 2,         // no alias: can't be mapped
        Kind_Intermediate = 3, // "INTERM"
        Kind_Generic = 4,      // "GENERIC"
        Kind_Final = 5,        // "DATA"
        Kind_Locale = 6,       // "LOCALE"
        Kind_Preview = 7,      // "PREVIEW"
        Kind_AttrLoc = 8,      // "AttrLoc"
    };
    static constexpr uint32_t KindCount = 9;

    enum Result : int {
        Result_Ok = 0,
        Result_NoFile = 1,    // no "pipeline.ini" on the way up
        Result_BadFile = 2,   // it can't be read, or holds no section
        Result_NoProject = 3, // a project lacks a key, or there is none
    };

    class Mapper;

    // Looks for "pipeline.ini" in the folder of startPath, the full path of a file, and in each folder above it. Null
    // starts from the program's own place (see ProgramPath.h). All but 0 leave no instance; the reason is in the log
    // and in GetInitializeError, with the places that were looked at. 0 tells the crash filter of the
    // configuration's reporter, too.
    static int Initialize(const char* pStartPath);
    static const std::string& GetInitializeError();
    static void Shutdown();
    // Null between Shutdown and Initialize, which is the caller's mistake. IsInitialized asks.
    static Pipeline* Get();
    static bool IsInitialized();

    // The file in use.
    const char* GetIniFile() const;

    // Values of the sections that aren't projects, section and key without regard to case. False for an unknown one;
    // a value that doesn't fit the buffer with its end is the caller's mistake, and false. The buffer is empty then.
    bool GetString(const char* pSection, const char* pKey, char* pOut, uint32_t outLen) const;
    bool GetString(const char* pSection, const char* pKey, std::string& out) const;
    // The same; a path without a drive counts from the folder of the ini file.
    bool GetPath(const char* pSection, const char* pKey, char* pOut, uint32_t outLen) const;
    bool GetPath(const char* pSection, const char* pKey, std::string& out) const;
    // False, and 0, if not the whole value is a number.
    bool GetFloat(const char* pSection, const char* pKey, float& out) const;
    // "true", "yes", "1", "false", "no", "0"; false for all else.
    bool GetBool(const char* pSection, const char* pKey, bool& out) const;

    // Sections that aren't projects, and projects, both in name order. Names are in lower case. Null past the end,
    // which is the caller's mistake.
    uint32_t SectionCount() const;
    const char* GetSectionName(uint32_t index) const;
    uint32_t ProjectCount() const;
    const char* GetProjectName(uint32_t index) const;

    // Projects are looked up without regard to case. Null for an unknown one.
    bool HasProject(const char* pName) const;
    const char* GetDescription(const char* pName) const;
    const char* GetParent(const char* pName) const;
    const char* GetFolder(const char* pName, DataKind kind) const;
    // A path as the search for a file's project takes it: absolute, with backslashes and without dots, by its text.
    static std::string GetFullPath(const char* pPath);
    // The first project whose folder of the kind is the path or lies above it; null if there is none.
    const char* FindProjectForFile(const char* pFullPath, DataKind kind) const;

    // What maps the project's folders to the kind's alias, with those of its parents unless projectOnly. Empty for an
    // unknown project.
    Mapper CreateMapper(const char* pProjectName, DataKind kind, bool projectOnly) const;

    ~Pipeline();

private:
    explicit Pipeline(std::unique_ptr<PipelineData> pData);

    std::unique_ptr<PipelineData> m_pData;

    static std::unique_ptr<Pipeline> s_instance;
};

// A handle on the mapping of a project to an alias; copies share it, and the last one to go unmaps it. The project
// outranks its extra folders, those its parent, and a grandparent is asked last: priorities from 200 downward.
class Pipeline::Mapper {
public:
    Mapper() = default;

    // Adds the folders to the alias. A folder that can't be mapped is logged and left out. Mapping an empty or a mapped
    // one is the caller's mistake. Folders that don't exist are made, except for reading only.
    void Map();
    void MapReadOnly();
    void Unmap();

    // Empty for an empty handle.
    const char* GetProject() const;
    // Without regard to case. Null asks whether there is no project.
    bool IsProject(const char* pName) const;
    // Whether the project of this name is a parent of the mapper's, at any distance.
    bool IsChildOf(const char* pName) const;
    bool IsEmpty() const;

private:
    friend class Pipeline;
    struct Mapping;
    struct Shared;

    void MapAs(bool readOnly);

    std::shared_ptr<Shared> m_shared;
};
