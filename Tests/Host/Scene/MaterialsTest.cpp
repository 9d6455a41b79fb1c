#include "Host/Scene/Materials.h"

#include "Host/Sdk/ClassIds.h"

#include <glm/gtc/constants.hpp>
#include <gtest/gtest.h>

namespace {

using scene::StandardMaterial;
using scene::UVPlacement;
using scene::UVSettings;

TEST(SceneMaterials, SlotsAreOnWithAMapAlone) {
    StandardMaterial material("m");
    scene::Bitmap bitmap("map", "a.tga");
    scene::OtherTexmap noise("noise", "Noise");
    auto& maps = material.GetSettings().maps;
    maps[ID_DI] = {.pMap = &bitmap, .enabled = true, .amount = 0.5f};
    maps[ID_OP] = {.pMap = &noise, .enabled = false, .amount = 1.0f};
    EXPECT_TRUE(material.MapEnabled(ID_DI));
    EXPECT_FALSE(material.MapEnabled(ID_OP));
    EXPECT_FALSE(material.MapEnabled(ID_SP));
    EXPECT_EQ(material.GetSubTexmap(ID_OP), &noise);
    EXPECT_EQ(material.GetTexmapAmt(ID_DI, 0), 0.5f);
    for (const int outside : {-1, NTEXMAPS}) {
        EXPECT_FALSE(material.MapEnabled(outside));
        EXPECT_EQ(material.GetSubTexmap(outside), nullptr);
        EXPECT_EQ(material.GetTexmapAmt(outside, 0), 0.0f);
    }
}

TEST(SceneMaterials, AMultiMaterialMayHoldHolesAndItself) {
    StandardMaterial faceMapped("f", {.faceMap = true});
    scene::MultiMaterial multi("multi");
    multi.SetSubs({nullptr, &faceMapped, &multi});
    EXPECT_EQ(multi.ClassID(), Class_ID(0x200, 0));
    EXPECT_EQ(multi.NumSubMtls(), 3);
    EXPECT_EQ(multi.GetSubMtl(0), nullptr);
    EXPECT_EQ(multi.GetSubMtl(1), &faceMapped);
    EXPECT_EQ(multi.GetSubMtl(3), nullptr);
    EXPECT_EQ(multi.Requirements(-1) & 0x20, 0x20u);
    EXPECT_EQ(multi.Requirements(0), 0u);
    EXPECT_EQ(faceMapped.NumSubMtls(), 0);
}

TEST(SceneMaterials, OtherClassesKeepTheirNameAndAnIdOfTheirOwn) {
    const scene::OtherMaterial blend("b", "Blend");
    const scene::OtherMaterial shellac("s", "Shellac");
    std::string name;
    blend.GetClassName(name);
    EXPECT_EQ(name, "Blend");
    EXPECT_EQ(blend.ClassID(), scene::OtherMaterial("x", "Blend").ClassID());
    EXPECT_FALSE(blend.ClassID() == shellac.ClassID());
}

Point3 Place(UVSettings settings, const Point3& uv) {
    Matrix3 m = IdentityMatrix();
    UVPlacement(std::move(settings)).GetUVTransform(m);
    return TransformPoint(uv, m);
}

TEST(SceneMaterials, PlacementWorksAboutTheMiddle) {
    EXPECT_EQ(Place({}, {0.25f, 0.75f, 0}), Point3(0.25f, 0.75f, 0));
    EXPECT_EQ(Place({.uOffset = 0.25f, .vOffset = -0.5f}, {0.5f, 0.5f, 0}), Point3(0.25f, 1.0f, 0));
    EXPECT_EQ(Place({.uScale = 2.0f, .vScale = 4.0f}, {1, 1, 0}), Point3(1.5f, 2.5f, 0));
    EXPECT_EQ(Place({.uOffset = 0.5f, .uScale = 2.0f}, {1, 0.5f, 0}), Point3(0.5f, 0.5f, 0));
    const Point3 turned = Place({.uScale = 2.0f, .angle = glm::half_pi<float>()}, {1, 0.5f, 0});
    EXPECT_NEAR(turned.x, 0.5f, 1e-6f);
    EXPECT_NEAR(turned.y, 1.5f, 1e-6f);
    Matrix3 own({1, 2, 0}, {3, 4, 0}, {0, 0, 1}, {5, 6, 0});
    EXPECT_EQ(Place({.uOffset = 9.0f, .transform = own}, {1, 1, 0}), Point3(9, 12, 0));
}

TEST(SceneMaterials, AnEnvironmentDependsOnTheView) {
    EXPECT_EQ(UVPlacement().Requirements(0) & 0x8000, 0u);
    EXPECT_NE(UVPlacement().Requirements(0), 0u);
    const UVPlacement sphere({.environment = true});
    EXPECT_EQ(sphere.Requirements(0), 0x8000u);
    EXPECT_EQ(sphere.GetCoordMapping(0), 1);
    EXPECT_EQ(scene::Bitmap("b", "p", std::nullopt).GetUVGen(), nullptr);
}

} // namespace
