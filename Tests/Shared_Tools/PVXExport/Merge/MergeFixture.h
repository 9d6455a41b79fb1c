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
#include "Shared/Cross/RenderAnim/LoadSwitch.h"
#include "Shared_Tools/PVXExport/Merge/MergeServices.h"
#include "Shared_Tools/PVXExport/Merge/animerge.h"
#include "Tests/Shared/Cross/RevControlAPI/P4Server.h"
#include "Tests/Shared_Tools/PVXExport/Merge/ModelFiles.h"

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

    void WriteIni(const std::string& tools, const std::string& global = s_GlobalSection) const {
        m_Server.Write("pipeline.ini", global + tools + s_ProjectSection);
    }
    void WriteModel(const std::string& name, const ModelServices::Bones& bones,
                    const std::vector<std::string>& shaders) const {
        m_Server.Write(name, ModelServices().MakeModel(bones, shaders));
    }
    std::string At(const std::string& name) const { return m_Server.Path(name); }
    // Somebody else has opened the file "theirs" alone, so that it stays read-only.
    void SubmitOfOther(const std::string& name) {
        m_Server.Submit(name, "theirs", true, "binary+l");
        m_Server.OpenByOther(name, true);
    }
    // What a script is told when a file can't be opened or burnt.
    std::string TellUnable(const std::string& what, const std::string& file, const std::string& mark = "") const {
        return "Merge: Unable to " + what + " '" + At(file) + "'" + mark +
               " in P4!  Please make sure no one else has it checked-out in P4 (Data Generic / Data Final)!\n";
    }

    static constexpr const char* s_Merged = "gen\\art\\tank.pvx";
    static constexpr const char* s_Model = "int\\ref.pvx";

    static AniMergeArguments MakeArguments(const std::vector<std::string>& anims, const std::string& model = s_Model) {
        return {.count = 3, .mergeFile = s_Merged, .modelFile = model, .animFiles = anims};
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
