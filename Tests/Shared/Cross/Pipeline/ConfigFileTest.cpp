#include "Shared/Cross/Pipeline/ConfigFile.h"

#include "Tests/Shared/Cross/Pipeline/ProjectTree.h"

#include <sys/stat.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class ConfigFileTest : public ProjectTree {
protected:
    // As "[section]key=value", in the file's own order.
    std::vector<std::string> Load(const std::string& text) {
        m_Reports.Clear();
        Write("a.ini", text);
        EXPECT_TRUE(m_File.Load(Path("a.ini").c_str()));
        std::vector<std::string> result;
        for (uint32_t i = 0; i < m_File.GetSectionCount(); ++i) {
            m_File.SelectSection(m_File.GetSectionName(i));
            for (uint32_t key = 0; key < m_File.GetKeyCount(); ++key) {
                std::string value;
                EXPECT_TRUE(m_File.GetValue(m_File.GetKeyName(key), value));
                result.push_back(std::string("[") + m_File.GetSectionName(i) + "]" + m_File.GetKeyName(key) + "=" +
                                 value);
            }
        }
        return result;
    }
    bool Warned(const std::string& text) const { return m_Reports.HasWarning(text + " from " + Path("a.ini")); }

    ConfigFile m_File;
};

TEST_F(ConfigFileTest, SectionsAndKeysInLowerCaseAndNameOrder) {
    EXPECT_THAT(Load(Lines("; comment\n\n [ Zoo ] \nKey B = Some Text ; not a comment\nkeya=x=y\n[apes]\nEmpty=\n")),
                ElementsAre("[apes]empty=", "[zoo]key b=Some Text ; not a comment", "[zoo]keya=x=y"));
    EXPECT_THAT(m_Reports.GetWarnings(), ElementsAre());
}

TEST_F(ConfigFileTest, BadLinesAreReportedAndDropped) {
    EXPECT_THAT(Load(Lines("k=v\n[open\nno equals\n=first\n[s]\nk=1\nk=2\n[t]\n[S]\nk=3\nl=3\n")),
                ElementsAre("[s]k=1", "[s]l=3"));
    for (const char* pText : {"Key outside section at line 0", "Failed to read line 1", "Failed to read line 2",
                              "Failed to read line 3", "Duplicate section at line 8"})
        EXPECT_TRUE(Warned(pText)) << pText;
    EXPECT_EQ(m_Reports.GetWarnings().size(), 5u);
    EXPECT_THAT(Load("[s]\r\na=1\nb=2\n"), ElementsAre("[s]a=1\nb=2")); // line feeds alone end no line
}

TEST_F(ConfigFileTest, LongLinesAreCutInPieces) {
    const std::string value(1021, 'v');
    EXPECT_THAT(Load("[s]\r\nk=" + value + "\r\n"), ElementsAre("[s]k=" + value));
    // The piece takes 1023 bytes; the rest is a line by itself.
    EXPECT_THAT(Load("[s]\r\nk=" + value + "rest=1\r\n"), ElementsAre("[s]k=" + value, "[s]rest=1"));
    EXPECT_THAT(Load("[s]\r\n" + std::string(5000, 'x') + "\r\nk=1\r\n"), ElementsAre("[s]k=1"));
    EXPECT_TRUE(Warned("Failed to read line 5"));
}

TEST_F(ConfigFileTest, SavesWhatItReadsInNameOrder) {
    EXPECT_FALSE(m_File.Load(Path("none.ini").c_str()));
    const std::string nowhere = Path("none\\b.ini");
    EXPECT_FALSE(m_File.Save(nowhere.c_str()));
    EXPECT_TRUE(m_Reports.HasWarning("Couldn't open config file " + nowhere + " for writing"));
    Load(Lines("; gone\n[B]\nZ=1\nA=Two Words\n[A]\n"));
    ASSERT_TRUE(m_File.Save(Path("b.ini").c_str()));
    EXPECT_EQ(Read("b.ini"), "[a]\r\n\r\n[b]\r\na=Two Words\r\nz=1\r\n\r\n");
    Load(Read("b.ini"));
    chmod(Native("a.ini").c_str(), 0444);
    m_File.SelectSection("b");
    EXPECT_TRUE(m_File.SetValue("A", std::string(2000, 'v').c_str()));
    ASSERT_TRUE(m_File.Save(nullptr)) << "in place of a read-only file";
    EXPECT_EQ(Read("a.ini"), "[a]\r\n\r\n[b]\r\na=" + std::string(2000, 'v') + "\r\nz=1\r\n\r\n");
}

TEST_F(ConfigFileTest, ValuesAreThoseOfTheCurrentSection) {
    Load(Lines("[s]\nkey=12345\n[first]\n"));
    char previous[6];
    EXPECT_TRUE(m_File.SelectSection("S", previous, sizeof(previous)));
    char value[6];
    EXPECT_TRUE(m_File.GetValue("KEY", value, 6));
    EXPECT_STREQ(value, "12345");
    EXPECT_FALSE(m_File.GetValue("key", value, 5));
    EXPECT_STREQ(value, "");
    EXPECT_FALSE(m_File.GetValue("none", value, 6));
    for (const auto& [pKey, pValue] : {std::pair("k", "a;b"), {"k", "a=b"}, {"k=", "v"}, {"k;", "v"}})
        EXPECT_THROW(m_File.SetValue(pKey, pValue), std::runtime_error) << pKey << pValue;
    EXPECT_TRUE(m_File.DeleteKey("Key"));
    EXPECT_FALSE(m_File.DeleteKey("key"));
    EXPECT_TRUE(m_File.DeleteSection());
    m_File.SelectSection("a");
    EXPECT_FALSE(m_File.DeleteSection());
    m_File.SelectSection("a");
    EXPECT_TRUE(m_File.SetValue("New", "Value"));
    EXPECT_EQ(m_File.GetSectionCount(), 2u);
    EXPECT_STREQ(m_File.GetSectionName(0), "a");
    EXPECT_THROW(m_File.GetSectionName(2), std::runtime_error);
    EXPECT_THROW(m_File.SelectSection(std::string(256, 'x').c_str()), std::runtime_error);
}

} // namespace
