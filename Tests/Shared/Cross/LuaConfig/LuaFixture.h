#pragma once

#include "Shared/Cross/FileSystem/RamStream.h"
#include "Shared/Cross/LuaConfig/LuaConfig.h"
#include "Shared/Cross/LuaConfig/LuaConfigSave.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// A state, and all that it reports.
class LuaFixture : public testing::Test {
protected:
    LuaFixture() { Listen(m_Config); }

    void Listen(LuaConfig& config) {
        config.GetCallbacks().report = [this](const char* pText) { m_Texts.emplace_back(pText); };
        config.GetCallbacks().print = [this](const char* pText) { m_Printed.emplace_back(pText); };
    }
    // Without its last word a test has forgotten a report.
    void ExpectReport(const std::string& text) {
        EXPECT_THAT(m_Texts, testing::ElementsAre(text));
        m_Texts.clear();
    }
    void ExpectReportWith(const std::string& part) {
        EXPECT_THAT(m_Texts, testing::ElementsAre(testing::HasSubstr(part)));
        m_Texts.clear();
    }
    void Run(const char* pText) {
        EXPECT_TRUE(m_Config.RunCommand(pText)) << pText;
        EXPECT_THAT(m_Texts, testing::IsEmpty()) << pText;
    }
    // What a script sees of an expression.
    std::string Evaluate(const std::string& expression) {
        m_Printed.clear();
        Run(("print(" + expression + ")").c_str());
        return m_Printed.empty() ? "" : m_Printed[0];
    }
    static bool LoadText(LuaConfig& config, const std::string& text, const char* pName = "test.lua") {
        std::string bytes = text + " "; // a stream isn't empty
        RamStream stream;
        stream.Attach(bytes.data(), static_cast<uint32_t>(bytes.size()), false, ByteStream::Mode_Read);
        stream.SetName(pName);
        return LuaConfigSave::LoadFromStream(config, stream);
    }

    ReportCapture m_Reports;
    std::vector<std::string> m_Texts;
    std::vector<std::string> m_Printed;
    LuaConfig m_Config{"test"};
};
