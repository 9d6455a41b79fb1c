#pragma once

#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/Glaze/Device.h"
#include "Shared/Cross/RenderAnim/Anim.h"
#include "Shared/Cross/RenderAnim/Mesh.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/Cross/RenderAnim/Chunks/ChunkVerbs.h"

// What models stand on, started for each test and empty at its end, and verbs that make their parts.
class ModelFixture : public testing::Test {
protected:
    ModelFixture() {
        gz::Start({.name = "Null"});
        Inv::Initialize();
        ReportCapture::Clear();
    }
    ~ModelFixture() override {
        Inv::Shutdown();
        gz::Stop();
    }

    static ShaderRef MakeShader(const char* pName) {
        std::unique_ptr<Shader> pShader = Shader::Create();
        pShader->SetName(pName);
        ShaderRef shader;
        shader.Set(std::move(pShader));
        return shader;
    }

    // A fan of triangles around vertex 0 in a plane, the same triangles for each shader. By default with positions,
    // normals and texture coordinates.
    static MeshRef MakeMesh(const char* pName, const std::vector<ShaderRef>& shaders, uint32_t vertexCount = 4,
                            uint32_t format = 0x25) {
        auto pMesh = std::make_unique<ra::Mesh>();
        pMesh->SetName(pName);
        std::unique_ptr<gz::VertexSet> pVertices = gz::GetDevice()->MakeVertexSet();
        EXPECT_TRUE(pVertices->Create(format, vertexCount, 2));
        for (uint32_t component = 0; component < gz::VC_Count; ++component)
            Fill(*pVertices, static_cast<gz::VertexComponent>(component));
        pMesh->SetShaderCount(static_cast<uint32_t>(shaders.size()));
        for (uint32_t i = 0; i < shaders.size(); ++i) {
            pMesh->SetShader(i, shaders[i]);
            pMesh->SetPrimSet(i, ra::Mesh::Poly_High, MakeFan(*pVertices, shaders[i]));
        }
        pMesh->SetPolyCount(ra::Mesh::Poly_High, (vertexCount - 2) * static_cast<uint32_t>(shaders.size()));
        pMesh->SetVertexSet(ra::Mesh::Poly_High, std::move(pVertices));
        const glm::vec3 corners[] = {glm::vec3(-1), glm::vec3(1, 2, 3)};
        BoundVolume volume;
        volume.SetFromPoints(corners);
        pMesh->SetBoundVolume(volume);
        MeshRef mesh;
        mesh.Set(std::move(pMesh));
        return mesh;
    }

    static std::unique_ptr<ra::MeshGroup> MakeGroup(const std::vector<MeshRef>& meshes) {
        auto pGroup = std::make_unique<ra::MeshGroup>();
        pGroup->SetMeshCount(static_cast<uint32_t>(meshes.size()));
        BoundVolume volume;
        for (uint32_t i = 0; i < meshes.size(); ++i) {
            pGroup->SetMesh(i, meshes[i]);
            pGroup->SetMeshName(i, meshes[i]->GetNameKey());
            volume.Merge(meshes[i]->GetBoundVolume());
        }
        pGroup->SetBoundVolume(volume);
        return pGroup;
    }

    // Each bone hangs on the one before it and stands one unit further up.
    static std::unique_ptr<Skeleton> MakeChain(std::initializer_list<const char*> names) {
        auto pSkeleton = std::make_unique<Skeleton>(static_cast<uint32_t>(names.size()));
        int32_t index = 0;
        for (const char* pName : names) {
            pSkeleton->SetBoneName(index, ra::Name(pName));
            pSkeleton->SetParent(index, index - 1);
            pSkeleton->SetLocalPosition(index, {0, 1, 0});
            ++index;
        }
        pSkeleton->BuildRefPose();
        return pSkeleton;
    }

    // "Body", hung on the second bone.
    static MeshRef MakeSkin(const std::vector<ShaderRef>& shaders) {
        MeshRef skin = MakeMesh("Body", shaders, 6, 0x27);
        skin->SetSkinnedTransformCount(1);
        skin->SetSkinnedTransform(0, ra::Name("knee"), 1);
        return skin;
    }
    // A model of these meshes, the second of which hangs on its second bone, with two markers and a camera.
    static std::unique_ptr<RenderModel> MakeWalker(const std::vector<MeshRef>& meshes) {
        auto pModel = std::make_unique<RenderModel>();
        pModel->SetName("Walker");
        std::unique_ptr<ra::MeshGroup> pGroup = MakeGroup(meshes);
        pGroup->SetParentBone(1, 1);
        pModel->SetMeshGroup(std::move(pGroup));
        pModel->SetSkeleton(MakeChain({"hip", "knee"}));
        pModel->AddMarker({.name = ra::Name("Muzzle"), .m_parentName = ra::Name("knee")});
        pModel->AddMarker({.name = ra::Name("Lost"), .m_parentName = ra::Name("tail")});
        pModel->AddCamera({.name = ra::Name("Front"), .position = {1, 2, 3}, .target = {4, 5, 6}, .fieldOfView = 1});
        return pModel;
    }

