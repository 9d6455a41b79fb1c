#include "Shared_Tools/PVXExport/MeshBuilder.h"

#include <algorithm>
#include <memory>
#include <string>

#include "Host/Sdk/ClassIds.h"
#include "Host/Sdk/Material.h"
#include "Host/Sdk/Node.h"
#include "Host/Sdk/View.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/BoundVolume.h"
#include "Shared/Cross/RenderAnim/Mesh.h"
#include "Shared/Cross/Util/Hash.h"
#include "Shared_Tools/PVXExport/ExportContext.h"
#include "Shared_Tools/PVXExport/ExportScene.h"
#include "Shared_Tools/PVXExport/NodeRoles.h"
#include "Shared_Tools/PVXExport/PVXErrors.h"
#include "Shared_Tools/PVXExport/TextureMatrix.h"

namespace {

// The host renders a mesh for a view; what it gives for this one doesn't depend on it.
class NullView : public View {
public:
    NullView() {
        screenW = 640.0f;
        screenH = 480.0f;
    }
    Point2 ViewToScreen(Point3 point) override { return {point.x, point.y}; }
};

// Gives back a mesh that was made for us alone.
struct HostMeshDeleter {
    bool needDelete = false;
    void operator()(Mesh* pMesh) const {
        if (needDelete)
            pMesh->DeleteThis();
    }
};
using HostMeshPtr = std::unique_ptr<Mesh, HostMeshDeleter>;

HostMeshPtr GetHostMesh(Object& object, INode* pNode, TimeValue t) {
    if (object.SuperClassID() != GEOMOBJECT_CLASS_ID)
        return {};
    NullView view;
    bool needDelete = false;
    Mesh* pMesh = static_cast<GeomObject&>(object).GetRenderMesh(t, pNode, view, needDelete);
    return {pMesh, HostMeshDeleter{needDelete}};
}

int32_t ReadMinDetail(INode* pNode) {
    std::string detail;
    if (!pNode->GetUserPropString("MeshMinDetail", detail))
        return 0;
    if (EqualNoCase(detail, "Medium"))
        return 1;
    return EqualNoCase(detail, "High") ? 2 : 0;
}

} // namespace

bool MeshBuilder::BuildMeshes() {
    bool good = true;
    auto& nodes = m_Scene.m_MeshNodes;
    size_t kept = 0;
    for (size_t i = 0; i < nodes.size(); ++i) {
        Object* pObject = nodes[i].pNode->EvalWorldState(m_Context.m_Time, true).obj;
        if (!pObject) {
            PVXErrors::Get().Warning("Skipping node [%s].", nodes[i].pNode->GetName());
            continue;
        }
        if (kept != i)
            nodes[kept] = std::move(nodes[i]);
        MeshNode& meshNode = nodes[kept++];
        if (!BuildMesh(meshNode, *pObject)) {
            PVXErrors::Get().Error("'%s': Unable to build mesh!", meshNode.pNode->GetName());
            good = false;
        }
    }
    nodes.resize(kept);
    return good;
}

bool MeshBuilder::BuildMesh(MeshNode& meshNode, Object& object) {
    INode* pNode = meshNode.pNode;
    m_Form.Clear();
    if (!PVXUtil::IsMesh(pNode, m_Context.m_Time)) {
        PVXErrors::Get().Error("'%s': Node is not a mesh!", pNode->GetName());
        return false;
    }
    return ReadHostMesh(meshNode, object) && LayOut(pNode, *meshNode.meshRef.GetData());
}

// The host's mesh lives no longer than this: the two forms of a large one side by side are enough.
bool MeshBuilder::ReadHostMesh(MeshNode& meshNode, Object& object) {
    INode* pNode = meshNode.pNode;
    const HostMeshPtr pHostMesh = GetHostMesh(object, pNode, m_Context.m_Time);
    if (!pHostMesh) {
        PVXErrors::Get().Error("'%s': Unable to node to a mesh!", pNode->GetName());
        return false;
    }
    if (pHostMesh->numFaces <= 0) {
        PVXErrors::Get().Warning("'%s': has no faces!", pNode->GetName());
        return false;
    }
    ra::Mesh* pRAMesh = MakeMesh(meshNode);
    if (!pRAMesh || !ReadSurface(*pHostMesh, pNode))
        return false;
    SetShaders(pNode, *pRAMesh);
    return true;
}

ra::Mesh* MeshBuilder::MakeMesh(MeshNode& meshNode) {
    auto pMesh = std::make_unique<ra::Mesh>();
    pMesh->SetName(meshNode.pNode->GetName());
    pMesh->SetMinDetail(ReadMinDetail(meshNode.pNode));
    pMesh->SetChildSelection(!meshNode.pNode->UserPropExists("No_Child_Selection"));
    meshNode.meshRef.Set(std::move(pMesh));
    ra::Mesh* pRAMesh = meshNode.meshRef.GetData();
    dbAssert(pRAMesh);
    return pRAMesh;
}

