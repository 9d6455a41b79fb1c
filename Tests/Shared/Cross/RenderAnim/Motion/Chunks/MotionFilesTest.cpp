#include <gmock/gmock.h>

#include "Shared/Cross/RenderAnim/LoadSwitch.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/EventFile.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionTreeFiles.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/Cross/RenderAnim/DataTrees.h"
#include "Tests/Shared/Cross/RenderAnim/Motion/Chunks/MotionSide.h"

using ra::Name;

namespace {

// A generic and a final tree.
class MotionFiles : public testing::Test {
protected:
    MotionFiles() { m_Side.AddSamples(); }
    ~MotionFiles() override { ra::SetGenericLoad(false); }
    static void Put(const char* pPath, const std::string& chunks) {
        const std::string bytes = ChunkBytes::FileHeader() + chunks;
        const auto pStream = FilePath::OpenStream(pPath, ByteStream::Mode_Write);
        ASSERT_TRUE(pStream) << pPath;
        ASSERT_EQ(pStream->Write(bytes.data(), static_cast<uint32_t>(bytes.size())), bytes.size());
    }
    static std::string MakeEvent(const char* pValue) {
        return NamedData("EVNT", "whatever", PayloadBytes().U32(1).Text("sound").Text(pValue).Get(), 3);
    }
    // The value of the one parameter; empty when the event couldn't be loaded.
    static std::string Load(const char* pName) {
        ra::EventList events;
        return ra::LoadEvent(Name(pName), events, "Walker") ? events.Find(Name(pName))->m_parameters[0].value : "";
    }

