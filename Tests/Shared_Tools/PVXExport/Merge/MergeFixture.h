#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "Host/Sdk/Listener.h"
#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/Debug/Log/ProcessLog.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/Generic/GenericFile.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Shared/Cross/RenderAnim/LoadSwitch.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared/Cross/RenderAnim/TextureConvert.h"
#include "Shared_Tools/PVXExport/Merge/MergeServices.h"
#include "Shared_Tools/PVXExport/Merge/animerge.h"
#include "Tests/Shared/Cross/RenderAnim/Chunks/PayloadBytes.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"
#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"
#include "Tests/Shared/Cross/RevControlAPI/P4Server.h"

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
inline std::string MakeAnimChunk(const std::vector<std::string>& bones) {
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
    return NamedFolder("ANIM", "run", NamedFolder("DATA", "run", streams, 1), 1);
}
inline std::string MakeModelFile(const std::string& children) {
    return ChunkBytes::FileHeader() + NamedFolder("QPVX", "run", children, 1);
}
inline std::string MakeAnimFile(const std::vector<std::string>& bones) { return MakeModelFile(MakeAnimChunk(bones)); }

// A project in a client's folder: its trees are src, int and gen, the burner would lie in Burner. A merge's files are
// named from there, since the folder's own name has a point, which is where the log's name would end.
class MergeFixture : public testing::Test, private CharStream {
protected:
    MergeFixture() {
        thread_locals().current_stdout = this;
        std::filesystem::current_path(m_Server.Native());
        WriteIni(std::string("[burner]\r\nburnerPath=Burner\r\n[p4]\r\nRevControlPort=") + P4Server::s_Port + "\r\n");
        m_Server.Write("ToolsData/readme.txt", "");
        m_Server.Write("Burner/readme.txt", "");
        WriteModel("int/ref.pvx", {"hip", "knee"}, {"art\\steel"});
        m_Server.Write("int/run.pvx", MakeAnimFile({"hip", "knee"}));
    }
    ~MergeFixture() override {
        AniMergeShutdown(0);
        GetAniMergeFlags() = {};
        ra::SetGenericLoad(false);
        thread_locals().current_stdout = nullptr;
        std::filesystem::current_path(m_FolderBefore);
    }

    void WriteIni(const std::string& tools, const std::string& global = "[Global]\r\nToolsData=ToolsData\r\n") const {
        m_Server.Write("pipeline.ini",
                       global + tools +
                           "[project:game]\r\nDataBurn=burn\r\nDataSource=src\r\nDataSourceShared=shared\r\n"
                           "DataIntermediate=int\r\nDataGeneric=gen\r\nDataFinal=final\r\nDataPreview=preview\r\n"
                           "LocaleFolder=locale\r\nAttrLoc=attr\r\nParent=\r\n");
    }
    void WriteModel(const std::string& name, const ModelServices::Bones& bones,
                    const std::vector<std::string>& shaders) const {
        m_Server.Write(name, ModelServices().MakeModel(bones, shaders));
    }
    std::string At(const std::string& name) const { return m_Server.Path(name); }

    static constexpr const char* s_Merged = "gen\\art\\tank.pvx";
    static constexpr const char* s_Model = "int\\ref.pvx";

    static AniMergeArguments MakeArguments(const std::vector<std::string>& anims) {
        return {.count = 3, .mergeFile = s_Merged, .modelFile = s_Model, .animFiles = anims};
    }
    bool Merge(const std::vector<std::string>& anims, const AniMergeFlags& flags = {}) {
        m_Text.clear();
        return AniMerge(MakeArguments(anims), flags);
    }

    static bool AreServicesUp() {
        EXPECT_EQ(Inv::IsInitialized(), gz::GetDevice() != nullptr);
        return Inv::IsInitialized() && Pipeline::IsInitialized() && ProcessLog::IsOpen() &&
               FilePath::HasAlias("TOOL:x") && FilePath::HasAlias("DATA:x") && FilePath::HasAlias("GENERIC:x");
    }
    static bool AreServicesDown() {
        return !Inv::IsInitialized() && !gz::GetDevice() && !Pipeline::IsInitialized() && !ProcessLog::IsOpen() &&
               !FilePath::HasAlias("TOOL:x") && !FilePath::HasAlias("DATA:x") && !FilePath::HasAlias("GENERIC:x");
    }

    std::unique_ptr<RenderModel> ReadMerged() const {
        return ra::ReadGeneric(*MakeReadStream(m_Server.Read("gen/art/tank.pvx")));
    }

    P4Server m_Server;
    std::string m_Text; // of the listener
    std::filesystem::path m_FolderBefore = std::filesystem::current_path();

private:
    void puts(const char* pText) override { m_Text += pText; }
};
