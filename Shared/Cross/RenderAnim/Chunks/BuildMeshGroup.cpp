#include <string>
#include <unordered_map>
#include <utility>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Chunks/MeshGroupChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/XRefMesh.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"

namespace ra {

namespace {

void LogMissingXRef(const MeshEntryRecord& entry, const char* pModelName, MeshForm form) {
    if (form == MeshForm::Final)
        dbWarningf("MODELS -- Unable to load XREF Mesh '%s' from '%s'!", entry.name.c_str(), entry.xrefModel.c_str());
    else
        dbWarningf("MODELS -- '%s': Unable to load XREF Mesh '%s' from '%s'!", pModelName, entry.name.c_str(),
                   entry.xrefModel.c_str());
}

MeshRef FindXRefMeshOrMissing(const MeshEntryRecord& entry, const char* pModelName, MeshForm form) {
    if (MeshRef mesh = FindXRefMesh(entry.name, entry.xrefModel))
        return mesh;
    LogMissingXRef(entry, pModelName, form);
    return GetMissingMesh();
}

class Builder : public MeshGroupSink {
public:
    Builder(MeshGroup& group, const char* pModelName, MeshForm form)
        : m_Group(group), m_pModelName(pModelName), m_Form(form) {}

    void AddMesh(MeshRecord mesh) override {
        std::vector<MeshRef>& namesakes = m_Meshes[mesh.name].meshes;
        namesakes.push_back(BuildMesh(std::move(mesh)));
    }
    void SetEntries(std::vector<MeshEntryRecord> entries) override {
        m_Group.SetMeshCount(static_cast<uint32_t>(entries.size()));
        for (uint32_t i = 0; i < entries.size(); ++i)
            SetEntry(i, entries[i]);
    }
    void SetBoundVolume(const BoundVolume& volume) override { m_Group.SetBoundVolume(volume); }

private:
    struct Namesakes {
        std::vector<MeshRef> meshes; // in the order of the file
        size_t taken = 0;
    };

    void SetEntry(uint32_t index, const MeshEntryRecord& entry) {
        m_Group.SetMeshName(index, Name(entry.name.c_str()));
        if (!entry.xrefModel.empty())
            m_Group.SetXRefName(index, Name(entry.xrefModel.c_str()));
        m_Group.SetParentBone(index, entry.parentBone);
        const MeshRef mesh =
            entry.xrefModel.empty() ? TakeMesh(entry.name) : FindXRefMeshOrMissing(entry, m_pModelName, m_Form);
        if (mesh.IsValid())
            m_Group.SetMesh(index, mesh);
    }

    // Several nodes of a scene may bear one name: their meshes are taken in turn, and the last for all that follow.
    MeshRef TakeMesh(const std::string& name) {
        const auto it = m_Meshes.find(name);
        if (it == m_Meshes.end())
            throw Chunky::Exception(ChunkyError_BadChunk, "mesh group: there is no mesh '" + name + "' in the file");
        Namesakes& namesakes = it->second;
        if (namesakes.taken == namesakes.meshes.size())
            return namesakes.meshes.back();
        return namesakes.meshes[namesakes.taken++];
    }

    MeshGroup& m_Group;
    const char* m_pModelName;
    MeshForm m_Form;
    std::unordered_map<std::string, Namesakes> m_Meshes; // only ever looked up
};

} // namespace

std::unique_ptr<MeshGroup> BuildMeshGroup(Chunky& chunky, const char* pModelName, MeshForm form) {
    auto pGroup = std::make_unique<MeshGroup>();
    Builder builder(*pGroup, pModelName, form);
    ReadMeshGroup(chunky, builder, form);
    return pGroup;
}

} // namespace ra
