#include "Host/App/OutputFile.h"

#include "Host/App/Messages.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/Util/FourCC.h"
#include "Shared/PC/FileSystem/DiskFileStream.h"
#include "Tests/Host/App/TestFolder.h"

#include <gmock/gmock.h>

namespace {

const bool s_Throws = (dbSetThrowOnAssert(true), true);

class Output : public TestFolder {
protected:
    // The refusal's text; empty when the name is fine.
    std::string Refusal(const std::string& path) const {
        try {
            const OutputFile output(path, At("scene.glb"));
            return "";
        } catch (const HostError& error) {
            EXPECT_EQ(error.GetStatus(), 2);
            return error.what();
        }
    }

    std::string MakeModel() const {
        DiskFileStream stream;
        stream.Open(At("model.pvx").c_str(), ByteStream::Mode_Write, false);
        Chunky chunky{ByteStreamAdapter(&stream)};
        chunky.BeginFolder(FourCC("QPVX"), 1, "Model");
        chunky.BeginData(FourCC("MARK"), 1, "Mark");
        chunky.EndChunk();
        chunky.EndChunk();
        stream.Close();
        return Read("model.pvx");
    }
};

TEST_F(Output, RefusesPlacesWhereNothingCanStand) {
    std::filesystem::create_directory(m_Folder / "folder.pvx");
    Write("scene.glb", "scene");
    EXPECT_THAT(Refusal(At("none/out.pvx")), testing::HasSubstr("there is no folder \"" + At("none") + "\""));
    EXPECT_THAT(Refusal(At("out")), testing::HasSubstr("call it out.pvx"));
    EXPECT_THAT(Refusal(At("dir.with.dots/out")), testing::HasSubstr("call it out.pvx"));
    EXPECT_THAT(Refusal(At("out.LOG")), testing::HasSubstr("call the output out.pvx"));
    EXPECT_THAT(Refusal(At("")), testing::HasSubstr("names a folder"));
    EXPECT_THAT(Refusal(At("a\\b.pvx")), testing::HasSubstr("take backslashes and colons out"));
    EXPECT_THAT(Refusal(At("folder.pvx")), testing::HasSubstr("is a folder"));
    EXPECT_THAT(Refusal(At("scene.glb")), testing::HasSubstr("is the scene itself"));
    EXPECT_THAT(Refusal(At(std::string(240, 'x') + ".pvx")), testing::HasSubstr("choose a shorter one"));
    EXPECT_THAT(Refusal("/proc/out.pvx"), testing::HasSubstr("can't be written"));
    EXPECT_THAT(List(), testing::ElementsAre("folder.pvx", "scene.glb"));
}

TEST_F(Output, RefusesToReplaceAnotherKindOfFile) {
    Write("model.txt", MakeModel());
    Write("empty.txt", "");
    Write("other.txt", "Vorlo");
    Write("other.PVX", "of before");
    for (const char* pName : {"model.txt", "empty.txt", "none.txt", "other.pvx"})
        EXPECT_EQ(Refusal(At(pName)), "") << pName;
    EXPECT_THAT(Refusal(At("other.txt")), testing::HasSubstr("other.txt: is another kind of file"));
}

TEST_F(Output, ABrokenFileThatSomebodyWritesStays) {
    const OutputFile output(At("out.pvx"), At("scene.glb"));
    DiskFileStream writer;
    ASSERT_TRUE(writer.Open(output.GetPath().c_str(), ByteStream::Mode_Write, true));
    writer.Write("half", 4);
    writer.Flush();
    output.RemoveIfBroken();
    EXPECT_EQ(Read("out.pvx"), "half");
    writer.Close();
    output.RemoveIfBroken();
    EXPECT_THAT(List(), testing::IsEmpty());
}

TEST_F(Output, LooksWithoutLeavingATrace) {
    Write("old.pvx", "old");
    EXPECT_EQ(Refusal(At("new.pvx")), "");
    EXPECT_EQ(Refusal(At("old.pvx")), "");
    EXPECT_THAT(List(), testing::ElementsAre("old.pvx"));
    EXPECT_EQ(Read("old.pvx"), "old");
}

TEST_F(Output, EveryCutOfAFileIsBrokenAndTakenAway) {
    const std::string whole = MakeModel();
    for (size_t size = 0; size < whole.size(); ++size) {
        const OutputFile output(At("out.pvx"), At("scene.glb"));
        Write("out.pvx", whole.substr(0, size));
        EXPECT_TRUE(output.IsWritten());
        EXPECT_EQ(output.GetContent(), OutputFile::Content::Broken) << "cut to " << size;
        output.RemoveIfBroken();
        EXPECT_THAT(List(), testing::ElementsAre("model.pvx")) << "cut to " << size;
    }
    const OutputFile output(At("out.pvx"), At("scene.glb"));
    Write("out.pvx", whole);
    output.RemoveIfBroken();
    EXPECT_EQ(output.GetContent(), OutputFile::Content::Full);
    EXPECT_EQ(Read("out.pvx"), whole);
}

TEST_F(Output, WhatTheRunDidNotWriteStays) {
    Write("out.pvx", "broken before");
    const OutputFile output(At("out.pvx"), At("scene.glb"));
    EXPECT_FALSE(output.IsWritten());
    output.RemoveIfBroken();
    EXPECT_THAT(List(), testing::ElementsAre("out.pvx"));
}

} // namespace
