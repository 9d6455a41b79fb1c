#pragma once

#include <memory>
#include <string>

#include "Shared/Cross/RenderAnim/AnimList.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimNodes.h"
#include "Shared/Cross/RenderAnim/Final/FinalFile.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared/Cross/RenderAnim/TextureConvert.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"
#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"
#include "Tests/Shared/Cross/RenderAnim/Motion/Chunks/MotionSide.h"

// A model with one of everything that final files hold, and ways into and out of their bytes.
class FinalModelFixture : public ModelFixture {
protected:
    static std::unique_ptr<RenderModel> MakeModel() {
        const ShaderRef clay = MakeShader("Clay");
        clay->SetChannelTexture(0, AddTexture("art/wood"));
        const ShaderRef shared = MakeShader("art/shared");
        shared->SetShared(true);
        const MeshRef skin = MakeSkin({clay, shared});
        AddLowLevel(*skin.GetData(), clay);
        std::unique_ptr<RenderModel> pModel = MakeWalker({skin, MakeMesh("Wheel", {clay}, 3)});
        pModel->GetMeshGroup()->BindSkinning(*pModel->GetSkeleton(), "Walker");
        pModel->SetAnimList(std::make_unique<AnimList>(*pModel));
        AddAnim(*pModel, "walk");
        AddAnim(*pModel, "run");
        pModel->GetAnimList()->GetNode(1)->SetBounds({-1, -2, -3}, {1, 2, 3});
        return pModel;
    }
    // With a motion side, a sample of each object of it, and an animation of another model for it.
    static std::unique_ptr<RenderModel> MakeMoved() {
        std::unique_ptr<RenderModel> pModel = MakeModel();
        pModel->GetAnimList()->GetNode(1)->SetXRefModel(ra::Name("art/other"));
        MotionSide side;
        side.AddSamples();
        const ra::MotionParts parts = pModel->GetMotionParts();
        parts.events = std::move(side.events);
        parts.clauses = std::move(side.clauses);
        parts.conditions = std::move(side.conditions);
        parts.modifiers = std::move(side.modifiers);
        parts.motions = std::move(side.motions);
        parts.actions = std::move(side.actions);
        return pModel;
    }
    static TextureRef AddTexture(const char* pName) {
        std::unique_ptr<Texture> pTexture = Image2Texture(MakeRandomImage(IMAGETYPE_DXT1, 16, 16, 2));
        pTexture->SetName(pName);
        TextureRef texture;
        texture.Set(std::move(pTexture));
        return texture;
    }
    static void AddLowLevel(ra::Mesh& mesh, const ShaderRef& shader) {
        std::unique_ptr<gz::VertexSet> pVertices = gz::GetDevice()->MakeVertexSet();
        EXPECT_TRUE(pVertices->CreateFrom(0x21, 4, {}, 2));
        std::unique_ptr<gz::PrimSet> pSet = gz::GetDevice()->MakePrimSet(*pVertices, shader->GetDeviceShader(), 2);
        const uint16_t indices[] = {0, 1, 3};
        pSet->SetUp(0, 3, gz::PrimKind_TriangleList);
        pSet->SetIndices(indices);
        mesh.SetPolyCount(ra::Mesh::Poly_Low, 1);
        mesh.SetPrimSet(0, ra::Mesh::Poly_Low, std::move(pSet));
        mesh.SetVertexSet(ra::Mesh::Poly_Low, std::move(pVertices));
    }
    static void AddAnim(RenderModel& model, const char* pName) {
        ra::AddAnimNode(model, ra::MakeLocalNode(model, MakeAnim(pName)), 3);
    }

    static std::string Write(const RenderModel& model, uint32_t useDXTC = 0) {
        return ChunkBytes::FileHeader() +
               WriteChunks([&](Chunky& chunky, PayloadWriter&) { EXPECT_TRUE(ra::SaveFinal(model, chunky, useDXTC)); });
    }
    static std::string WriteMotion(const RenderModel& model) {
        return ChunkBytes::FileHeader() +
               WriteChunks([&](Chunky& chunky, PayloadWriter&) { ra::SaveFinalMotion(model, chunky); });
    }
    static std::unique_ptr<RenderModel> Read(const std::string& bytes) { return ra::ReadFinal(*MakeReadStream(bytes)); }
    static bool ReadMotion(const std::string& bytes, RenderModel& model) {
        return ra::ReadFinalMotion(*MakeReadStream(bytes), model);
    }
    static std::string MakeFile(const std::string& children, uint32_t version = 3) {
        return ChunkBytes::FileHeader() + NamedFolder("QPVX", "Walker", children, version);
    }
    static std::string MakeMotionFile(const std::string& children, uint32_t version = 4) {
        return ChunkBytes::FileHeader() + ChunkBytes::Folder("QEBP", children, version);
    }
    static std::string MakeSkeleton() {
        return ChunkBytes::Data("SKEL",
                                PayloadBytes().U32(1).Text("hip").U32(0xFFFFFFFF).F32({1, 2, 3, 0, 0, 0, 1}).Get(), 5);
    }
};
