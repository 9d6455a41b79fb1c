#include <gmock/gmock.h>

#include "Shared/Cross/RenderAnim/Chunks/MarkerChunk.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/Cross/RenderAnim/Chunks/PayloadBytes.h"

namespace {

template <class T>
std::string Write(void (*pWrite)(Chunky&, PayloadWriter&, const T&), const T& thing) {
    const auto pStream = MakeWriteStream();
    Chunky chunky{ByteStreamAdapter(pStream.get())};
    PayloadWriter writer;
    pWrite(chunky, writer, thing);
    return BytesOf(*pStream).substr(24);
}

template <class T>
T Read(T (*pRead)(Chunky&), const std::string& bytes) {
    const auto pStream = MakeReadStream(ChunkBytes::FileHeader() + bytes);
    Chunky chunky{ByteStreamAdapter(pStream.get())};
    return pRead(chunky);
}

TEST(MarkerChunk, ReadsAndWritesBytesTypedByHand) {
    const std::string bytes =
        NamedData("MARK", "Muzzle", PayloadBytes().Text("hand").F32({1, 0, 0, 0, 1, 0, 0, 0, 1, 7, 8, 9}).Get(), 1);
    const Marker marker = Read(ra::ReadMarker, bytes);
    EXPECT_STREQ(marker.name.GetText(), "Muzzle");
    EXPECT_STREQ(marker.m_parentName.GetText(), "hand");
    EXPECT_EQ(marker.m_transform[3], glm::vec3(7, 8, 9));
    EXPECT_EQ(Write(ra::WriteMarker, marker), bytes);
    Marker free = marker;
    free.m_parentName = ra::Name::INVALID;
    EXPECT_FALSE(Read(ra::ReadMarker, Write(ra::WriteMarker, free)).m_parentName.IsValid());
}

TEST(CameraChunk, ReadsAndWritesBytesTypedByHand) {
    PayloadBytes bytes;
    bytes.F32({1, 2, 3}).F32({0.1f, 0.2f, 0.3f, 0.9f}).F32({1.5f, 0.5f, 100}); // position, rotation, lens
    const std::string old = NamedData("CMRA", "Front", bytes.Get(), 1);
    EXPECT_EQ(Read(ra::ReadCamera, old).target, glm::vec3(0));
    const std::string chunk = NamedData("CMRA", "Front", bytes.F32({4, 5, 6}).Get(), 2);
    const CameraDef camera = Read(ra::ReadCamera, chunk);
    EXPECT_STREQ(camera.name.GetText(), "Front");
    EXPECT_EQ(camera.position, glm::vec3(1, 2, 3));
    EXPECT_EQ(camera.rotation.w, 0.9f);
    EXPECT_EQ(camera.rotation.x, 0.1f);
    EXPECT_EQ(camera.farClip, 100);
    EXPECT_EQ(camera.target, glm::vec3(4, 5, 6));
    EXPECT_EQ(Write(ra::WriteCamera, camera), chunk);
    EXPECT_THROW(Read(ra::ReadCamera, NamedData("CMRA", "Front", bytes.Get().substr(0, 51), 2)), Chunky::Exception);
}

} // namespace
