#include "Host/Gltf/SceneBuilder.h"

#include "Host/Gltf/SkinData.h"
#include "Host/Scene/Build.h"
#include "Host/Scene/Objects.h"
#include "Host/Sdk/Core.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace gltf {

namespace {

constexpr float s_DefaultTargetDistance = 1.0f;
constexpr size_t s_LongestXRefPath = 259; // the system's

scene::GeometryClass GetGeometryClass(const NodeExtras& extras) {
    switch (extras.nodeClass.value_or(NodeClass::Mesh)) {
    case NodeClass::Patch:
        return scene::GeometryClass::Patch;
    case NodeClass::Bone:
        return scene::GeometryClass::Bone;
    case NodeClass::Box:
        return scene::GeometryClass::Box;
    default:
        return scene::GeometryClass::EditMesh;
    }
}

std::string WeightThem(uint32_t vertexCount) { return vertexCount == 1 ? "weight it" : "weight them"; }

// The exporter names the shader of a mesh without a material after its node; a material of that name would be taken for
// it.
std::vector<std::string> FindShaderNames(const SceneFile& file, const NodeTree& tree) {
    const Json* pMeshes = FindArray({}, file.GetRoot(), "meshes");
    std::vector<std::string> names;
    for (const NodeRecord& node : tree.nodes) {
        if (!pMeshes || node.mesh < 0)
            continue;
        const Json& mesh = (*pMeshes)[static_cast<rapidjson::SizeType>(node.mesh)];
        const Json* pPrimitives = mesh.IsObject() ? FindArray({}, mesh, "primitives") : nullptr;
        if (pPrimitives && std::ranges::none_of(pPrimitives->GetArray(), [](const Json& primitive) {
                return primitive.IsObject() && FindMember(primitive, "material");
            }))
            names.push_back(node.name);
    }
    return names;
}

} // namespace

SceneBuilder::SceneBuilder(const SceneFile& file, const std::string& path, const LoadOptions& options,
                           const Messages& messages, scene::Scene& scene)
    : m_File(file), m_Options(options), m_Messages(messages), m_Scene(scene),
      m_pBuffers(std::make_shared<BufferStore>(file)), m_Tree(ReadNodeTree(file, m_NodeNames)),
      m_Clip(ReadClip(file, *m_pBuffers, m_Tree, options, messages)),
      m_Materials(file, path, *m_pBuffers, messages, scene, FindShaderNames(file, m_Tree)),
      m_Meshes(file.CountOf("meshes")), m_Nodes(m_Tree.nodes.size()), m_KeepsFrame(m_Tree.nodes.size()) {}

void SceneBuilder::Build() {
    m_Scene.SetAnimRange(GetRange(m_Clip, GetTicksPerFrame()));
    for (const uint32_t index : m_Tree.order)
        BuildNode(index);
    ResolveTargets();
    BuildSkins();
    const Json* pExtras = m_Tree.pScene ? FindMember(*m_Tree.pScene, "extras") : nullptr;
    if (pExtras && pExtras->IsObject())
        for (const auto& member : pExtras->GetObject())
            m_Scene.AddFileProperty(std::string(ToString(member.name).value_or("")), ToFileProperty(member.value));
}

void SceneBuilder::BuildNode(uint32_t index) {
    Work work{
        .index = index, .pRecord = &m_Tree.nodes[index], .place = m_Tree.GetPlace(index), .extras = {}, .pMesh = {}};
    work.extras = ReadNodeExtras(m_Messages, work.place, *work.pRecord->pJson);
    work.pMesh = GetMesh(work);
    work.role = GetRole(work);
    m_KeepsFrame[index] = work.role == Role::Camera || work.role == Role::Light;
    if (work.pMesh && work.role != Role::Point && work.role != Role::Dummy) {
        BuildMeshNodes(work);
        return;
    }
    scene::Node& node = AddNode(work, work.pRecord->name);
    m_Nodes[index] = &node;
    SetPlainObject(work, node);
    SetCommon(work, node);
}

