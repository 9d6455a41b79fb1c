#include "Shared_Tools/PVXExport/Mesh/PrimSetIndices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

MeshFace FaceOf(uint16_t shader, uint16_t a, uint16_t b, uint16_t c) {
    MeshFace face;
    face.iShader = shader;
    face.v = {a, b, c};
    return face;
}

TEST(PrimSetIndices, FacesComeByShaderInTheirOwnOrder) {
    const std::vector<MeshFace> faces = {FaceOf(2, 9, 8, 7), FaceOf(0, 1, 2, 3), FaceOf(2, 4, 5, 6),
                                         FaceOf(0, 3, 2, 1)};
    PrimSetIndices lists;
    lists.Build(faces, 4);
    EXPECT_THAT(lists.GetIndices(0), ElementsAre(1, 2, 3, 3, 2, 1));
    EXPECT_THAT(lists.GetIndices(1), IsEmpty());
    EXPECT_THAT(lists.GetIndices(2), ElementsAre(9, 8, 7, 4, 5, 6));
    EXPECT_THAT(lists.GetIndices(3), IsEmpty());
    EXPECT_EQ(lists.GetLowest(0), 1);
    EXPECT_EQ(lists.GetHighest(0), 3);
    lists.Build(std::vector{FaceOf(0, 7, 6, 5)}, 1);
    EXPECT_EQ(lists.GetLowest(0), 5);
    EXPECT_EQ(lists.GetHighest(0), 0) << "a falling list has none";
}

} // namespace
