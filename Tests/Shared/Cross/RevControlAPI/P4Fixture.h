#pragma once

#include "Shared/Cross/RevControlAPI/RevControlP4.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/Cross/RevControlAPI/P4Server.h"

#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// A connection to the stand-in server.
class P4Fixture : public testing::Test {
protected:
    P4Fixture() {
        EXPECT_TRUE(m_Control.Initialize(P4Server::s_Port));
        m_Server.TakeCommands();
    }
    // Good until the object goes.
    const char* Name(const std::string& name) { return m_Names.insert(m_Server.Path(name)).first->c_str(); }
    std::string Quote(const std::string& name) const { return "'" + m_Server.Path(name) + "'"; }
    void ExpectFailure(bool result, const std::string& text) {
        EXPECT_FALSE(result) << text;
        EXPECT_EQ(m_Control.GetLastError(), text);
    }

    ReportCapture m_Reports;
    P4Server m_Server;
    RevControlP4 m_Control;
    std::set<std::string> m_Names;
};
