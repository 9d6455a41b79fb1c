#include "Shared/Cross/RenderAnim/Chunks/MarkerChunk.h"

#include <gmock/gmock.h>

#include "Tests/Shared/Cross/RenderAnim/Chunks/ChunkVerbs.h"

namespace {

std::string Write(const Marker& marker) {
    return WriteChunks([&](Chunky& chunky, PayloadWriter& writer) { ra::WriteMarker(chunky, writer, marker); });
}

TEST(MarkerChunk, ReadsAndWritesBytesTypedByHand) {
    const std::string bytes =
        NamedData("MARK", "Muzzle", PayloadBytes().Text("hand").F32({1, 0, 0, 0, 1, 0, 0, 0, 1, 7, 8, 9}).Get(), 1);
    Marker marker = ReadChunks(bytes, ra::ReadMarker);
    EXPECT_STREQ(marker.name.GetText(), "Muzzle");
    EXPECT_STREQ(marker.m_parentName.GetText(), "hand");
    EXPECT_EQ(marker.m_transform[3], glm::vec3(7, 8, 9));
    EXPECT_EQ(Write(marker), bytes);
    marker.m_parentName = ra::Name::INVALID;
    EXPECT_FALSE(ReadChunks(Write(marker), ra::ReadMarker).m_parentName.IsValid());
}

TEST(CameraChunk, ReadsAndWritesBytesTypedByHand) {
    PayloadBytes bytes;
    bytes.F32({1, 2, 3}).F32({0.1f, 0.2f, 0.3f, 0.9f}).F32({1.5f, 0.5f, 100}); // position, rotation, lens
    EXPECT_EQ(ReadChunks(NamedData("CMRA", "Front", bytes.Get(), 1), ra::ReadCamera).target, glm::vec3(0));
    const std::string chunk = NamedData("CMRA", "Front", bytes.F32({4, 5, 6}).Get(), 2);
    const CameraDef camera = ReadChunks(chunk, ra::ReadCamera);
    EXPECT_STREQ(camera.name.GetText(), "Front");
    EXPECT_EQ(camera.rotation, glm::quat(0.9f, 0.1f, 0.2f, 0.3f));
    EXPECT_EQ(camera.farClip, 100);
    EXPECT_EQ(camera.target, glm::vec3(4, 5, 6));
    EXPECT_EQ(WriteChunks([&](Chunky& chunky, PayloadWriter& writer) { ra::WriteCamera(chunky, writer, camera); }),
              chunk);
    EXPECT_THROW(ReadChunks(NamedData("CMRA", "Front", bytes.Get().substr(0, 51), 2), ra::ReadCamera),
                 Chunky::Exception);
}

} // namespace
