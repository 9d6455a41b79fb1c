#include "Host/Gltf/SmoothingGroups.h"

#include <glm/geometric.hpp>
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <map>

namespace {

// A surface put together corner by corner; equal corners of one position become one vertex.
class Surface {
public:
    struct Corner {
        uint32_t position;
        glm::vec3 normal;
    };

    void AddFace(Corner a, Corner b, Corner c) {
        for (const Corner& corner : {a, b, c})
            m_Corners.push_back(AddVertex(corner));
    }
    void AddFlatFace(uint32_t a, uint32_t b, uint32_t c, const glm::vec3& normal) {
        AddFace({a, normal}, {b, normal}, {c, normal});
    }

    const std::vector<uint32_t>& Solve() {
        m_Masks = gltf::MakeSmoothingGroups(
            {.corners = m_Corners, .positions = m_Positions, .positionCount = m_PositionCount, .normals = m_Normals});
        return m_Masks;
    }

    // Pairs of corners at one position whose faces share a group against their normals, or the other way round.
    struct Faults {
        int shared = 0;
        int apart = 0;
    };
    Faults CountFaults() const {
        std::map<uint32_t, std::vector<size_t>> cornersOf;
        for (size_t corner = 0; corner < m_Corners.size(); ++corner)
            cornersOf[m_Positions[m_Corners[corner]]].push_back(corner);
        Faults faults;
        for (const auto& [position, corners] : cornersOf)
            for (size_t i = 0; i < corners.size(); ++i)
                for (size_t k = i + 1; k < corners.size(); ++k) {
                    const bool smooth =
                        gltf::AreNormalsEqual(m_Normals[m_Corners[corners[i]]], m_Normals[m_Corners[corners[k]]]);
                    const bool share = (m_Masks[corners[i] / 3] & m_Masks[corners[k] / 3]) != 0;
                    faults.shared += share && !smooth;
                    faults.apart += smooth && !share;
                }
        return faults;
    }
    void ExpectExact() const {
        EXPECT_EQ(CountFaults().shared, 0);
        EXPECT_EQ(CountFaults().apart, 0);
    }

private:
    uint32_t AddVertex(const Corner& corner) {
        m_PositionCount = std::max(m_PositionCount, corner.position + 1);
        const auto key = std::tuple(corner.position, corner.normal.x, corner.normal.y, corner.normal.z);
        const auto [found, isNew] = m_Known.try_emplace(key, static_cast<uint32_t>(m_Positions.size()));
        if (isNew) {
            m_Positions.push_back(corner.position);
            m_Normals.push_back(corner.normal);
        }
        return found->second;
    }

    std::map<std::tuple<uint32_t, float, float, float>, uint32_t> m_Known;
    std::vector<uint32_t> m_Corners;
    std::vector<uint32_t> m_Positions;
    std::vector<glm::vec3> m_Normals;
    uint32_t m_PositionCount = 0;
    std::vector<uint32_t> m_Masks;
};

glm::vec3 Around(int i, int count, float z = 0.0f) {
    const double angle = 2.0 * 3.14159265358979 * i / count;
    return glm::normalize(glm::vec3(std::cos(angle), std::sin(angle), z));
}

TEST(SmoothingGroups, NormalsAreTheSameWithinHalfADegree) {
    const auto turned = [](double degrees) {
        const double angle = degrees * 3.14159265358979 / 180.0;
        return glm::vec3(static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle)), 0.0f);
    };
    EXPECT_TRUE(gltf::AreNormalsEqual({1, 0, 0}, turned(0.49)));
    EXPECT_FALSE(gltf::AreNormalsEqual({1, 0, 0}, turned(0.51)));
    EXPECT_TRUE(gltf::AreNormalsEqual({1, 0, 0}, 3.0f * turned(0.49)));
    EXPECT_FALSE(gltf::AreNormalsEqual({1, 0, 0}, {-1, 0, 0}));
    EXPECT_FALSE(gltf::AreNormalsEqual({1, 0, 0}, {NAN, 0, 0}));
}

