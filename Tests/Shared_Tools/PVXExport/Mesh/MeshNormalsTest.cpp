#include "Shared_Tools/PVXExport/Mesh/MeshNormals.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared_Tools/PVXExport/Mesh/MeshReference.h"
#include "Tests/Shared_Tools/PVXExport/Mesh/RandomMesh.h"

namespace {

class MeshNormals : public testing::Test {
protected:
    void ExpectAsReference(MeshForm form) {
        MeshForm expected = form;
        std::vector<int> removed;
        int failed = -1;
        const bool good = reference::BuildNormals(expected, removed, failed);
        m_Reports.Clear();
        ASSERT_EQ(m_Builder.Build(form), good);
        std::vector<std::string> lines;
        lines.reserve(removed.size() + 1);
        for (const int face : removed)
            lines.push_back("Removing invalid face " + std::to_string(face));
        if (!good)
            lines.push_back("Face " + std::to_string(failed) + " does not have the smoothing property set!");
        const std::vector<std::string>& log = m_Reports.GetWarnings();
        ASSERT_EQ(log.size(), lines.size());
        for (size_t i = 0; i < lines.size(); ++i)
            EXPECT_TRUE(log[i].ends_with(lines[i])) << log[i] << " for " << lines[i];
        if (!good)
            return;
        EXPECT_TRUE(reference::BytesOf(form.cNormal) == reference::BytesOf(expected.cNormal));
        ASSERT_EQ(form.cFace.size(), expected.cFace.size());
        for (size_t i = 0; i < form.cFace.size(); ++i)
            ASSERT_EQ(form.cFace[i].n, expected.cFace[i].n) << "face " << i;
    }

    ReportCapture m_Reports;
    NormalBuilder m_Builder;
};

MeshFace FaceOf(uint16_t a, uint16_t b, uint16_t c, uint32_t smGroup) {
    MeshFace face;
    face.v = {a, b, c};
    face.smGroup = smGroup;
    return face;
}

// Two faces that meet at a right angle along the edge 0-1.
MeshForm Ridge(uint32_t leftGroup, uint32_t rightGroup) {
    MeshForm form;
    form.cVertex = {{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, {0, 1, 0}};
    form.cFace = {FaceOf(0, 1, 2, leftGroup), FaceOf(1, 0, 3, rightGroup)};
    return form;
}

TEST_F(MeshNormals, ASharedGroupMakesTheEdgeSmooth) {
    MeshForm form = Ridge(0b110, 0b011);
    ASSERT_TRUE(m_Builder.Build(form));
    EXPECT_EQ(form.cNormal.size(), 3u);
    EXPECT_EQ(form.cFace[0].n[0], form.cFace[1].n[1]);
    const glm::vec3 normal = form.cNormal[form.cFace[0].n[0]];
    EXPECT_FLOAT_EQ(normal.x, std::sqrt(0.5f));
    EXPECT_FLOAT_EQ(normal.y, std::sqrt(0.5f));
    for (const auto& [left, right] : {std::pair{1u, 2u}, std::pair{0u, 0u}, std::pair{0u, 1u}}) {
        form = Ridge(left, right);
        ASSERT_TRUE(m_Builder.Build(form));
        EXPECT_EQ(form.cNormal.size(), 2u) << "groups apart, and no groups, make it hard";
    }
}

constexpr RandomMeshKind s_Kinds[] = {
    {"one group", 300, 900, 50, 1},
    {"a few groups", 200, 900, 50, 3},
    {"many groups", 40, 900, 50, 30},
    {"flat", 300, 500, 50, 0},
    {"coarse grid: many bad faces and equal positions", 300, 900, 2, 2},
    {"hubs", 5, 300, 50, 6},
    {"more flat faces than the counter counts", 4000, 66000, 1000, 0},
    {"more corners than the counter counts", 6000, 23000, 1000, 2},
    {"corners beyond the counter, one group", 6000, 23000, 1000, 1},
};

// One builder for all, so that nothing of one mesh may show in the next.
TEST_F(MeshNormals, AgreeWithThePlainForm) {
    RandomMesh random(7);
    for (const RandomMeshKind& kind : s_Kinds)
        for (int i = 0; i < 3; ++i) {
            SCOPED_TRACE(kind.pName);
            ExpectAsReference(random.Make(kind));
        }
}

} // namespace
