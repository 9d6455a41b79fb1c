#include "Shared/Cross/RevControlAPI/RevControlLocal.h"

#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <gtest/gtest.h>

namespace {

using Api = RevControlAPI;

class RevControlLocalTest : public testing::Test {
protected:
    RevControlLocalTest() {
        m_Folder.Write("open", "o");
        m_Folder.Write("closed", "c");
        m_Folder.MakeFolder("folder");
        OSFile::SetWritable(m_Folder.Path("closed").c_str(), false);
    }

    TempFolder m_Folder;
    RevControlLocal m_Control;
    const std::string m_Open = m_Folder.Path("open");
    const std::string m_Closed = m_Folder.Path("closed");
    const std::string m_None = m_Folder.Path("none");
    const std::string m_Directory = m_Folder.Path("folder");
};

TEST_F(RevControlLocalTest, AttributesAreAllTheStateThereIs) {
    const struct {
        const std::string& name;
        bool edit;
        int status;
    } cases[] = {{m_Open, true, 0}, {m_Closed, false, 1}, {m_None, true, 3}, {m_Directory, false, 3}};
    for (const auto& [name, edit, status] : cases) {
        EXPECT_EQ(m_Control.Edit(name.c_str(), 5), edit) << name;
        EXPECT_EQ(m_Control.OpenOrAdd(name.c_str(), 5), edit ? Api::Open_Opened : Api::Open_Failed) << name;
        EXPECT_EQ(m_Control.GetFileStatus(name.c_str()), status) << name;
        EXPECT_EQ(m_Control.IsOpenedIn(name.c_str(), 0), status > 0) << name;
        EXPECT_FALSE(m_Control.IsOpenedIn(name.c_str(), 5)) << name;
    }
    const std::vector<std::string> good = {m_Open, m_None};
    const std::vector<std::string> bad = {m_Open, m_Closed};
    EXPECT_TRUE(m_Control.EditFiles(good, 0));
    EXPECT_FALSE(m_Control.EditFiles(bad, 0));
}

TEST_F(RevControlLocalTest, DeletesFilesThatCanBeWritten) {
    EXPECT_TRUE(m_Control.Delete(m_Open.c_str(), 0));
    EXPECT_FALSE(m_Folder.Has("open"));
    for (const std::string& name : {m_Closed, m_None, m_Directory})
        EXPECT_FALSE(m_Control.Delete(name.c_str(), 0)) << name;
    EXPECT_TRUE(m_Folder.Has("closed"));
}

TEST_F(RevControlLocalTest, ThereIsNoChangelistButTheDefaultOne) {
    using ByName = bool (RevControlLocal::*)(const char*, int32_t&);
    const std::pair<ByName, bool> numbered[] = {{&RevControlLocal::CreateChangelist, false},
                                                {&RevControlLocal::FindChangelist, false},
                                                {&RevControlLocal::FindOrCreateChangelist, true},
                                                {&RevControlLocal::GetOpenedChangelist, true}};
    for (const auto& [operation, result] : numbered) {
        int32_t number = 77;
        EXPECT_EQ((m_Control.*operation)("x", number), result);
        EXPECT_EQ(number, 0);
    }
    EXPECT_FALSE(m_Control.Add(m_None.c_str(), 0));
    EXPECT_EQ(m_Control.Sync(m_None.c_str(), false), Api::Sync_UpToDate);
}

} // namespace
