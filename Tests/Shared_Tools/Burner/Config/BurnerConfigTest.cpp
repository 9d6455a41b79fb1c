#include "Shared_Tools/Burner/Config/BurnerConfig.h"

#include "Tests/Shared/Cross/Debug/ReportCapture.h"

#include <gtest/gtest.h>

namespace {

using TargetID = BurnerConfig::TargetID;

class BurnerConfigTest : public testing::Test {
protected:
    BurnerConfigTest() {
        EXPECT_TRUE(m_Config.AddTargetGroup("Models", ".*"));
        EXPECT_TRUE(m_Config.AddTarget("models", "obm", "DATA:", "model"));
        m_Id = m_Config.GetTargetID("OBM", "MODELS");
        EXPECT_TRUE(m_Config.SetParam({"a", "One", false}, m_Id));
    }
    BurnerConfig::Param Get(const char* pName) const {
        BurnerConfig::Param param;
        EXPECT_TRUE(m_Config.GetParam(pName, m_Id, param));
        return param;
    }
    ReportCapture m_Reports;
    BurnerConfig m_Config;
    TargetID m_Id;
};

TEST_F(BurnerConfigTest, WhatCantBeAdded) {
    EXPECT_FALSE(m_Config.AddTargetGroup("MODELS", ".*"));
    EXPECT_FALSE(m_Config.AddTargetGroup(nullptr, ".*"));
    EXPECT_FALSE(m_Config.AddTargetGroup("x", nullptr));
    EXPECT_FALSE(m_Config.AddTarget("models", "OBM", "", ""));
    EXPECT_FALSE(m_Config.AddTarget("models", "", "", ""));
    EXPECT_FALSE(m_Config.AddTarget("none", "x", "", ""));
    EXPECT_FALSE(m_Config.AddTarget("models", "x", "", nullptr));
    EXPECT_FALSE(m_Config.AddTarget(nullptr, "x", "", ""));
    EXPECT_EQ(m_Config.GetTargetCount("models"), 1u);
}

TEST_F(BurnerConfigTest, WhatIsntThere) {
    BurnerConfig::Param param;
    EXPECT_EQ(m_Config.GetTargetID(1u, "models"), TargetID::InvalidID);
    EXPECT_EQ(m_Config.GetTargetID(0u, "none"), TargetID::InvalidID);
    EXPECT_EQ(m_Config.GetTargetID("none", "models"), TargetID::InvalidID);
    EXPECT_EQ(TargetID::InvalidID, (TargetID{-1, -1}));
    EXPECT_EQ(m_Config.GetTargetName(TargetID::InvalidID), nullptr);
    EXPECT_EQ(m_Config.GetTargetCount("none"), 0u);
    EXPECT_EQ(m_Config.GetParamCount(TargetID::InvalidID), 0u);
    EXPECT_FALSE(m_Config.GetParam(1u, m_Id, param));
    EXPECT_FALSE(m_Config.GetParam("b", m_Id, param));
    EXPECT_FALSE(m_Config.SetParam({"a", "", false}, TargetID::InvalidID));
    EXPECT_FALSE(m_Config.RemoveParam("b", m_Id));
    EXPECT_THROW(m_Config.GetGroupName(1), std::runtime_error);
    EXPECT_THROW(m_Config.GetGroupWildcard(1), std::runtime_error);
}

TEST_F(BurnerConfigTest, SettingFoldsLevelsTogether) {
    m_Config.SetParam({"A", "ONE", true}, m_Id); // an equal value: only the flag is taken
    EXPECT_EQ(Get("a").value, "One");
    EXPECT_TRUE(Get("a").inherited);
    m_Config.SetParam({"a", "two", true}, m_Id); // another one isn't inherited, whatever it says
    EXPECT_EQ(Get("A").value, "two");
    EXPECT_FALSE(Get("a").inherited);
    m_Config.SetParam({"new", "x", true}, m_Id); // a new one as it stands
    EXPECT_TRUE(Get("new").inherited);
    EXPECT_TRUE(m_Config.RemoveParam("NEW", m_Id));
    EXPECT_EQ(m_Config.GetParamCount(m_Id), 1u);
    const BurnerConfig::Param odd{std::string("n\0l", 3), "x", false};
    EXPECT_TRUE(m_Config.SetParam(odd, m_Id) && m_Config.SetParam(odd, m_Id));
    EXPECT_EQ(m_Config.GetParamCount(m_Id), 2u);
}

TEST_F(BurnerConfigTest, InheritanceOfTargetsAndGroups) {
    EXPECT_FALSE(m_Config.IsTargetInherited(m_Id));
    EXPECT_TRUE(m_Config.AddTarget("models", "bare", "", ""));
    EXPECT_TRUE(m_Config.IsTargetInherited({0, 1}));
    EXPECT_FALSE(m_Config.IsTargetInherited(TargetID::InvalidID));
    EXPECT_FALSE(m_Config.IsGroupInherited("models"));
    m_Config.SetParam({"a", "one", true}, m_Id);
    EXPECT_TRUE(m_Config.IsGroupInherited("models"));
    m_Config.AddTargetGroup("empty", "");
    EXPECT_FALSE(m_Config.IsGroupInherited("empty"));
}

} // namespace