    // What follows from what a file of it holds.
    static void ExpectWalker(const RenderModel& model) {
        EXPECT_STREQ(model.GetName(), "Walker");
        EXPECT_EQ(model.GetMarkerCount(), 4);
        EXPECT_EQ(model.GetMarkerTransform(0)[3], glm::vec3(0, 2, 0));
        EXPECT_EQ(model.GetMeshGroup()->GetSkinnedBone(0, 0), 1);
        EXPECT_EQ(model.GetSelectionInfo().extentZ, 2);
        EXPECT_NE(model.GetReferencePose(), nullptr);
    }

    // One for the walker: its first bone stands still, the second one moves; a control of a mesh and one of a shader;
    // and the camera.
    static std::unique_ptr<Anim> MakeAnim(const char* pName) {
        auto pAnim = std::make_unique<Anim>();
        pAnim->SetName(pName);
        pAnim->SetFrameCount(3);
        pAnim->SetDuration(0.5f);
        pAnim->SetBoneCount(2);
        pAnim->SetBoneName(0, ra::Name("hip"));
        pAnim->SetBoneName(1, ra::Name("knee"));
        pAnim->SetBoneAnimated(1, true);
        pAnim->SetBoneStreams(1, MakeStream<glm::vec3>({1, 2, 3}, {4, 5, 6}),
                              MakeStream<glm::quat>({1, 0, 0, 0}, {0, 1, 0, 0}));
        AddControlsAndCamera(*pAnim);
        return pAnim;
    }
    static void AddControlsAndCamera(Anim& anim) {
        anim.TakeControl(
            {.name = ra::Name("Body"), .ref = {.type = ControlTarget_Mesh}, .pValues = MakeStream<float>(0, 1)});
        anim.TakeControl({.name = ra::Name("Clay"),
                          .ref = {.channel = 4, .property = 2},
                          .pValues = MakeStream<float>(0.25f, 0.5f)});
        anim.TakeCamera({.name = ra::Name("Front"),
                         .pPosition = MakeStream<glm::vec3>({7, 8, 9}, {0, 0, 0}),
                         .pRotation = nullptr});
    }
    template <class V>
    static std::unique_ptr<AnimStream<V>> MakeStream(const V& first, const V& last) {
        auto pStream = std::make_unique<AnimStream<V>>();
        pStream->AddKey(0, first);
        pStream->AddKey(1, last);
        return pStream;
    }

    // A file's mesh group without meshes.
    static std::string MakeEmptyGroup(uint32_t boundVersion = 2) {
        return ChunkBytes::Folder("MSGR", ChunkBytes::Data("DATA", PayloadBytes().U32(0).Get()) +
                                              ChunkBytes::Data("BVOL", std::string(1, '\0'), boundVersion));
    }
    // Nothing of a test's models is left in the inventory for the next one to find.
    static void Forget(std::unique_ptr<RenderModel> pModel = nullptr) {
        pModel.reset();
        Inv::PurgeUnreferenced();
    }
    // `read` takes the bytes of a file, of which it needs all.
    template <class Read>
    static void ExpectEveryTruncationRefused(const std::string& bytes, Read read) {
        for (size_t size = 0; size < bytes.size(); ++size) {
            EXPECT_THROW(read(bytes.substr(0, size)), std::runtime_error) << "cut to " << size;
            Forget();
        }
    }

    ReportCapture m_Reports;

private:
    // Bytes that tell vertex, component and place.
    static void Fill(gz::VertexSet& vertices, gz::VertexComponent component) {
        uint32_t stride = 0;
        auto* pVertex = static_cast<uint8_t*>(vertices.Lock(component, 0, gz::VertexSet::WholeSet, stride));
        if (!pVertex)
            return;
        for (uint32_t i = 0; i < vertices.GetSize(); ++i, pVertex += stride)
            for (uint32_t j = 0; j < gz::s_ComponentSizes[component]; ++j)
                pVertex[j] = static_cast<uint8_t>(i * 16 + component * 5 + j);
        vertices.Unlock(component);
    }

    static std::unique_ptr<gz::PrimSet> MakeFan(gz::VertexSet& vertices, const ShaderRef& shader) {
        std::unique_ptr<gz::PrimSet> pSet = gz::GetDevice()->MakePrimSet(vertices, shader->GetDeviceShader(), 2);
        std::vector<uint16_t> indices;
        for (uint16_t i = 2; i < vertices.GetSize(); ++i)
            indices.insert(indices.end(), {0, static_cast<uint16_t>(i - 1), i});
        pSet->SetUp(0, static_cast<uint32_t>(indices.size()), gz::PrimKind_TriangleList);
        pSet->SetIndices(indices);
        return pSet;
    }
};
