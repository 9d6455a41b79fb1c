#include "Host/Sdk/Matrix3.h"
#include "Host/Sdk/Mesh.h"

#include <gtest/gtest.h>

namespace {

// A quarter turn about Z, which takes X to Y, twice the size along X, moved by (10, 20, 30).
const Matrix3 s_Turn({0, 2, 0}, {-1, 0, 0}, {0, 0, 1}, {10, 20, 30});

TEST(HostMatrix, PointsMultiplyFromTheLeft) {
    EXPECT_EQ(TransformPoint({1, 2, 3}, s_Turn), Point3(10 - 2, 20 + 2, 30 + 3));
    EXPECT_EQ(TransformVector({1, 2, 3}, s_Turn), Point3(-2, 2, 3));
}

TEST(HostMatrix, RowsAndColumns) {
    Matrix3 m = s_Turn;
    EXPECT_EQ(GetRow(m, 3), Point3(10, 20, 30));
    EXPECT_EQ(GetColumn(m, 1), Point4(2, 0, 0, 20));
    SetColumn(m, 0, {1, 2, 3, 4});
    SetRow(m, 2, {7, 8, 9});
    EXPECT_EQ(m, Matrix3({1, 2, 0}, {2, 0, 0}, {7, 8, 9}, {4, 20, 30}));
}

TEST(HostMatrix, InverseUndoesAndANullMatrixHasNone) {
    const Point3 there = TransformPoint({1, 2, 3}, s_Turn);
    EXPECT_LT(Length(TransformPoint(there, Inverse(s_Turn)) - Point3(1, 2, 3)), 1e-5f);
    EXPECT_EQ(Inverse(Matrix3(0.0f)), IdentityMatrix());
}

TEST(HostMatrix, NoScaleKeepsDirectionsMirrorsAndTranslation) {
    Matrix3 m({0, 2, 0}, {-3, 0, 0}, {0, 0, -0.5f}, {10, 20, 30});
    NoScale(m);
    EXPECT_EQ(m, Matrix3({0, 1, 0}, {-1, 0, 0}, {0, 0, -1}, {10, 20, 30}));
    Matrix3 flat({1, 0, 0}, {0, 0, 0}, {0, 0, 4}, {0, 0, 0});
    NoScale(flat);
    EXPECT_EQ(GetRow(flat, 1), Point3(0, 0, 0));
}

TEST(HostMesh, MaterialIdAndEdgesShareAWord) {
    Face face;
    face.setMatID(0xabcd);
    face.setEdgeVisFlags(Face::EdgeB);
    EXPECT_EQ(face.flags, 0xabcd0002u);
    EXPECT_EQ(face.getMatID(), 0xabcd);
    face.setMatID(1);
    EXPECT_EQ(face.flags, 0x00010002u);
}

} // namespace
