#include "Host/Scene/Build.h"

namespace scene {

namespace {

Node& AddWithObject(Scene& scene, std::string name, Object& object, Node* pParent) {
    Node& node = scene.AddNode(std::move(name), pParent);
    node.SetObject(&object);
    return node;
}

// The corners of a box are numbered by their sides: bit 0 is +X, bit 1 +Y, bit 2 +Z. Counter-clockwise seen from
// outside.
constexpr uint32_t s_BoxSides[6][4] = {{2, 0, 4, 6}, {1, 3, 7, 5}, {0, 1, 5, 4},
                                       {3, 2, 6, 7}, {2, 3, 1, 0}, {4, 5, 7, 6}};

} // namespace

Node& AddMesh(Scene& scene, std::string name, Mesh mesh, Mtl* pMaterial, Node* pParent) {
    return AddMesh(scene, std::move(name), std::make_unique<ReadyMeshSource>(std::move(mesh)), pMaterial, pParent);
}

Node& AddMesh(Scene& scene, std::string name, std::unique_ptr<MeshSource> pSource, Mtl* pMaterial, Node* pParent) {
    Node& node = AddWithObject(scene, std::move(name),
                               scene.Make<GeometryObject>(GeometryClass::Mesh, std::move(pSource)), pParent);
    node.SetMaterial(pMaterial);
    return node;
}

Node& AddBox(Scene& scene, std::string name, const Point3& size, Mtl* pMaterial, Node* pParent) {
    return AddMesh(scene, std::move(name), MakeBoxMesh(size), pMaterial, pParent);
}

Node& AddBone(Scene& scene, std::string name, Node* pParent) {
    return AddWithObject(scene, std::move(name), scene.Make<GeometryObject>(GeometryClass::Bone), pParent);
}

Node& AddDummy(Scene& scene, std::string name, Node* pParent) {
    return AddWithObject(scene, std::move(name), scene.Make<HelperObject>(HelperClass::Dummy), pParent);
}

Node& AddPoint(Scene& scene, std::string name, Node* pParent) {
    return AddWithObject(scene, std::move(name), scene.Make<HelperObject>(HelperClass::Point), pParent);
}

Node& AddLight(Scene& scene, std::string name, LightClass kind, Node* pParent) {
    return AddWithObject(scene, std::move(name), scene.Make<LightObject>(kind), pParent);
}

Node& AddCamera(Scene& scene, std::string name, CameraSettings settings, Node* pTarget, Node* pParent) {
    settings.hasTarget = settings.hasTarget || pTarget;
    Node& node = AddWithObject(scene, std::move(name), scene.Make<CameraObject>(std::move(settings)), pParent);
    node.SetTarget(pTarget);
    return node;
}

void MakeXRef(Node& node, std::string fileName) {
    node.SetObject(&node.GetScene().Make<XRef>(std::move(fileName), node.GetObjectRef()));
}

SkinModifier& AddSkin(Node& node, std::vector<SkinBone> bones, std::unique_ptr<SkinSource> pSource) {
    Scene& scene = node.GetScene();
    SkinModifier& skin = scene.Make<SkinModifier>(std::move(bones), std::move(pSource));
    if (Object* pObject = node.GetObjectRef()) {
        DerivedObject& derived = scene.Make<DerivedObject>(pObject);
        derived.AddModifier(skin);
        node.SetObject(&derived);
    }
    node.SetWorldSpaceObject(true);
    return skin;
}

Mesh MakeBoxMesh(const Point3& size) {
    Mesh mesh;
    mesh.setNumVerts(8);
    for (uint32_t i = 0; i < 8; ++i) {
        const Point3 corner((i & 1) ? 0.5f : -0.5f, (i & 2) ? 0.5f : -0.5f, (i & 4) ? 0.5f : -0.5f);
        mesh.verts[i] = corner * size;
    }
    mesh.setNumTVerts(4);
    mesh.tVerts = {{0.0f, 0.0f, 0.0f}, {1.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 0.0f}, {0.0f, 1.0f, 0.0f}};
    mesh.setNumFaces(12);
    mesh.setNumTVFaces(12);
    for (size_t side = 0; side < 6; ++side) {
        const uint32_t(&v)[4] = s_BoxSides[side];
        Face* pFaces = &mesh.faces[side * 2];
        pFaces[0].setVerts(v[0], v[1], v[2]);
        pFaces[1].setVerts(v[2], v[3], v[0]);
        mesh.tvFace[side * 2].setTVerts(0, 1, 2);
        mesh.tvFace[side * 2 + 1].setTVerts(2, 3, 0);
        for (Face* pFace = pFaces; pFace != pFaces + 2; ++pFace) {
            pFace->setSmGroup(1u << side);
            pFace->setMatID(static_cast<uint16_t>(side));
            pFace->setEdgeVisFlags(Face::EdgeA | Face::EdgeB);
        }
    }
    return mesh;
}

} // namespace scene