TEST(SmoothingGroups, ACubeHasAGroupForEachSide) {
    constexpr uint32_t sides[6][4] = {{0, 2, 6, 4}, {1, 5, 7, 3}, {0, 4, 5, 1},
                                      {2, 3, 7, 6}, {0, 1, 3, 2}, {4, 6, 7, 5}};
    const glm::vec3 normals[6] = {{-1, 0, 0}, {1, 0, 0}, {0, -1, 0}, {0, 1, 0}, {0, 0, -1}, {0, 0, 1}};
    Surface cube;
    for (int side = 0; side < 6; ++side) {
        cube.AddFlatFace(sides[side][0], sides[side][1], sides[side][2], normals[side]);
        cube.AddFlatFace(sides[side][0], sides[side][2], sides[side][3], normals[side]);
    }
    const std::vector<uint32_t>& masks = cube.Solve();
    cube.ExpectExact();
    for (const uint32_t mask : masks)
        EXPECT_LT(mask, 8u) << "opposite sides never meet, so three groups are enough";
}

TEST(SmoothingGroups, ACylinderIsRoundWithHardCaps) {
    constexpr int count = 24;
    Surface cylinder;
    for (int i = 0; i < count; ++i) {
        const auto low = static_cast<uint32_t>(i);
        const auto lowNext = static_cast<uint32_t>((i + 1) % count);
        const glm::vec3 n = Around(i, count);
        const glm::vec3 next = Around(i + 1, count);
        cylinder.AddFace({low, n}, {lowNext, next}, {lowNext + count, next});
        cylinder.AddFace({low, n}, {lowNext + count, next}, {low + count, n});
        cylinder.AddFlatFace(2 * count, lowNext, low, {0, 0, -1});
        cylinder.AddFlatFace(2 * count + 1, low + count, lowNext + count, {0, 0, 1});
    }
    cylinder.Solve();
    cylinder.ExpectExact();
}

// At the tip neighbours differ, at the rim they agree: masks can't say both. The sides stay round, and only neighbours
// share at the tip.
TEST(SmoothingGroups, AConeStaysRound) {
    constexpr int count = 16;
    Surface cone;
    for (int i = 0; i < count; ++i) {
        const glm::vec3 tip = glm::normalize(Around(2 * i + 1, 2 * count, 1.0f));
        const auto rim = static_cast<uint32_t>(i);
        const auto next = static_cast<uint32_t>((i + 1) % count);
        cone.AddFace({rim, Around(i, count, 1.0f)}, {next, Around(i + 1, count, 1.0f)}, {count, tip});
        cone.AddFlatFace(count + 1, next, rim, {0, 0, -1});
    }
    cone.Solve();
    EXPECT_EQ(cone.CountFaults().apart, 0);
    EXPECT_EQ(cone.CountFaults().shared, count) << "each side with its two neighbours, at the tip";
}

// A strip of squares along X, folded at Y = 0; the fold is hard from 0 to `hardUntil` and smooth behind it.
Surface MakeFadingCrease(int length, int hardUntil) {
    Surface surface;
    const glm::vec3 left = glm::normalize(glm::vec3(0, -1, 1));
    const glm::vec3 right = glm::normalize(glm::vec3(0, 1, 1));
    const auto at = [](int x, int row) { return static_cast<uint32_t>(x * 3 + row); };
    for (int x = 0; x < length; ++x) {
        const auto fold = [&](int place, const glm::vec3& own) { return place < hardUntil ? own : glm::vec3(0, 0, 1); };
        surface.AddFace({at(x, 0), left}, {at(x + 1, 0), left}, {at(x + 1, 1), fold(x + 1, left)});
        surface.AddFace({at(x, 0), left}, {at(x + 1, 1), fold(x + 1, left)}, {at(x, 1), fold(x, left)});
        surface.AddFace({at(x, 1), fold(x, right)}, {at(x + 1, 1), fold(x + 1, right)}, {at(x + 1, 2), right});
        surface.AddFace({at(x, 1), fold(x, right)}, {at(x + 1, 2), right}, {at(x, 2), right});
    }
    return surface;
}