// Bones, meshes, markers, cameras, and the shaders of meshes without a material are called as their nodes.
scene::Node& SceneBuilder::AddNode(const Work& work, std::string name) {
    CheckLength(work.place, name);
    const int32_t parent = work.pRecord->parent;
    return m_Scene.AddNode(std::move(name), parent < 0 ? nullptr : m_Nodes[static_cast<size_t>(parent)]);
}

std::shared_ptr<const MeshData> SceneBuilder::GetMesh(const Work& work) {
    if (work.pRecord->mesh < 0)
        return nullptr;
    const auto index = static_cast<size_t>(work.pRecord->mesh);
    if (!m_Meshes[index]) {
        m_Meshes[index] = ReadMesh(m_File, m_pBuffers, index, m_Materials.GetTexCoordSets());
        if (m_Meshes[index]->hasOtherModes)
            m_Messages.Warn({.kind = "mesh", .index = index}, "its points and lines are left out",
                            "give it triangles to have them exported");
    }
    return m_Meshes[index]->primitives.empty() ? nullptr : m_Meshes[index];
}

SceneBuilder::Role SceneBuilder::GetRole(const Work& work) const {
    const NodeRecord& record = *work.pRecord;
    if (work.extras.nodeClass) {
        switch (*work.extras.nodeClass) {
        case NodeClass::Mesh:
        case NodeClass::Patch:
            return Role::Mesh;
        case NodeClass::Bone:
            return Role::Bone;
        case NodeClass::Box:
            return Role::Box;
        case NodeClass::Dummy:
            return Role::Dummy;
        case NodeClass::Point:
            return Role::Point;
        }
    }
    if (work.pMesh)
        return Role::Mesh;
    if (record.isJoint)
        return Role::Bone;
    if (record.camera >= 0)
        return Role::Camera;
    if (record.light >= 0)
        return Role::Light;
    if (work.extras.controller)
        return Role::Box;
    return record.children.empty() ? Role::Point : Role::Dummy;
}

AxesChange SceneBuilder::GetAxesChange(const Work& work) const {
    const int32_t parent = work.pRecord->parent;
    return {.parentSide = parent < 0 || !m_KeepsFrame[static_cast<size_t>(parent)],
            .ownSide = !m_KeepsFrame[work.index]};
}

void SceneBuilder::SetTransform(const Work& work, scene::Node& node) {
    const NodeTransform transform = ReadTransform(work.place, *work.pRecord->pJson);
    const AxesChange change = GetAxesChange(work);
    const Class_ID classId = work.extras.controller.value_or(PRS_CONTROL_CLASS_ID);
    const auto tracks = m_Clip ? m_Clip->tracks.find(work.index) : std::map<uint32_t, NodeTracks>::iterator{};
    if (m_Clip && tracks != m_Clip->tracks.end()) {
        node.SetController(std::make_unique<KeyController>(classId, m_pBuffers, transform, tracks->second, change));
        return;
    }
    const scene::Affine local = ToHostAxes(transform.ToAffine(), change);
    if (!work.extras.controller) {
        node.SetLocal(local);
        return;
    }
    auto pController = std::make_unique<scene::RestController>(classId);
    pController->SetLocal(local);
    node.SetController(std::move(pController));
}

// Animation of any clip counts, so that the skeleton is the same one in all of them.
bool SceneBuilder::IsBoneSwitchOn(const Work& work) const {
    const NodeRecord& record = *work.pRecord;
    const bool carriesOther = record.skin >= 0 || record.camera >= 0 || record.light >= 0;
    return work.extras.bone.value_or(record.isJoint || (record.isMoved && !carriesOther));
}

