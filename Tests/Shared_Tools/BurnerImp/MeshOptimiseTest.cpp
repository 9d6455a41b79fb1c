#include "Shared_Tools/BurnerImp/MeshOptimise.h"

#include "Shared_Tools/BurnerImp/BurnParams.h"
#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <set>

namespace {

using ra::Mesh;

// A grid of quads on a wave; each vertex has bytes of its own in all components.
class MeshOptimiseTest : public ModelFixture {
protected:
    static constexpr uint32_t s_Side = 20; // vertices
    using Corner = std::array<std::byte, 64>;
    using Triangle = std::array<Corner, 3>;

    static MeshRef MakeGrid(const std::vector<ShaderRef>& shaders) {
        MeshRef mesh = MakeMesh("Grid", shaders, s_Side * s_Side, 0x27);
        gz::VertexSet& vertices = *mesh->GetVertexSet(Mesh::Poly_High);
        uint32_t stride = 0;
        auto* pVertex = static_cast<std::byte*>(vertices.Lock(gz::VC_Position, 0, gz::VertexSet::WholeSet, stride));
        for (uint32_t i = 0; i < s_Side * s_Side; ++i, pVertex += stride) {
            const auto x = static_cast<float>(i % s_Side);
            const auto z = static_cast<float>(i / s_Side);
            const float position[] = {x, std::sin(x) * std::cos(z), z};
            std::memcpy(pVertex, position, sizeof position);
            std::memcpy(pVertex + sizeof position, &i, sizeof i);
        }
        vertices.Unlock(gz::VC_Position);
        for (uint32_t shader = 0; shader < shaders.size(); ++shader) {
            // Rows in turn, so that the shaders' triangles border on each other.
            std::vector<uint16_t> indices;
            for (uint32_t row = shader; row + 1 < s_Side; row += static_cast<uint32_t>(shaders.size()))
                for (uint32_t column = 0; column + 1 < s_Side; ++column) {
                    const auto i = static_cast<uint16_t>(row * s_Side + column);
                    const auto below = static_cast<uint16_t>(i + s_Side);
                    const auto right = static_cast<uint16_t>(i + 1);
                    const auto across = static_cast<uint16_t>(below + 1);
                    indices.insert(indices.end(), {i, below, right, right, below, across});
                }
            gz::PrimSet& primSet = *mesh->GetPrimSet(shader, Mesh::Poly_High);
            primSet.SetUp(0, static_cast<uint32_t>(indices.size()), gz::PrimKind_TriangleList);
            primSet.SetIndices(indices);
        }
        mesh->SetPolyCount(Mesh::Poly_High, CountTriangles(*mesh.GetData(), Mesh::Poly_High));
        return mesh;
    }
    static uint32_t CountTriangles(const Mesh& mesh, uint32_t level) {
        size_t corners = 0;
        for (uint32_t i = 0; i < mesh.GetShaderCount(); ++i)
            if (const gz::PrimSet* pSet = mesh.GetPrimSet(i, level))
                corners += pSet->GetIndices().size();
        return static_cast<uint32_t>(corners / 3);
    }
    // What is drawn with a shader: the vertices themselves, each triangle from its least corner on.
    static std::vector<Triangle> GetDrawn(const Mesh& mesh, uint32_t level, uint32_t shader) {
        const gz::VertexSet& vertices = *mesh.GetVertexSet(level);
        const gz::PrimSet& primSet = *mesh.GetPrimSet(shader, level);
        const auto* pBytes = static_cast<const std::byte*>(vertices.GetData(gz::VC_Position));
        const gz::VertexRange range = primSet.GetRange();
        std::vector<Triangle> triangles(primSet.GetIndices().size() / 3);
        for (size_t i = 0; i < primSet.GetIndices().size(); ++i) {
            const uint16_t index = primSet.GetIndices()[i];
            EXPECT_GE(index, range.start);
            EXPECT_LT(index, range.start + range.count);
            Corner& corner = triangles[i / 3][i % 3];
            corner = {};
            std::memcpy(corner.data(), pBytes + size_t{index} * vertices.GetStride(), vertices.GetStride());
        }
        for (Triangle& triangle : triangles)
            std::ranges::rotate(triangle, std::ranges::min_element(triangle));
        return triangles;
    }
    static std::multiset<Triangle> GetDrawnInAnyOrder(const Mesh& mesh, uint32_t level, uint32_t shader) {
        const std::vector<Triangle> triangles = GetDrawn(mesh, level, shader);
        return {triangles.begin(), triangles.end()};
    }
    // Vertices that a small cache has to fetch.
    static size_t CountMisses(const Mesh& mesh) {
        std::vector<uint16_t> cache;
        size_t misses = 0;
        for (const uint16_t index : mesh.GetPrimSet(0, Mesh::Poly_High)->GetIndices()) {
            if (std::ranges::find(cache, index) != cache.end())
                continue;
            ++misses;
            cache.push_back(index);
            if (cache.size() > 16)
                cache.erase(cache.begin());
        }
        return misses;
    }
};

TEST_F(MeshOptimiseTest, OrderChangesNothingButOrder) {
    const MeshRef mesh = MakeGrid({MakeShader("a"), MakeShader("b")});
    const auto first = GetDrawnInAnyOrder(*mesh.GetData(), Mesh::Poly_High, 0);
    const auto second = GetDrawnInAnyOrder(*mesh.GetData(), Mesh::Poly_High, 1);
    MeshOptimise::OrderForCaches(*mesh.GetData(), Mesh::Poly_High);
    MeshOptimise::OrderForCaches(*mesh.GetData(), Mesh::Poly_Low); // has none
    EXPECT_TRUE(GetDrawnInAnyOrder(*mesh.GetData(), Mesh::Poly_High, 0) == first);
    EXPECT_TRUE(GetDrawnInAnyOrder(*mesh.GetData(), Mesh::Poly_High, 1) == second);
    EXPECT_EQ(mesh->GetVertexSet(Mesh::Poly_High)->GetSize(), s_Side * s_Side);
    // Vertices come in the order in which they are used.
    uint16_t next = 0;
    for (const uint16_t index : mesh->GetPrimSet(0, Mesh::Poly_High)->GetIndices()) {
        EXPECT_LE(index, next);
        next = std::max<uint16_t>(next, static_cast<uint16_t>(index + 1));
    }
}

TEST_F(MeshOptimiseTest, OrderSparesTheCache) {
    const MeshRef mesh = MakeGrid({MakeShader("a")});
    const size_t misses = CountMisses(*mesh.GetData());
    MeshOptimise::OrderForCaches(*mesh.GetData(), Mesh::Poly_High);
    EXPECT_LT(CountMisses(*mesh.GetData()), misses);
}

TEST_F(MeshOptimiseTest, TrianglesThatBlendKeepTheirOrder) {
    const ShaderRef glass = MakeShader("glass");
    glass->SetBlendMode(s_BlendSourceAlpha, s_BlendInverseSourceAlpha);
    const MeshRef mesh = MakeGrid({glass});
    const auto before = GetDrawn(*mesh.GetData(), Mesh::Poly_High, 0);
    MeshOptimise::OrderForCaches(*mesh.GetData(), Mesh::Poly_High);
    EXPECT_TRUE(GetDrawn(*mesh.GetData(), Mesh::Poly_High, 0) == before);
}

TEST_F(MeshOptimiseTest, TheLowLevelHasItsShare) {
    for (const float share : {0.001f, 0.25f, 0.5f, 1.0f}) {
        const MeshRef mesh = MakeGrid({MakeShader("a")});
        MeshOptimise::AddLowLevel(*mesh.GetData(), share);
        const uint32_t high = CountTriangles(*mesh.GetData(), Mesh::Poly_High);
        const uint32_t low = CountTriangles(*mesh.GetData(), Mesh::Poly_Low);
        EXPECT_EQ(mesh->GetPolyCount(Mesh::Poly_Low), low);
        EXPECT_GE(static_cast<float>(low), static_cast<float>(high) * share * 0.8f);
        EXPECT_LE(static_cast<float>(low), std::max(20.0f, static_cast<float>(high) * share * 1.1f));
        EXPECT_LE(low, high);
        // Its vertices are those of the high level, bit by bit.
        std::set<Corner> corners;
        for (const Triangle& triangle : GetDrawn(*mesh.GetData(), Mesh::Poly_High, 0))
            corners.insert(triangle.begin(), triangle.end());
        for (const Triangle& triangle : GetDrawn(*mesh.GetData(), Mesh::Poly_Low, 0))
            for (const Corner& corner : triangle)
                EXPECT_TRUE(corners.contains(corner));
        EXPECT_LE(mesh->GetVertexSet(Mesh::Poly_Low)->GetSize(), low * 3);
    }
}

TEST_F(MeshOptimiseTest, SeamsBetweenShadersStayClosed) {
    const MeshRef mesh = MakeGrid({MakeShader("a"), MakeShader("b")});
    MeshOptimise::AddLowLevel(*mesh.GetData(), 0.3f);
    // Rows alternate, so that every vertex stands on a border.
    EXPECT_EQ(CountTriangles(*mesh.GetData(), Mesh::Poly_Low), CountTriangles(*mesh.GetData(), Mesh::Poly_High));
}

TEST_F(MeshOptimiseTest, MeshesThatGetNoLowLevel) {
    const MeshRef mesh = MakeGrid({MakeShader("a")});
    MeshOptimise::AddLowLevel(*mesh.GetData(), 0.0f);
    EXPECT_FALSE(mesh->GetVertexSet(Mesh::Poly_Low));
    uint32_t stride = 0;
    gz::VertexSet& vertices = *mesh->GetVertexSet(Mesh::Poly_High);
    *static_cast<float*>(vertices.Lock(gz::VC_Position, 0, 1, stride)) = std::numeric_limits<float>::quiet_NaN();
    vertices.Unlock(gz::VC_Position);
    MeshOptimise::AddLowLevel(*mesh.GetData(), 0.5f);
    EXPECT_FALSE(mesh->GetVertexSet(Mesh::Poly_Low));
    EXPECT_TRUE(ReportCapture::HasWarning("a position is no number"));
}

TEST(BurnParamsTest, ValuesThatCanBeUsed) {
    BurnParams params;
    std::string expected;
    const auto take = [&](const char* pName, const char* pValue) {
        return TakeParam(params, 0xFF & ~uint32_t{BurnParam_BurnInfo}, pName, pValue, expected);
    };
    for (const char* pValue : {"0", "1", "3", "5"})
        EXPECT_EQ(take("USEdxtc", pValue), ParamResult::Taken);
    EXPECT_EQ(params.useDXTC, 5u);
    for (const char* pValue : {"", "2", "01", "5 ", "-1"})
        EXPECT_EQ(take("useDXTC", pValue), ParamResult::BadValue) << pValue;
    EXPECT_EQ(expected, "0, 1, 3 or 5");
    EXPECT_EQ(take("mipmaps", "FALSE"), ParamResult::Taken);
    EXPECT_FALSE(params.mipMaps);
    EXPECT_EQ(take("vertexCache", "yes"), ParamResult::BadValue);
    for (const char* pValue : {"0", "1", "0.25", "1e-3"})
        EXPECT_EQ(take("lowDetail", pValue), ParamResult::Taken) << pValue;
    for (const char* pValue : {"", "-0.1", "1.01", "nan", "inf", "0.5x"})
        EXPECT_EQ(take("lowDetail", pValue), ParamResult::BadValue) << pValue;
    EXPECT_EQ(take("burnInfo", "true"), ParamResult::Unknown);
    EXPECT_EQ(take("else", "true"), ParamResult::Unknown);
}

} // namespace