TEST(SmoothingGroups, ACreaseFadesOut) {
    Surface surface = MakeFadingCrease(12, 6);
    surface.Solve();
    EXPECT_EQ(surface.CountFaults().shared, 0);
    EXPECT_EQ(surface.CountFaults().apart, 1) << "the two faces along the last hard edge, at its smooth end";
}

// An edge that is smooth at 0, where it has only its own two faces, and hard at 1, where each has a neighbour. The
// neighbours are smooth with their face but stay out of the group that the two have to share.
TEST(SmoothingGroups, AGroupThatTwoHardPartsShareGoesNoFurther) {
    const glm::vec3 left = glm::normalize(glm::vec3(0, -1, 1));
    const glm::vec3 right = glm::normalize(glm::vec3(0, 1, 1));
    Surface surface;
    surface.AddFace({0, {0, 0, 1}}, {1, left}, {2, left});
    surface.AddFace({0, {0, 0, 1}}, {3, right}, {1, right});
    surface.AddFlatFace(1, 4, 2, left);
    surface.AddFlatFace(1, 3, 5, right);
    surface.Solve();
    EXPECT_EQ(surface.CountFaults().apart, 0);
    EXPECT_EQ(surface.CountFaults().shared, 1) << "the two faces of the edge, at its hard end";
}

TEST(SmoothingGroups, AFaceThatIsSmoothWithNobodyIsFlat) {
    Surface fan;
    for (uint32_t i = 0; i < 40; ++i)
        fan.AddFlatFace(0, i + 1, i + 2, Around(static_cast<int>(i), 40, 1.0f));
    for (const uint32_t mask : fan.Solve())
        EXPECT_EQ(mask, 0u);
    fan.ExpectExact();
}

TEST(SmoothingGroups, MoreThan32HardPartsAtOnePositionReuseGroups) {
    Surface fan;
    for (uint32_t i = 0; i < 40; ++i) {
        const glm::vec3 n = Around(static_cast<int>(i), 40, 1.0f);
        fan.AddFlatFace(0, 3 * i + 1, 3 * i + 2, n);
        fan.AddFlatFace(0, 3 * i + 2, 3 * i + 3, n);
    }
    fan.Solve();
    EXPECT_EQ(fan.CountFaults().apart, 0);
    EXPECT_EQ(fan.CountFaults().shared, 8 * 4) << "eight parts have to share with another";
}

TEST(SmoothingGroups, CornersWithoutNormalAreFlat) {
    Surface surface;
    surface.AddFlatFace(0, 1, 2, {0, 0, 0});
    surface.AddFlatFace(0, 2, 3, {0, 0, 0});
    surface.AddFlatFace(0, 3, 4, {0, 0, 1});
    surface.AddFlatFace(0, 4, 5, {0, 0, 1});
    const std::vector<uint32_t>& masks = surface.Solve();
    EXPECT_EQ(masks[0] | masks[1], 0u);
    EXPECT_EQ(masks[2], masks[3]);
    EXPECT_NE(masks[2], 0u);
}

TEST(SmoothingGroups, ALargeMeshInOnePieceWithConflictsTakesNoSquareOfTime) {
    const auto start = std::chrono::steady_clock::now();
    Surface surface = MakeFadingCrease(40000, 20000);
    surface.Solve();
    Surface fan;
    for (uint32_t i = 0; i < 100000; ++i)
        fan.AddFlatFace(0, i + 1, i + 2, Around(static_cast<int>(i), 100000, 1.0f));
    fan.Solve();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

} // namespace
