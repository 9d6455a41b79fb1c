#pragma once

#include "Shared/Cross/FileSystem/ByteStream.h"
#include "Shared/Cross/FileSystem/FileReplacement.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

// Access to files by alias path, "ALIAS:folder\file.ext". An alias is a list of sources, each a root on disk or
// anything else that can open streams. Sources overlay each other: they are asked from the highest priority number
// down, among equals the one registered last first, and the first that succeeds wins.
//
// Failures are a log line and null, false or 0; an empty name fails without a line. The registry belongs to the main
// thread; nothing is registered while other threads open files.
class FilePath {
public:
    static constexpr uint32_t MAXPATH = 260; // longest path in characters

    using Mode = ByteStream::Mode;

    // The number of one registration, never given twice in a process.
    class SourceID {
    public:
        static constexpr uint32_t InvalidID = 0;

        SourceID() = default;
        SourceID(uint32_t value) : m_Value(value) {}
        bool operator==(const SourceID&) const = default;
        uint32_t GetValue() const { return m_Value; }

    private:
        uint32_t m_Value = InvalidID;
    };

    enum Type : uint32_t { Type_None = 0, Type_File = 1, Type_Folder = 2 };
    enum SEARCH_Type : uint32_t { SEARCH_Files = 0, SEARCH_Folders = 1, SEARCH_Both = 2 };

    // Is told of the names that a search finds.
    class FileListObj {
    public:
        virtual ~FileListObj() = default;
        virtual void Add(const char* pName) = 0;
    };

    // The result of a search: alias paths in normal form, in the order of the search, each once without regard to
    // case. Copies share the names until one of them is changed.
    class FileSet : public FileListObj {
    public:
        FileSet();
        // Names that are added are relative to the prefix, an alias with its colon.
        explicit FileSet(const char* pPrefix);

        uint32_t GetCount() const;
        // Empty past the end, which is the caller's mistake. Good until the set is changed.
        const char* operator[](uint32_t index) const;
        void Add(const char* pName) override;

    private:
        struct Names {
            std::vector<std::string> names;
            std::unordered_set<std::string> known; // in upper case
        };
        std::shared_ptr<Names> m_pNames;
        std::string m_Prefix;
    };

    // One place that an alias leads to. Names are relative to it, with backslashes.
    class Source {
    public:
        virtual ~Source() = default;
        // The name of the file outside of this system of aliases. False when this source doesn't have it.
        virtual bool GetFullName(std::string& out, const char* pName, Mode mode) = 0;
        // The reverse: the relative name of a full one. False when it doesn't lie here.
        virtual bool GetAliasName(std::string& out, const char* pFull) = 0;
        virtual std::unique_ptr<ByteStream> Open(const char* pName, Mode mode) = 0;
        virtual bool Delete(const char* pName) = 0;
        virtual bool IsAccessible(const char* pName, Mode mode) = 0;
        // Null, as this one answers, when the source can't write or only in place.
        virtual std::unique_ptr<FileReplacement> Replace(const char* pName);
        virtual Type GetType(const char* pName) = 0;
        // Names without their folder, files and folders alike.
        virtual void Enumerate(const char* pSpec, FileListObj& list) = 0;
        // The files changed since the last call, relative; false when the source doesn't know.
        virtual bool GetChanges(std::vector<std::string>& names);
    };

    // Refused, as a mistake: an empty alias or id, an alias of one character or with a colon, a priority below 0, an
    // id that the alias has already.
    static bool AddSource(const char* pAlias, const char* pId, int32_t priority, std::shared_ptr<Source> pSource);
    // By the id given to AddSource, or by the number of the registration. False when it isn't there.
    static bool RemoveSource(const char* pAlias, const char* pId);
    static bool RemoveSource(const char* pAlias, SourceID sourceID);

    // Null when no source has the file, without a log line: the caller knows whether that matters.
    static std::unique_ptr<ByteStream> OpenStream(const char* pName, Mode mode);
    // The same for writing a file whose content before is to stay until the new one is whole. From the first source
    // that can.
    static std::unique_ptr<FileReplacement> ReplaceFile(const char* pName);
    // From that source alone.
    static std::unique_ptr<ByteStream> OpenStream(const char* pName, Mode mode, SourceID sourceID);
    // From any, and tells which.
    static std::unique_ptr<ByteStream> OpenStreamFrom(const char* pName, Mode mode, SourceID& sourceID);
    // The source that would give the stream.
    static SourceID FindSource(const char* pName, Mode mode);

    // The full name in place of the alias path.
    static bool GetFullName(std::string& streamName, Mode mode);
    // The alias path in place of a full name. A name that has a registered alias stays as it is.
    static bool ToAliasName(std::string& name);
    static bool HasAlias(const char* pName);

    // The last component of the path may hold wildcards. A folder's files come ahead of those in its subfolders,
    // sources by priority.
    static FileSet FindFiles(const char* pFilespec, bool recurse, SEARCH_Type searchType);
    static Type GetType(const char* pName);
    // From the first source that has it. True too when none has.
    static bool Delete(const char* pName);

    // A watcher's name is an alias path with wildcards, "DATA:art\*.tga", where * crosses folders. PollChanges asks
    // every source for the files that have changed and tells the watchers whose name matches, case aside. A name is
    // used once.
    using WatchCallback = std::function<void(const char* pName)>;
    static bool AddWatcher(const char* pName, WatchCallback callback);
    static bool RemoveWatcher(const char* pName);
    static void PollChanges();

    // Told of every successful open: path as asked, alias, and the source's id under it.
    class OpenListener {
    public:
        virtual ~OpenListener() = default;
        virtual void OnOpen(const char* pPath, const char* pAlias, const char* pSourceId) = 0;
    };
    static void AddOpenListener(OpenListener& listener);
    static void RemoveOpenListener(OpenListener& listener);

private:
    // What is registered under an alias.
    struct Path {
        std::string id;
        SourceID sourceID;
        int32_t priority = 0;
        std::shared_ptr<Source> pSource;
    };
    using Paths = std::vector<Path>; // in the order in which they are asked
    class Registry;

    static Registry& GetRegistry();
    static Paths* FindPaths(const char* pName, std::string& path);
    static std::unique_ptr<ByteStream> OpenFirst(const char* pName, Mode mode, SourceID wanted, SourceID& found);
};
