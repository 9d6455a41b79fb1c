#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared/Cross/RenderAnim/TextureConvert.h"
#include "Tests/Shared/Cross/RenderAnim/Chunks/PayloadBytes.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"
#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"

// What models stand on, for as long as it lives: to write a test's files and to read them back. Not beside a merge,
// which brings its own, nor beside a ReportCapture.
class ModelServices : public ModelFixture {
public:
    void TestBody() override {}

    using Bones = std::vector<std::string>;

    // A chain of bones, none for no skeleton, and a mesh with a shader for each name, which is its texture's, too.
    std::string MakeModel(const Bones& bones, const std::vector<std::string>& shaders) {
        RenderModel model;
        model.SetName("ref");
        std::vector<ShaderRef> shaderRefs;
        for (const std::string& name : shaders)
            shaderRefs.push_back(MakeTextured(name));
        model.SetMeshGroup(MakeGroup({MakeMesh("body", shaderRefs)}));
        if (!bones.empty())
            model.SetSkeleton(MakeBones(bones));
        const auto pStream = MakeWriteStream();
        ra::WriteIntermediate(*pStream, model, {});
        return BytesOf(*pStream);
    }

    // Each bone hangs on the one before it, one unit further up.
    static std::unique_ptr<Skeleton> MakeBones(const Bones& bones) {
        auto pSkeleton = std::make_unique<Skeleton>(static_cast<uint32_t>(bones.size()));
        for (int32_t i = 0; i < static_cast<int32_t>(bones.size()); ++i) {
            pSkeleton->SetBoneName(i, ra::Name(bones[static_cast<size_t>(i)].c_str()));
            pSkeleton->SetParent(i, i - 1);
            pSkeleton->SetLocalPosition(i, {0, 1, 0});
        }
        pSkeleton->BuildRefPose();
        return pSkeleton;
    }

private:
    static ShaderRef MakeTextured(const std::string& name) {
        std::unique_ptr<Texture> pTexture = Image2Texture(MakeRandomImage(IMAGETYPE_RGBA32, 4, 4));
        pTexture->SetName(name.c_str());
        TextureRef texture;
        texture.Set(std::move(pTexture));
        ShaderRef shader = MakeShader(name.c_str());
        shader->SetChannelMode(CN_Diffuse, ChannelMode_Texture);
        shader->SetChannelTexture(CN_Diffuse, texture);
        return shader;
    }
};

// An animation alone, as an export of it is: for each bone two keys, the second one further to the side.
inline std::string MakeAnimChunk(const std::vector<std::string>& bones, std::string_view name = "run") {
    std::string streams = ChunkBytes::Data("INFO", PayloadBytes().U32(2).F32({0.5f}).Get());
    for (const std::string& bone : bones)
        streams += NamedData("BANM", bone,
                             PayloadBytes()
                                 .U32(2)
                                 .F32({0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 0})
                                 .F32({1, 1, 0, 0, 0, 1, 0, 0, 0, 1, 5, 1, 0})
                                 .U8(1)
                                 .Get(),
                             1);
    return NamedFolder("ANIM", name, NamedFolder("DATA", name, streams, 1), 1);
}
inline std::string MakeModelFile(const std::string& children) {
    return ChunkBytes::FileHeader() + NamedFolder("QPVX", "run", children, 1);
}
inline std::string MakeAnimFile(const std::vector<std::string>& bones) { return MakeModelFile(MakeAnimChunk(bones)); }

// Of a pipeline.ini: a project whose trees are src, int and gen.
constexpr const char* s_GlobalSection = "[Global]\r\nToolsData=ToolsData\r\n";
constexpr const char* s_ProjectSection =
    "[project:game]\r\nDataBurn=burn\r\nDataSource=src\r\nDataSourceShared=shared\r\nDataIntermediate=int\r\n"
    "DataGeneric=gen\r\nDataFinal=final\r\nDataPreview=preview\r\nLocaleFolder=locale\r\nAttrLoc=attr\r\nParent=\r\n";
