#pragma once

#include <memory>
#include <string>

#include <gmock/gmock.h>

#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimNodes.h"
#include "Shared/Cross/RenderAnim/Generic/GenericFile.h"
#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"

// Generic models, whole ones and such as are typed by hand.
class GenericFixture : public ModelFixture {
protected:
    static std::string Write(const RenderModel& model) {
        return WriteFile([&](ByteStream& stream) { ra::WriteGeneric(stream, model); });
    }
    static std::unique_ptr<RenderModel> Read(const std::string& bytes) {
        return ra::ReadGeneric(*MakeReadStream(bytes));
    }

    // By hand: a file, a skeleton of "hip" and "knee", and an animation.
    static std::string File(const std::string& children, uint32_t version = 1) {
        return ChunkBytes::FileHeader() + NamedFolder("QPVX", "Walker", children, version);
    }
    static std::string Bone(const char* pName, uint32_t parent, uint32_t version = 5) {
        return NamedData("BONE", pName, PayloadBytes().U32(parent).F32({1, 2, 3}).F32({0, 0, 0.6f, 0.8f}).Get(),
                         version);
    }
    static std::string Bones(const std::string& bones, uint32_t count, uint32_t version = 3) {
        return ChunkBytes::Folder("SKEL", ChunkBytes::Data("INFO", PayloadBytes().U32(count).Get()) + bones, version);
    }
    static std::string TwoBones() { return Bones(Bone("hip", 0xFFFFFFFF) + Bone("knee", 0), 2); }
    static std::string Info() { return ChunkBytes::Data("INFO", PayloadBytes().U32(3).F32({0.5f}).Get(), 5); }
    static std::string Anim(const char* pName, const std::string& children, uint32_t version = 3) {
        return NamedFolder("ANIM", pName, NamedFolder("DATA", pName, children, version), 2);
    }
    static std::string XRef(const char* pName, const std::string& modelName, const char* pAnim, uint32_t version = 3) {
        return NamedFolder("ANIM", pName,
                           ChunkBytes::Data("XREF", PayloadBytes().Text(modelName).Text(pAnim).Get(), version), 2);
    }

    // A model with one of everything.
    static std::unique_ptr<RenderModel> MakeModel() {
        const ShaderRef clay = MakeShader("Clay");
        const ShaderRef glass = MakeShader("Glass.001");
        std::unique_ptr<RenderModel> pModel = MakeWalker({MakeSkin({clay, glass}), MakeMesh("Wheel", {clay}, 3)});
        AddAnim(*pModel, "run").SetBounds({-1, -2, -3}, {4, 5, 6});
        AddAnim(*pModel, "stop.1");
        return pModel;
    }

    static AnimListNode& AddAnim(RenderModel& model, const char* pName) {
        ra::AddAnimNode(model, ra::MakeLocalNode(model, MakeAnim(pName)), 2);
        return *model.GetAnimList()->GetNode(model.GetAnimList()->GetCount() - 1);
    }
    static const ::Anim& GetAnim(const RenderModel& model, uint32_t index = 0) {
        return *model.GetAnimList()->GetNode(index)->GetAnim().GetData();
    }
};
