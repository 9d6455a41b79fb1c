#pragma once

#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared_Tools/Burner/Config/ConfigLoad.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/Cross/RevControlAPI/P4Server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// A project in a server's client folder, with a base script and one file, "generic/art/tank.pvx".
class BurnProject : public testing::Test {
protected:
    BurnProject() {
        m_Server.Write("pipeline.ini",
                       "[p4]\r\nRevControlPort=x\r\n[project:Demo]\r\nDataSource=s\r\nDataSourceShared=s\r\n"
                       "DataBurn=b\r\nDataIntermediate=i\r\nDataGeneric=generic\r\nDataFinal=f\r\n"
                       "DataPreview=p\r\nLocaleFolder=l\r\nAttrLoc=a\r\nParent=\r\n");
        m_Server.Write("generic/_default.burn", s_Base);
        m_Server.Write("generic/art/tank.pvx", "model");
        EXPECT_EQ(Pipeline::Initialize(m_Server.Path("pipeline.ini").c_str()), Pipeline::Result_Ok);
    }
    ~BurnProject() override { Pipeline::Shutdown(); }

    static constexpr const char* s_Base = R"(
burn_version = 3
burn_targets = {
    { name = "Models", wildcard = ".*\\.pvx", targets = {
        { target = "obm", destination = "DATA:", plugin = "model" },
        { target = "copy", destination = "DATA:raw", plugin = "copy" } } },
    { name = "Rest", targets = {} },
}
burn_params = {
    { name = "models", targets = { { target = "OBM", params = { { "useDXTC", "0" }, { "mipMaps", "true" } } } } },
}
)";
    static constexpr const char* s_File = "generic/art/tank.pvx";
    static constexpr const char* s_Script = "generic/art/tank.pvx.burn";

    static std::string Override(const std::string& pairs) {
        return "burn_params = { { name = 'Models', targets = { { target = 'obm', params = { " + pairs + " } } } } }";
    }
    std::string Path(const std::string& name) const { return m_Server.Path(name); }

    bool Load(const std::string& name = s_File) {
        m_Messages.clear();
        return m_Loader.LoadConfig(Path(name).c_str(), m_Config, m_Messages);
    }
    // The reasons behind their common start.
    std::vector<std::string> GetTexts() const {
        std::vector<std::string> texts;
        for (const BurnerMessage& message : m_Messages) {
            EXPECT_EQ(message.kind, BurnerMessage::Kind_Warning);
            EXPECT_THAT(message.text, testing::StartsWith("Warning: ConfigIO --"));
            texts.push_back(message.text.substr(20));
        }
        return texts;
    }
    BurnerConfig::TargetID Obm() const { return m_Config.GetTargetID("obm", "models"); }
    // "0", and "0 (inherited)"; empty for none.
    std::string Value(const char* pName) const {
        BurnerConfig::Param param;
        if (!m_Config.GetParam(pName, Obm(), param))
            return "";
        return param.value + (param.inherited ? " (inherited)" : "");
    }
    void Set(const char* pName, const char* pValue) { EXPECT_TRUE(m_Config.SetParam({pName, pValue, false}, Obm())); }

    ReportCapture m_Reports;
    P4Server m_Server;
    ConfigLoad m_Loader;
    BurnerConfig m_Config;
    BurnerMessageList m_Messages;
};