bool MeshBuilder::ReadSurface(const Mesh& hostMesh, INode* pNode) {
    Mtl* pMtl = pNode->GetMtl();
    const Matrix3 tm = pNode->GetObjectTM(m_Context.m_Time);
    const CornerOrder order = HostMesh::GetCornerOrder(tm);
    m_UsedSlots.assign(static_cast<size_t>(std::max(pMtl ? pMtl->NumSubMtls() : 0, 1)), 0);
    HostMesh::ReadPositions(hostMesh, tm, m_Form);
    if (!HostMesh::ReadFaces(hostMesh, order, m_UsedSlots, m_Form))
        return false;
    MapSlots(pNode);
    return m_TexCoords.Read(hostMesh, order, m_SlotMappings, m_UsedSlots, m_Form);
}

void MeshBuilder::MapSlots(INode* pNode) {
    Mtl* pMtl = pNode->GetMtl();
    m_SlotMappings.assign(m_UsedSlots.size(), SlotMapping{});
    for (size_t slot = 0; slot < m_UsedSlots.size(); ++slot) {
        if (!m_UsedSlots[slot])
            continue;
        Mtl* pFaceMtl = GetMaterialOfSlot(pMtl, slot);
        m_SlotMappings[slot] = {TextureMatrix::OfFace(pFaceMtl),
                                pFaceMtl && (pFaceMtl->Requirements(-1) & MTLREQ_FACEMAP)};
    }
}

void MeshBuilder::SetShaders(INode* pNode, ra::Mesh& mesh) {
    m_UsedShaders.clear();
    m_Shaders.BuildForNode(pNode, m_UsedSlots, m_UsedShaders);
    SortShaders();

    mesh.SetShaderCount(static_cast<uint32_t>(m_ShaderOrder.size()));
    for (size_t i = 0; i < m_ShaderOrder.size(); ++i) {
        const char* pName = m_Scene.m_UsedShaders[m_ShaderOrder[i]].shader->GetName();
        ShaderRef shader;
        if (shader.Find(pName))
            mesh.SetShader(static_cast<uint32_t>(i), shader);
        else
            PVXErrors::Get().Error("Material '%s' is in mesh '%s', but is not used!", pName, pNode->GetName());
    }

    for (MeshFace& face : m_Form.cFace) {
        dbAssertText(face.iShader < m_RemapShader.size(),
                     "m_MeshNodes[ meshIndex ].cFace[ i ].iShader < remapShader.size()");
        const int32_t shader = m_RemapShader[face.iShader];
        dbAssertText(shader != -1, "remapShader[ m_MeshNodes[ meshIndex ].cFace[ i ].iShader ] != -1");
        face.iShader = static_cast<uint16_t>(std::max(shader, 0));
    }
}

void MeshBuilder::SortShaders() {
    m_ShaderOrder = m_UsedShaders;
    std::ranges::stable_sort(m_ShaderOrder, {}, [&](uint32_t used) { return m_Scene.m_UsedShaders[used].sortKey; });

    // Slots may have one material in common; the first place counts for all of them. Only this mesh's entries are
    // looked at, so that what others have left here doesn't matter.
    m_PlaceOfShader.resize(m_Scene.m_UsedShaders.size(), -1);
    for (size_t i = m_ShaderOrder.size(); i-- > 0;)
        m_PlaceOfShader[m_ShaderOrder[i]] = static_cast<int32_t>(i);

    m_RemapShader.assign(m_UsedSlots.size(), -1);
    for (size_t slot = 0, used = 0; slot < m_UsedSlots.size(); ++slot)
        if (m_UsedSlots[slot])
            m_RemapShader[slot] = m_PlaceOfShader[m_UsedShaders[used++]];
}

bool MeshBuilder::LayOut(INode* pNode, ra::Mesh& mesh) {
    PVXErrors& errors = PVXErrors::Get();
    const char* pName = pNode->GetName();
    if (!m_Skin.Build(pNode, m_Form, mesh)) {
        errors.Error("'%s': Can't build skinning info", pName);
        return false;
    }
    BoundVolume bounds;
    bounds.SetFromPoints(m_Form.cVertex);
    mesh.SetBoundVolume(bounds);
    if (!m_Normals.Build(m_Form)) {
        errors.Error("'%s': Can't build vertex normals. Make sure there is no vertices floating around and that "
                     "there's no triangles with two vertices on the same spot.",
                     pName);
        return false;
    }
    if (!m_Layout.BuildVertexSet(pName, m_Form, mesh)) {
        errors.Error("'%s': Can't build vertex set.", pName);
        return false;
    }
    mesh.SetPolyCount(ra::Mesh::Poly_High, static_cast<uint32_t>(m_Form.cFace.size()));
    if (!m_Layout.BuildPrimSets(m_Form, mesh)) {
        errors.Error("'%s': Can't build primitive set.", pName);
        return false;
    }
    return true;
}
