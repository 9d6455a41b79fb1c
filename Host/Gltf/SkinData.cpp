#include "Host/Gltf/SkinData.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace gltf {

namespace {

using Influence = scene::SkinWeights::Influence;

constexpr size_t s_MostInfluences = 4;
// Whole multiples of 1 / 2^24 up to 1 are floats, and so are their sums.
constexpr double s_WeightUnits = 16777216.0;

bool IsUsable(float weight) { return weight > 0.0f && weight <= 3.4e38f; }

void MergeBones(std::vector<Influence>& influences) {
    size_t kept = 0;
    for (const Influence& influence : influences) {
        if (!IsUsable(influence.weight))
            continue;
        const auto end = influences.begin() + static_cast<std::ptrdiff_t>(kept);
        const auto same =
            std::find_if(influences.begin(), end, [&](const Influence& other) { return other.bone == influence.bone; });
        if (same != end)
            same->weight += influence.weight;
        else
            influences[kept++] = influence;
    }
    influences.resize(kept);
}

double SumOf(const std::vector<Influence>& influences) {
    return std::accumulate(influences.begin(), influences.end(), 0.0,
                           [](double sum, const Influence& influence) { return sum + double{influence.weight}; });
}

void KeepHeaviest(std::vector<Influence>& influences, SkinReport& report) {
    const double before = SumOf(influences);
    std::ranges::stable_sort(influences, std::ranges::greater(), &Influence::weight);
    influences.resize(s_MostInfluences);
    ++report.limited;
    report.largestLoss = std::max(report.largestLoss, static_cast<float>(1.0 - SumOf(influences) / before));
}

// What the cut to whole units leaves goes to the heaviest.
void ScaleToOne(std::vector<Influence>& influences) {
    const double sum = SumOf(influences);
    double left = s_WeightUnits;
    for (Influence& influence : influences) {
        const double units = std::floor(double{influence.weight} / sum * s_WeightUnits);
        influence.weight = static_cast<float>(units / s_WeightUnits);
        left -= units;
    }
    const auto heaviest = std::ranges::max_element(influences, {}, &Influence::weight);
    heaviest->weight += static_cast<float>(left / s_WeightUnits);
    std::erase_if(influences, [](const Influence& influence) { return influence.weight == 0.0f; });
}

} // namespace

void NormalizeInfluences(std::vector<Influence>& influences, bool limit, SkinReport& report) {
    MergeBones(influences);
    if (influences.empty()) {
        influences.push_back({.bone = 0, .weight = 1.0f});
        ++report.unbound;
        return;
    }
    if (influences.size() > s_MostInfluences) {
        if (limit)
            KeepHeaviest(influences, report);
        else
            ++report.overfull;
    }
    ScaleToOne(influences);
}

scene::SkinWeights BuildWeights(const MeshData& mesh, const MeshShape& shape, bool limit, SkinReport& report) {
    const WeldedVertices vertices = WeldVertices(mesh, shape.range, shape.morphWeights, true);
    scene::SkinWeights weights;
    weights.firsts.reserve(vertices.firsts.size() + 1);
    std::vector<Influence> point;
    for (const uint32_t vertex : vertices.firsts) {
        point.clear();
        const uint32_t* pRow = vertices.words.data() + vertex * vertices.width;
        for (size_t set = 3; set < vertices.width; set += WeldedVertices::WordsOfSkinSet)
            for (size_t i = set; i < set + 4; ++i) {
                float weight = 0.0f;
                std::memcpy(&weight, pRow + i + 4, sizeof weight);
                point.push_back({.bone = static_cast<int>(pRow[i]), .weight = weight});
            }
        NormalizeInfluences(point, limit, report);
        weights.AddPoint(point);
    }
    return weights;
}

std::shared_ptr<const scene::SkinWeights> SkinDataSource::Build() const {
    SkinReport report;
    return std::make_shared<scene::SkinWeights>(BuildWeights(*m_pMesh, m_Shape, m_Limit, report));
}

bool HasSeveralSkinSets(const MeshData& mesh) {
    return std::ranges::any_of(mesh.primitives,
                               [](const PrimitiveData& primitive) { return primitive.skinSets.size() > 1; });
}

bool HasUnboundVertices(const MeshData& mesh) {
    for (const PrimitiveData& primitive : mesh.primitives)
        for (uint32_t vertex = 0; vertex < primitive.vertexCount; ++vertex) {
            bool bound = false;
            for (const PrimitiveData::SkinSet& set : primitive.skinSets) {
                float weights[4];
                set.weights.Read(vertex, weights, 4);
                bound |= std::any_of(std::begin(weights), std::end(weights), IsUsable);
            }
            if (!bound)
                return true;
        }
    return false;
}

} // namespace gltf
