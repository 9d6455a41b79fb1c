#pragma once

#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/Cross/RenderAnim/Files/SharedShaderFile.h"
#include "Shared/Cross/RenderAnim/Generic/MotionFile.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared/Cross/RenderAnim/TextureConvert.h"
#include "Shared/Cross/TeamColour/Pattern.h"
#include "Shared/Cross/TeamColour/PatternLoad.h"
#include "Shared_Tools/Burner/Burner.h"
#include "Tests/Shared/Cross/RenderAnim/Generic/GenericFixture.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"
#include "Tests/Shared_Tools/Burner/BurnerFolder.h"

#include <chrono>
#include <filesystem>
#include <fstream>

// A small project whose files are burned by the program itself, in a process of its own.
class BurnProject : public GenericFixture {
protected:
    BurnProject() {
        m_Folder.Write("gen/_default.burn", MakeScript(s_Groups));
        EXPECT_EQ(Pipeline::Initialize(m_Folder.Path("gen/x").c_str()), Pipeline::Result_Ok);
        m_pBurner = std::make_unique<Burner>(m_Folder.Path("net").c_str());
    }
    ~BurnProject() override {
        if (Pipeline::IsInitialized())
            Pipeline::Shutdown();
    }

    static constexpr const char* s_Groups = R"(
        { name = "models", wildcard = ".*\\.pvx", targets = { { target = "model", plugin = "model", destination = "DATA:" } } },
        { name = "shaders", wildcard = ".*\\.qsh", targets = { { target = "shader", plugin = "shader", destination = "DATA:" } } },
        { name = "patterns", wildcard = ".*\\.otp", targets = { { target = "pattern", plugin = "pattern", destination = "DATA:" } } },
        { name = "texts", wildcard = ".*\\.txt", targets = { { target = "copy", plugin = "copy", destination = "DATA:texts" } } },)";
    static std::string MakeScript(const std::string& groups, const std::string& params = "") {
        return "burn_version = 1\nburn_targets = {" + groups + "}\n" + params;
    }
    // An override script for one target.
    static std::string MakeParams(const char* pGroup, const char* pTarget, const std::string& params) {
        return std::string("burn_params = { { name = \"") + pGroup + "\", targets = { { target = \"" + pTarget +
               "\", params = { " + params + " } } } } }\n";
    }

    void WriteModel(const std::string& name, bool withMotion = false) {
        std::unique_ptr<RenderModel> pModel = MakeModel();
        pModel->GetMeshGroup()->GetShader(0)->SetChannelTexture(0, AddTexture("art/clay", 32));
        m_Folder.Write("gen/" + name + ".pvx", Write(*pModel));
        if (withMotion) {
            const auto pStream = MakeWriteStream();
            ra::WriteMotionFile(*pStream, *pModel);
            m_Folder.Write("gen/" + name + ".ebp", BytesOf(*pStream));
        }
        Forget(std::move(pModel));
    }
    void WriteShader(const std::string& name, uint32_t side = 16, uint32_t levelCount = 1) {
        {
            const ShaderRef shader = MakeShader("art/shared");
            shader->SetChannelTexture(0, AddTexture("art/shared", side, levelCount));
            const auto pStream = MakeWriteStream();
            ra::WriteSharedShader(*pStream, *shader.GetData());
            m_Folder.Write("gen/" + name + ".qsh", BytesOf(*pStream));
        }
        Forget();
    }
    void WritePattern(const std::string& name) const {
        Pattern pattern;
        pattern.SetSize(2, 2);
        pattern.SetLayer(Pattern::LAYER_TRIM, {1, 2, 3, 4});
        const auto pStream = MakeWriteStream();
        PatternLoad::Write(*pStream, pattern);
        m_Folder.Write("gen/" + name + ".otp", BytesOf(*pStream));
    }
    static TextureRef AddTexture(const char* pName, uint32_t side, uint32_t levelCount = 1) {
        std::unique_ptr<Texture> pTexture = Image2Texture(MakeRandomImage(IMAGETYPE_RGB888, side, side, levelCount));
        pTexture->SetName(pName);
        TextureRef texture;
        texture.Set(std::move(pTexture));
        return texture;
    }

    struct Flags {
        bool all = false;
        bool subfolders = false;
        bool sayOnly = false;
        bool revisionControl = false;
    };
    // The job's result; -1 for a job that failed. The messages stand in m_Texts.
    int32_t Burn(const std::string& folder, const std::string& pattern, const Flags& flags, int32_t changelist = 0) {
        BurnerMessageList messages;
        int32_t result = -1;
        const bool good =
            m_pBurner->BurnDirect(changelist, m_Folder.Path(folder).c_str(), pattern.c_str(), flags.all,
                                  flags.subfolders, flags.sayOnly, flags.revisionControl, result, messages);
        m_Texts.clear();
        for (const BurnerMessage& message : messages)
            m_Texts.push_back(message.text);
        return good ? result : -1;
    }
    int32_t Burn(const std::string& folder, const std::string& pattern = ".*") {
        return Burn(folder, pattern, Flags{});
    }

    // As if it had just been changed, whatever the clock's steps are.
    void Touch(const std::string& name) const {
        std::filesystem::last_write_time(m_Folder.Get().Native(name),
                                         std::filesystem::file_time_type::clock::now() + std::chrono::seconds(2));
    }
    void SetOld(const std::string& name) const {
        std::filesystem::last_write_time(m_Folder.Get().Native(name),
                                         std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
    }

    BurnerFolder m_Folder{"BurnerImp.exe"};
    std::unique_ptr<Burner> m_pBurner;
    std::vector<std::string> m_Texts;
};
