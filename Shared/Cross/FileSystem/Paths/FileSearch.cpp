#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/FileSystem/Wildcard.h"

#include <cstring>

namespace {

// One search through one source. Sources give names without their folder, so each is put behind the folder it is in.
struct Search {
    FilePath::Source& source;
    FilePath::FileListObj& list;
    std::string spec; // the last component
    bool recurse;
    FilePath::SEARCH_Type searchType;
};

void RecurseFindFiles(const Search& search, const std::string& folder);

bool Passes(FilePath::SEARCH_Type searchType, FilePath::Type type) {
    switch (searchType) {
    case FilePath::SEARCH_Files:
        return type == FilePath::Type_File;
    case FilePath::SEARCH_Folders:
        return type == FilePath::Type_Folder;
    case FilePath::SEARCH_Both:
        return true;
    }
    return false;
}

// Passes on what the search looks for.
class FileLO : public FilePath::FileListObj {
public:
    FileLO(const Search& search, const std::string& folder) : m_Search(search), m_Folder(folder) {}

    void Add(const char* pName) override {
        const std::string name = m_Folder + pName;
        if (Passes(m_Search.searchType, m_Search.source.GetType(name.c_str())))
            m_Search.list.Add(name.c_str());
    }

private:
    const Search& m_Search;
    const std::string& m_Folder;
};

// Goes down into every folder.
class FolderRecurseLO : public FilePath::FileListObj {
public:
    FolderRecurseLO(const Search& search, const std::string& folder) : m_Search(search), m_Folder(folder) {}

    void Add(const char* pName) override {
        std::string name = m_Folder + pName;
        // Nothing below such a long name could be opened.
        if (name.size() >= FilePath::MAXPATH || m_Search.source.GetType(name.c_str()) != FilePath::Type_Folder)
            return;
        RecurseFindFiles(m_Search, name.append(1, '\\'));
    }

private:
    const Search& m_Search;
    const std::string& m_Folder;
};

void RecurseFindFiles(const Search& search, const std::string& folder) {
    FileLO files(search, folder);
    search.source.Enumerate((folder + search.spec).c_str(), files);
    if (!search.recurse)
        return;
    FolderRecurseLO folders(search, folder);
    search.source.Enumerate((folder + "*").c_str(), folders);
}

} // namespace

FilePath::FileSet FilePath::FindFiles(const char* filespec, bool recurse, SEARCH_Type searchType) {
    if (filespec && *filespec == '\0')
        return {};
    const bool isUsable = filespec && strlen(filespec) <= MAXPATH;
    dbAssertText(isUsable, "filespec && *filespec != '\\0' && strlen( filespec ) <= MAXPATH");
    std::string path;
    const Paths* pPaths = isUsable ? FindPaths(filespec, path) : nullptr;
    if (!pPaths)
        return {};
    std::string prefix;
    FilePathUtil::CopyAlias(prefix, filespec);
    FileSet found((prefix + ":").c_str());
    const size_t split = path.rfind('\\') + 1;
    for (const Path& candidate : *pPaths)
        RecurseFindFiles({.source = *candidate.pSource,
                          .list = found,
                          .spec = path.substr(split),
                          .recurse = recurse,
                          .searchType = searchType},
                         path.substr(0, split));
    return found;
}

FilePath::FileSet::FileSet() : FileSet("") {}

FilePath::FileSet::FileSet(const char* pPrefix) : m_pNames(std::make_shared<Names>()), m_Prefix(pPrefix) {}

uint32_t FilePath::FileSet::GetCount() const { return static_cast<uint32_t>(m_pNames->names.size()); }

const char* FilePath::FileSet::operator[](uint32_t index) const {
    dbAssert(index <= GetCount());
    return index < GetCount() ? m_pNames->names[index].c_str() : "";
}

void FilePath::FileSet::Add(const char* pName) {
    std::string name = m_Prefix + pName;
    FilePathUtil::NormalizeAliasPath(name);
    // A name that no operation takes is no result.
    if (name.size() > MAXPATH)
        return;
    std::string folded = FoldCase(name);
    if (m_pNames->known.contains(folded))
        return;
    if (m_pNames.use_count() > 1)
        m_pNames = std::make_shared<Names>(*m_pNames);
    m_pNames->known.insert(std::move(folded));
    m_pNames->names.push_back(std::move(name));
}