    DataTrees m_Folder;
    ReportCapture m_Reports;
    MotionSide m_Side;
    ra::MotionContext m_Context = {.pModelName = "Runner", .hasAnimation = [](const Name&) { return true; }};
};

TEST_F(MotionFiles, EventsLieInTheirFolderOrWhereTheirNameSays) {
    Put("DATA:art\\events\\bang.events", MakeEvent("bare"));
    Put("DATA:fx\\bang.events", MakeEvent("path"));
    EXPECT_EQ(Load("bang"), "bare");
    EXPECT_EQ(Load("bang.events"), "bare");
    EXPECT_EQ(Load("fx/bang"), "path");
    EXPECT_EQ(Load("DATA:\\fx\\bang.events"), "path");
    EXPECT_EQ(Load("boom"), "");
    EXPECT_EQ(Load(std::string(300, 'x').c_str()), "");
    EXPECT_TRUE(m_Reports.GetWarnings().empty());
    Put("GENERIC:art\\events\\bang.events", MakeEvent("generic"));
    EXPECT_EQ(Load("bang"), "bare");
    ra::SetGenericLoad(true);
    EXPECT_EQ(Load("bang"), "generic");
    EXPECT_EQ(Load("fx/bang"), "path") << "what isn't generic is there all the same";
}

TEST_F(MotionFiles, ADamagedEventIsTold) {
    Put("DATA:art\\events\\bang.events", NamedData("EVNT", "bang", "", 3));
    EXPECT_EQ(Load("bang"), "");
    EXPECT_TRUE(ReportCapture::HasWarning("EVENTS -- 'Walker': Unable to load event 'bang'!"));
}

TEST_F(MotionFiles, EventsAreSaved) {
    EXPECT_TRUE(ra::SaveEvent("DATA:art\\events\\step.events", m_Side.events[0]));
    EXPECT_EQ(Load("step"), "gravel");
    EXPECT_FALSE(ra::SaveEvent("NOWHERE:step.events", m_Side.events[0]));
    EXPECT_TRUE(ReportCapture::HasWarning("EVENTS -- 'NOWHERE:step.events': Unable to save!"));
}

TEST_F(MotionFiles, AMotionTakesTheEventsOfFiles) {
    Put("DATA:art\\events\\bang.events", MakeEvent("loud"));
    m_Side.motions[0].m_events.push_back({Name("bang"), 0.25f});
    ASSERT_TRUE(ra::ExportMotionList("DATA:x.erml", AsConst(m_Side.GetParts())));
    MotionSide other;
    ASSERT_TRUE(ra::ImportMotionList("DATA:x.erml", other.GetParts(), m_Context));
    EXPECT_EQ(other.motions[0].m_events.size(), 2u);
    EXPECT_TRUE(other.events.Has(Name("bang")));
    EXPECT_TRUE(m_Reports.GetWarnings().empty());
}

TEST_F(MotionFiles, AMotionListGoesToAnotherModel) {
    ASSERT_TRUE(ra::ExportMotionList("DATA:x.erml", AsConst(m_Side.GetParts())));
    MotionSide other;
    other.AddSamples();
    other.modifiers[0].m_refValue = 77;
    other.motions.Add(std::make_unique<ra::Motion>(Name("own")));
    other.actions[0].m_motions.push_back({Name("own"), 2, {}});
    m_Context.hasAnimation = [](const Name&) { return false; };
    ASSERT_TRUE(ra::ImportMotionList("DATA:x.erml", other.GetParts(), m_Context));
    EXPECT_EQ(other.motions.GetCount(), 2u) << "in place of the own ones";
    EXPECT_EQ(other.modifiers.GetCount(), 1u);
    EXPECT_EQ(other.modifiers[0].m_refValue, 77) << "of two namesakes the model's own stays";
    EXPECT_TRUE(ReportCapture::HasWarning("'Runner': Animation 'walk' referenced in motion 'walk' is missing!"));
    EXPECT_TRUE(ReportCapture::HasWarning("'Runner': Motion 'own' referenced in action 'move' is missing!"));
}

TEST_F(MotionFiles, AnActionTreeGoesToAnotherModel) {
    ASSERT_TRUE(ra::ExportActionTree("DATA:x.ertr", AsConst(m_Side.GetParts())));
    MotionSide other;
    other.motions.Add(std::make_unique<ra::Motion>(Name("walk")));
    ASSERT_TRUE(ra::ImportActionTree("DATA:x.ertr", other.GetParts(), m_Context));
    EXPECT_EQ(other.actions.GetCount(), 2u);
    EXPECT_EQ(other.conditions.GetCount(), 1u);
    EXPECT_EQ(other.clauses.GetCount(), 3u);
    EXPECT_EQ(other.actions[0].m_motions.size(), 1u);
    EXPECT_TRUE(ReportCapture::HasWarning("'Runner': Motion 'later' referenced in action 'move' is missing!"));
}

TEST_F(MotionFiles, FilesThatCantBeReadLeaveTheModelAsItWas) {
    const std::string before = m_Side.Write();
    ASSERT_TRUE(ra::ExportMotionList("DATA:motions", AsConst(m_Side.GetParts())));
    const std::string damaged = ChunkBytes::Folder("ACTR", NamedData("ACTN", "x", "", 1));
    Put("DATA:damaged", ChunkBytes::Folder("ERML", damaged) + ChunkBytes::Folder("ERTR", damaged));
    Put("DATA:newer", ChunkBytes::Folder("ERML", "", 2) + ChunkBytes::Folder("ERTR", "", 2));
    for (const std::string path : {"DATA:missing", "DATA:damaged", "DATA:newer"}) {
        EXPECT_FALSE(ra::ImportMotionList(path.c_str(), m_Side.GetParts(), m_Context));
        EXPECT_FALSE(ra::ImportActionTree(path.c_str(), m_Side.GetParts(), m_Context));
        EXPECT_TRUE(ReportCapture::HasWarning("RENDER ANIM -- '" + path + "': Unable to import motion list!"));
        EXPECT_TRUE(ReportCapture::HasWarning("RENDER ANIM -- '" + path + "': Unable to import action tree!"));
    }
    EXPECT_FALSE(ra::ImportActionTree("DATA:motions", m_Side.GetParts(), m_Context)) << "of the other kind";
    EXPECT_EQ(m_Side.Write(), before);
    EXPECT_FALSE(ra::ExportMotionList("NOWHERE:x", AsConst(m_Side.GetParts())));
    EXPECT_FALSE(ra::ExportActionTree("NOWHERE:x", AsConst(m_Side.GetParts())));
    EXPECT_TRUE(ReportCapture::HasWarning("RENDER ANIM -- 'NOWHERE:x': Unable to export motion list!"));
    EXPECT_TRUE(ReportCapture::HasWarning("RENDER ANIM -- 'NOWHERE:x': Unable to export action tree!"));
}

} // namespace