// What all nodes have, and all parts of a split mesh.
void SceneBuilder::SetCommon(const Work& work, scene::Node& node) {
    SetTransform(work, node);
    ReadUserProperties(*work.pRecord->pJson, node.GetUserProperties());
    node.SetBoneNodeOnOff(IsBoneSwitchOn(work));
    node.SetRenderable(work.extras.renderable.value_or(true));
    if (const auto& color = work.extras.wireColor)
        node.SetWireColor((*color)[0], (*color)[1], (*color)[2]);
    if (work.extras.visibility)
        node.SetVisibility(*work.extras.visibility);
    if (!work.extras.xref.empty())
        scene::MakeXRef(node, GetXRefPath(work));
    if (work.role == Role::Camera)
        m_Pending.push_back({&node, work.extras.target, work.pRecord->camera});
    else if (!work.extras.target.empty())
        m_Pending.push_back({&node, work.extras.target, -1});
}

std::string SceneBuilder::GetXRefPath(const Work& work) const {
    std::string path = m_File.GetFullPath(work.extras.xref);
    if (path.size() > s_LongestXRefPath)
        Fail(work.place, "the path of its xref has " + std::to_string(path.size()) + " bytes",
             "a path holds at most " + std::to_string(s_LongestXRefPath) + ": give its folders shorter names");
    return path;
}

void SceneBuilder::SetPlainObject(const Work& work, scene::Node& node) {
    switch (work.role) {
    case Role::Mesh:
    case Role::Bone:
    case Role::Box: {
        scene::GeometryClass kind = GetGeometryClass(work.extras);
        if (!work.extras.nodeClass)
            kind = work.role == Role::Bone ? scene::GeometryClass::Bone : scene::GeometryClass::Box;
        node.SetObject(&m_Scene.Make<scene::GeometryObject>(kind));
        break;
    }
    case Role::Light:
        SetLight(work, node);
        break;
    case Role::Point:
        node.SetObject(&m_Scene.Make<scene::HelperObject>(scene::HelperClass::Point));
        break;
    case Role::Dummy:
        node.SetObject(&m_Scene.Make<scene::HelperObject>(scene::HelperClass::Dummy));
        break;
    case Role::Camera: // once its target is known
        break;
    }
}

void SceneBuilder::SetLight(const Work& work, scene::Node& node) {
    const Place place{.kind = "light", .index = static_cast<size_t>(work.pRecord->light)};
    const std::string_view type = ReadString(place, GetLight(m_File, work.pRecord->light), "type");
    const bool hasTarget = !work.extras.target.empty();
    scene::LightClass kind = scene::LightClass::Omni;
    if (type == "spot")
        kind = hasTarget ? scene::LightClass::Spot : scene::LightClass::FreeSpot;
    else if (type == "directional")
        kind = hasTarget ? scene::LightClass::TargetDirectional : scene::LightClass::Directional;
    else if (type != "point")
        FailDamaged(place, "its type " + Quoted(type) + " is unknown");
    node.SetObject(&m_Scene.Make<scene::LightObject>(kind));
}

void SceneBuilder::BuildMeshNodes(const Work& work) {
    const NodeRecord& record = *work.pRecord;
    if (record.camera >= 0 || record.light >= 0)
        m_Messages.Warn(work.place, "it carries a camera or light beside its mesh, and is the mesh alone",
                        "put them on a child");
    CheckSmoothing(work);
    const std::vector<FaceRange> ranges = SplitFaces(work.pMesh->faceCount);
    if (ranges.size() > 1)
        m_Messages.Warn(work.place,
                        "its mesh has " + std::to_string(work.pMesh->faceCount) + " faces and becomes " +
                            std::to_string(ranges.size()) + " nodes",
                        "split meshes beyond " + std::to_string(s_MostFacesOfMesh) + " faces to choose where");
    MeshShape shape{.range = {}, .morphWeights = work.pMesh->morphWeights, .pSmoothing = work.extras.pSmoothing};
    if (const Json* pWeights = FindArray(work.place, *record.pJson, "weights")) {
        shape.morphWeights.clear();
        for (const Json& weight : pWeights->GetArray())
            shape.morphWeights.push_back(ToFloat(weight).value_or(0.0f));
    }
    shape.skinned = record.skin >= 0;
    if (shape.skinned)
        CheckSkin(work, ranges);
    for (size_t part = 0; part < ranges.size(); ++part) {
        shape.range = ranges[part];
        scene::Node& node =
            AddNode(work, part == 0 ? record.name
                                    : m_NodeNames.MakeNumbered(record.name, "_", static_cast<unsigned>(part + 1)));
        if (part == 0)
            m_Nodes[work.index] = &node;
        SetMeshObject(work, shape, node);
        SetCommon(work, node);
    }
}

