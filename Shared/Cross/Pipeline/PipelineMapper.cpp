#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Shared/Cross/Pipeline/PipelineData.h"
#include "Shared/Cross/Pipeline/TextUtil.h"

#include <algorithm>
#include <cstdio>
#include <set>

namespace {

constexpr int32_t s_FirstPriority = 200;

// By data kind; null where there is none.
constexpr const char* s_Aliases[Pipeline::KindCount] = {"DATASRC", "DATASRCSHARED", nullptr,   "INTERM", "GENERIC",
                                                        "DATA",    "LOCALE",        "PREVIEW", "AttrLoc"};

} // namespace

struct Pipeline::Mapper::Mapping {
    std::string id;
    std::string folder;
    bool readOnly = false;
    bool added = false; // to the alias, by the last Map
};

struct Pipeline::Mapper::Shared {
    ~Shared() {
        const dbNoThrowScope noThrow;
        if (mapped)
            Unmap();
    }

    void AddProject(const PipelineProject& added, DataKind kind);
    void Map(bool readOnly);
    void Unmap();

    const char* pAlias = nullptr;
    std::string project;
    std::vector<std::string> parents; // nearest first; the last one may be unknown
    std::vector<Mapping> mappings;
    bool mapped = false;
};

void Pipeline::Mapper::Shared::AddProject(const PipelineProject& added, DataKind kind) {
    mappings.push_back({added.name, added.folders[kind]});
    if (kind != Kind_Final)
        return;
    for (size_t i = 0; i < added.extras.size(); ++i) {
        char number[16];
        snprintf(number, sizeof(number), "%02d", static_cast<int>(i + 1));
        mappings.push_back({added.name + "-extra-" + number, added.extras[i], true});
    }
}

void Pipeline::Mapper::Shared::Map(bool readOnly) {
    // From here on, so that whatever was added goes again if one of the sources throws.
    mapped = true;
    int32_t priority = s_FirstPriority;
    std::set<std::string_view> ids;
    for (Mapping& mapping : mappings) {
        // What an ini file can do wrong is no mistake of ours: it doesn't reach the assertions of the sources.
        const bool possible = priority >= 0 && !mapping.folder.empty() && mapping.folder.size() < FilePath::MAXPATH &&
                              ids.insert(mapping.id).second;
        const auto mode = readOnly || mapping.readOnly ? ByteStream::Mode_Read : ByteStream::Mode_Both;
        auto pSource = possible ? FilePathHD::Create(mapping.folder.c_str(), mode) : nullptr;
        mapping.added = pSource && FilePath::AddSource(pAlias, mapping.id.c_str(), priority, std::move(pSource));
        if (!mapping.added)
            dbWarningf("PIPELINE -- Failed to map pipeline alias '%s', folder '%s'", pAlias, mapping.folder.c_str());
        --priority;
    }
}

void Pipeline::Mapper::Shared::Unmap() {
    mapped = false;
    for (Mapping& mapping : mappings)
        if (std::exchange(mapping.added, false))
            FilePath::RemoveSource(pAlias, mapping.id.c_str());
}

Pipeline::Mapper Pipeline::CreateMapper(const char* pProjectName, DataKind kind, bool projectOnly) const {
    Mapper mapper;
    const bool isMappable = kind < KindCount && s_Aliases[kind];
    dbAssertText(!projectOnly || pProjectName, "projectName != NULL");
    dbAssert(isMappable);
    if ((projectOnly && !pProjectName) || !isMappable)
        return mapper;
    const PipelineProject* pProject = pProjectName ? m_pData->FindProject(pProjectName) : nullptr;
    if (pProjectName && !pProject)
        return mapper;
    mapper.m_shared = std::make_shared<Mapper::Shared>();
    Mapper::Shared& shared = *mapper.m_shared;
    shared.pAlias = s_Aliases[kind];
    if (!pProject)
        return mapper;
    shared.project = pProject->name;
    shared.AddProject(*pProject, kind);
    std::set<const PipelineProject*> seen = {pProject};
    while (!pProject->parent.empty()) {
        shared.parents.push_back(pProject->parent);
        pProject = m_pData->FindProject(pProject->parent.c_str());
        if (!pProject)
            break;
        if (!seen.insert(pProject).second) {
            dbWarningf("PIPELINE -- the parents of project '%s' run in a circle at '%s'", shared.project.c_str(),
                       pProject->name.c_str());
            break;
        }
        if (!projectOnly)
            shared.AddProject(*pProject, kind);
    }
    return mapper;
}

void Pipeline::Mapper::MapAs(bool readOnly) {
    const bool canMap = m_shared && !m_shared->mapped && !m_shared->mappings.empty();
    dbAssertText(canMap, "m_shared.get() != NULL && !m_shared->mapped && !m_shared->mappings.empty()");
    if (canMap)
        m_shared->Map(readOnly);
}

void Pipeline::Mapper::Map() { MapAs(false); }

void Pipeline::Mapper::MapReadOnly() { MapAs(true); }

void Pipeline::Mapper::Unmap() {
    const bool canUnmap = m_shared && m_shared->mapped && !m_shared->mappings.empty();
    dbAssertText(canUnmap, "m_shared->mapped && !m_shared->mappings.empty()");
    if (canUnmap)
        m_shared->Unmap();
}

const char* Pipeline::Mapper::GetProject() const { return m_shared ? m_shared->project.c_str() : ""; }

bool Pipeline::Mapper::IsProject(const char* pName) const { return EqualNoCase(GetProject(), pName ? pName : ""); }

bool Pipeline::Mapper::IsChildOf(const char* pName) const {
    return m_shared && pName && std::ranges::any_of(m_shared->parents, [&](const std::string& parent) {
               return EqualNoCase(parent, pName);
           });
}

bool Pipeline::Mapper::IsEmpty() const { return !m_shared || m_shared->mappings.empty(); }
