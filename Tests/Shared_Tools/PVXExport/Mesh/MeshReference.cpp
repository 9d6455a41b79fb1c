#include "Tests/Shared_Tools/PVXExport/Mesh/MeshReference.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include <glm/geometric.hpp>

namespace reference {

template <class T>
void Unique(std::vector<T>& array, std::vector<uint32_t>& remap) {
    struct Pair {
        T element;
        uint32_t index;
    };
    std::vector<Pair> pairs;
    for (uint32_t i = 0; i < array.size(); ++i)
        pairs.push_back({array[i], i});
    const auto compare = [](const Pair& a, const Pair& b) {
        return std::memcmp(static_cast<const void*>(&a.element), static_cast<const void*>(&b.element), sizeof(T));
    };
    std::ranges::stable_sort(pairs, [&](const Pair& a, const Pair& b) { return compare(a, b) < 0; });
    remap.assign(array.size(), 0);
    array.clear();
    for (size_t i = 0; i < pairs.size(); ++i) {
        if (i == 0 || compare(pairs[i], pairs[i - 1]) != 0)
            array.push_back(pairs[i].element);
        remap[pairs[i].index] = static_cast<uint16_t>(array.size() - 1);
    }
}
template void Unique(std::vector<glm::vec3>&, std::vector<uint32_t>&);
template void Unique(std::vector<glm::vec2>&, std::vector<uint32_t>&);
template void Unique(std::vector<VertexWeight>&, std::vector<uint32_t>&);

namespace {

glm::vec3 Normalised(glm::vec3 v) { return v * (1.0f / std::sqrt(glm::dot(v, v))); }

std::vector<glm::vec3> RemoveInvalid(MeshForm& form, std::vector<int>& removed) {
    std::vector<glm::vec3> normals;
    std::vector<MeshFace> kept;
    const auto& p = form.cVertex;
    for (size_t i = 0; i < form.cFace.size(); ++i) {
        const auto& v = form.cFace[i].v;
        const glm::vec3 cross = glm::cross(p[v[1]] - p[v[0]], p[v[2]] - p[v[0]]);
        if (v[0] == v[1] || v[1] == v[2] || v[2] == v[0] || glm::dot(cross, cross) == 0.0f) {
            removed.push_back(static_cast<int>(i));
            continue;
        }
        normals.push_back(Normalised(cross));
        kept.push_back(form.cFace[i]);
    }
    form.cFace = kept;
    return normals;
}

} // namespace

bool BuildNormals(MeshForm& form, std::vector<int>& removed, int& failed) {
    const std::vector<glm::vec3> faceNormals = RemoveInvalid(form, removed);
    std::vector<std::vector<size_t>> facesAt(form.cVertex.size());
    for (size_t i = 0; i < form.cFace.size(); ++i)
        for (const uint16_t v : form.cFace[i].v)
            facesAt[v].push_back(i);

    std::vector<glm::vec3> normals;
    uint16_t counter = 0;
    for (size_t i = 0; i < form.cFace.size(); ++i) {
        MeshFace& f = form.cFace[i];
        if (f.smGroup == 0) {
            normals.push_back(faceNormals[i]);
            f.n = {counter, counter, counter};
            ++counter;
            continue;
        }
        for (size_t c = 0; c < 3; ++c) {
            glm::vec3 sum(0.0f);
            for (const size_t k : facesAt[f.v[c]])
                if (form.cFace[k].smGroup & f.smGroup)
                    sum += faceNormals[k];
            if (glm::dot(sum, sum) == 0.0f) {
                failed = static_cast<int>(i);
                return false;
            }
            normals.push_back(Normalised(sum));
            f.n[c] = counter++;
        }
    }
    std::vector<uint32_t> remap;
    Unique(normals, remap);
    for (MeshFace& f : form.cFace)
        for (uint16_t& n : f.n)
            n = static_cast<uint16_t>(remap[n]);
    form.cNormal = normals;
    return true;
}

Vertices BuildVertices(const MeshForm& form, const VertexRemaps& remaps) {
    struct Corner {
        std::array<uint16_t, 6> key;
        size_t corner;
    };
    std::vector<Corner> corners;
    for (const MeshFace& f : form.cFace)
        for (size_t c = 0; c < 3; ++c) {
            const auto remapped = [&](std::span<const uint32_t> table) {
                return table.empty() ? uint16_t{0} : static_cast<uint16_t>(table[f.v[c]]);
            };
            corners.push_back(
                {{remapped(remaps.vertex), f.iShader, remapped(remaps.weight),
                  form.cTexVertex.empty() ? uint16_t{0} : f.t[c], form.cNormal.empty() ? uint16_t{0} : f.n[c], 0},
                 corners.size()});
        }
    std::ranges::stable_sort(corners,
                             [](const Corner& a, const Corner& b) { return std::memcmp(&a.key, &b.key, 12) < 0; });
    Vertices result;
    result.cornerVertex.resize(corners.size());
    for (size_t i = 0; i < corners.size(); ++i) {
        const auto& k = corners[i].key;
        if (i == 0 || k != corners[i - 1].key)
            result.keys.push_back({k[0], k[1], k[2], k[3], k[4]});
        result.cornerVertex[corners[i].corner] = static_cast<uint32_t>(result.keys.size() - 1);
    }
    return result;
}

} // namespace reference
