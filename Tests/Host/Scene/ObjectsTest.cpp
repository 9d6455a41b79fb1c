#include "Host/Scene/Objects.h"

#include "Tests/Host/Scene/SceneFixture.h"

#include <gtest/gtest.h>

namespace {

using scene::Node;
using scene::Scene;

Class_ID EvaluatedClass(Node& node) { return node.EvalWorldState(0).obj->ClassID(); }

TEST(SceneObjects, HaveTheHostsClasses) {
    Scene scene;
    using scene::GeometryClass;
    const std::pair<GeometryClass, Class_ID> geometry[] = {{GeometryClass::Mesh, {9, 0}},
                                                           {GeometryClass::EditMesh, {0xe44f10b3, 0}},
                                                           {GeometryClass::Patch, {0x1030, 0}},
                                                           {GeometryClass::Bone, {0x8a63c0, 0}},
                                                           {GeometryClass::Box, {0x10, 0}}};
    for (const auto& [kind, id] : geometry) {
        scene::GeometryObject object(kind);
        EXPECT_EQ(object.ClassID(), id);
        EXPECT_EQ(object.SuperClassID(), 0x10u);
    }
    using scene::LightClass;
    const std::pair<LightClass, uint32_t> lights[] = {{LightClass::Omni, 0x1011},
                                                      {LightClass::Spot, 0x1012},
                                                      {LightClass::Directional, 0x1013},
                                                      {LightClass::FreeSpot, 0x1014},
                                                      {LightClass::TargetDirectional, 0x1015}};
    for (const auto& [kind, id] : lights)
        EXPECT_EQ(EvaluatedClass(AddLight(scene, "l", kind)), Class_ID(id, 0));
    EXPECT_EQ(EvaluatedClass(AddDummy(scene, "d")), Class_ID(0x876234, 0));
    EXPECT_EQ(EvaluatedClass(AddPoint(scene, "p")), Class_ID(0x2013, 0));
    EXPECT_EQ(EvaluatedClass(AddBone(scene, "b")), Class_ID(0x8a63c0, 0));
    EXPECT_EQ(scene.AddNode("empty").EvalWorldState(0).obj, nullptr);
}

TEST(SceneObjects, AnExternalReferenceShowsAtTheReferenceAlone) {
    Scene scene;
    Node& node = AddBox(scene, "box", {1, 1, 1});
    MakeXRef(node, "Z:\\art\\ref.max");
    EXPECT_EQ(EvaluatedClass(node), TRIOBJ_CLASS_ID);
    ASSERT_EQ(node.GetObjectRef()->ClassID(), Class_ID(0x92aab38c, 0));
    EXPECT_EQ(node.GetObjectRef()->SuperClassID(), 0x60u);
    EXPECT_STREQ(static_cast<XRefObject*>(node.GetObjectRef())->GetFileName(false), "Z:\\art\\ref.max");
    EXPECT_NE(GetMesh(node), nullptr);

    Node& missing = scene.AddNode("missing");
    MakeXRef(missing, "gone.max");
    EXPECT_EQ(missing.EvalWorldState(0).obj, nullptr);
}

TEST(SceneObjects, ABoxIsClosedAndFacesOutward) {
    const Mesh mesh = scene::MakeBoxMesh({2, 4, 6});
    ASSERT_EQ(mesh.numFaces, 12);
    ASSERT_EQ(mesh.tvFace.size(), 12u);
    float volume = 0.0f;
    for (const Face& face : mesh.faces)
        volume += DotProd(mesh.verts[face.v[0]], CrossProd(mesh.verts[face.v[1]], mesh.verts[face.v[2]])) / 6.0f;
    EXPECT_FLOAT_EQ(volume, 48.0f);
    for (int i = 0; i < 12; i += 2) {
        const Face& face = mesh.faces[static_cast<size_t>(i)];
        const Point3& corner = mesh.verts[face.v[0]];
        const int side = face.getMatID();
        EXPECT_EQ(corner[side / 2] > 0.0f, side % 2 == 1) << side;
        EXPECT_EQ(face.getSmGroup(), 1u << side);
    }
}

TEST(SceneObjects, CamerasMeasureTheDistanceOfTheirTarget) {
    Scene scene;
    Node& target = AddDummy(scene, "target");
    target.SetLocal({0, 3, 4});
    scene::CameraSettings settings;
    settings.targetDistance = 7.0f;
    settings.manualClip = true;
    settings.nearClip = 0.5f;
    settings.farClip = 90.0f;
    const auto distance = [](Node& node) {
        auto& camera = static_cast<GenCamera&>(*node.EvalWorldState(0).obj);
        camera.UpdateTargDistance(0, &node);
        return camera.GetTDist(0);
    };
    Node& free = AddCamera(scene, "free", settings);
    Node& aimed = AddCamera(scene, "aimed", settings, &target);
    EXPECT_EQ(EvaluatedClass(free), Class_ID(0x1001, 0));
    EXPECT_EQ(EvaluatedClass(aimed), Class_ID(0x1002, 0));
    EXPECT_EQ(distance(free), 7.0f);
    EXPECT_EQ(distance(aimed), 5.0f);
    aimed.SetTarget(nullptr);
    EXPECT_EQ(distance(aimed), 7.0f);
    const auto& camera = static_cast<GenCamera&>(*free.EvalWorldState(0).obj);
    EXPECT_TRUE(camera.GetManualClip());
    EXPECT_EQ(camera.GetClipDist(0, 1), 0.5f);
    EXPECT_EQ(camera.GetClipDist(0, 2), 90.0f);
}

class CountingSource : public scene::MeshSource {
public:
    explicit CountingSource(int& count) : m_Count(count) {}
    std::unique_ptr<Mesh> Build(TimeValue) const override {
        ++m_Count;
        return std::make_unique<Mesh>();
    }

private:
    int& m_Count;
};

class CountingObserver : public scene::SceneObserver {
public:
    void OnMesh(const Node& node) override { m_Meshes.push_back(node.GetName()); }
    void OnTick(TimeValue t) override { m_Ticks.push_back(t); }

    std::vector<std::string> m_Meshes;
    std::vector<TimeValue> m_Ticks;
};

TEST(SceneObjects, MeshesAreBuiltWhenAskedFor) {
    Scene scene;
    int count = 0;
    Node& node = AddMesh(scene, "m", std::make_unique<CountingSource>(count));
    Node& bone = AddBone(scene, "b");
    bone.SetController(std::make_unique<SlideController>([](TimeValue) { return 0.0; }));
    CountingObserver observer;
    scene.SetObserver(&observer);
    node.EvalWorldState(0);
    EXPECT_EQ(count, 0);
    EXPECT_NE(GetMesh(node), nullptr);
    EXPECT_NE(GetMesh(node), nullptr);
    EXPECT_EQ(GetMesh(bone), nullptr);
    bone.GetNodeTM(160);
    bone.GetObjectTM(160);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(observer.m_Meshes, (std::vector<std::string>{"m", "m"}));
    EXPECT_EQ(observer.m_Ticks, std::vector<TimeValue>{160});
}

} // namespace