void SceneBuilder::SetMeshObject(const Work& work, const MeshShape& shape, scene::Node& node) {
    node.SetObject(&m_Scene.Make<scene::GeometryObject>(GetGeometryClass(work.extras),
                                                        std::make_unique<MeshDataSource>(work.pMesh, shape)));
    const Json& mesh = (*FindMember(m_File.GetRoot(), "meshes"))[static_cast<rapidjson::SizeType>(work.pRecord->mesh)];
    const std::string_view name = ReadString(work.place, mesh, "name");
    node.SetMaterial(m_Materials.GetForMesh(work.pMesh->materials, name.empty() ? work.pRecord->name : name));
    if (shape.skinned)
        m_PendingSkins.push_back({&node, static_cast<size_t>(work.pRecord->skin), work.pMesh, shape});
}

void SceneBuilder::CheckSmoothing(const Work& work) {
    if (work.extras.pSmoothing && work.extras.pSmoothing->size() != work.pMesh->faceCount)
        m_Messages.Warn(work.place,
                        "the member \"extras.host.smoothing\" has " +
                            Counted(work.extras.pSmoothing->size(), "mask", "masks") + " for " +
                            Counted(work.pMesh->faceCount, "face", "faces"),
                        "give one for each face");
}

// The weights are made when the mesh is; what is to be said of them is said now.
void SceneBuilder::CheckSkin(const Work& work, const std::vector<FaceRange>& ranges) {
    if (!m_CheckedSkins.emplace(work.pRecord->mesh, work.pRecord->skin).second)
        return;
    const Json& skin = (*FindMember(m_File.GetRoot(), "skins"))[static_cast<rapidjson::SizeType>(work.pRecord->skin)];
    CheckJoints(work.place, *work.pMesh, FindMember(skin, "joints")->Size());
    if (!HasSeveralSkinSets(*work.pMesh) && !HasUnboundVertices(*work.pMesh))
        return;
    SkinReport report;
    for (const FaceRange& range : ranges)
        BuildWeights(*work.pMesh, {.range = range, .morphWeights = work.pMesh->morphWeights, .pSmoothing = {}},
                     m_Options.limitInfluences, report);
    if (report.unbound > 0)
        m_Messages.Warn(
            work.place,
            Counted(report.unbound, "vertex has no weights and hangs", "vertices have no weights and hang") +
                " on the skin's first joint",
            WeightThem(report.unbound));
    if (report.overfull > 0)
        m_Messages.Warn(work.place,
                        Counted(report.overfull, "vertex hangs", "vertices hang") +
                            " on more than four joints, which the exporter refuses",
                        WeightThem(report.overfull) +
                            " to four at most, or have --limit-influences keep the four heaviest weights");
    if (report.limited > 0) {
        char percent[16];
        std::snprintf(percent, sizeof percent, "%.1f", double{report.largestLoss} * 100.0);
        m_Messages.Warn(work.place,
                        Counted(report.limited, "vertex kept only its", "vertices kept only their") +
                            " four heaviest weights and lost up to " + percent +
                            (report.limited == 1 ? " % of its weight" : " % of their weight"),
                        WeightThem(report.limited) + " to four joints at most");
    }
}

void SceneBuilder::ResolveTargets() {
    if (m_Pending.empty())
        return;
    std::unordered_map<std::string_view, scene::Node*> byName;
    for (const uint32_t index : m_Tree.order)
        byName.emplace(m_Tree.nodes[index].name, m_Nodes[index]);
    for (const Pending& pending : m_Pending) {
        const auto found = byName.find(pending.target);
        scene::Node* pTarget = pending.target.empty() || found == byName.end() ? nullptr : found->second;
        if (!pending.target.empty() && !pTarget)
            m_Messages.Warn({.kind = "node", .index = 0, .name = pending.pNode->GetName()},
                            "the member \"extras.host.target\" names " + Quoted(pending.target) +
                                ", and there is no such node",
                            "name a node of the scene");
        pending.pNode->SetTarget(pTarget);
        if (pending.camera >= 0)
            SetCamera(pending, pTarget);
    }
}

void SceneBuilder::SetCamera(const Pending& pending, scene::Node* pTarget) {
    const auto index = static_cast<size_t>(pending.camera);
    const Json& json = (*FindMember(m_File.GetRoot(), "cameras"))[static_cast<rapidjson::SizeType>(index)];
    Place place{.kind = "camera", .index = index};
    place.name = ReadString(place, json, "name");
    const CameraExtras extras = ReadCameraExtras(m_Messages, place, json);
    const std::string_view type = ReadString(place, json, "type");
    if (type != "perspective" && type != "orthographic")
        FailDamaged(place, "its type " + Quoted(type) + " is unknown");
    const Json* pView = FindObject(place, json, type);
    if (!pView)
        FailDamaged(place, Quoted(type) + " is missing");

    scene::CameraSettings settings;
    settings.hasTarget = pTarget != nullptr;
    float distance = extras.targetDistance.value_or(s_DefaultTargetDistance);
    settings.targetDistance = distance;
    if (pTarget)
        distance = static_cast<float>(glm::length(pTarget->GetWorld(0)[3] - pending.pNode->GetWorld(0)[3]));
    settings.fieldOfView = type == "perspective" ? ReadFloat(place, *pView, "yfov", 0.785398f)
                                                 : 2.0f * std::atan2(ReadFloat(place, *pView, "ymag", 1.0f), distance);
    settings.manualClip = FindMember(*pView, "znear") && FindMember(*pView, "zfar");
    settings.nearClip = ReadFloat(place, *pView, "znear", settings.nearClip);
    settings.farClip = ReadFloat(place, *pView, "zfar", settings.farClip);
    if (extras.clip) {
        settings.manualClip = true;
        settings.nearClip = (*extras.clip)[0];
        settings.farClip = (*extras.clip)[1];
    }
    scene::Node& node = *pending.pNode;
    auto& camera = m_Scene.Make<scene::CameraObject>(std::move(settings));
    node.SetObject(&camera);
}

std::vector<scene::SkinBone> SceneBuilder::ReadBones(size_t skin) {
    const Json& json = (*FindMember(m_File.GetRoot(), "skins"))[static_cast<rapidjson::SizeType>(skin)];
    const Place place{.kind = "skin", .index = skin};
    const Json& joints = *FindMember(json, "joints");
    AccessorView matrices;
    if (FindMember(json, "inverseBindMatrices")) {
        matrices = m_pBuffers->GetAccessor(m_File, place,
                                           static_cast<size_t>(ReadRequiredSize(place, json, "inverseBindMatrices")));
        if (matrices.components != 16 || matrices.count < joints.Size())
            FailDamaged(place, "it has not one inverse bind matrix for each joint");
    }
    std::vector<scene::SkinBone> bones;
    for (rapidjson::SizeType i = 0; i < joints.Size(); ++i) {
        scene::SkinBone bone{.pNode = m_Nodes[joints[i].GetUint()]};
        if (!matrices.IsEmpty()) {
            float m[16];
            matrices.Read(i, m, 16);
            bone.inverseBind = scene::ToMatrix3(ToHostAxes(FromColumns(m), {}));
        }
        bones.push_back(bone);
    }
    return bones;
}

void SceneBuilder::BuildSkins() {
    for (PendingSkin& pending : m_PendingSkins)
        scene::AddSkin(
            *pending.pNode, ReadBones(pending.skin),
            std::make_unique<SkinDataSource>(pending.pMesh, std::move(pending.shape), m_Options.limitInfluences));
}

} // namespace gltf
