#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "Shared_Tools/PVXExport/Mesh/MeshForm.h"

// A mesh without any shape, but with all that makes conversions stumble: equal positions, faces without area, zeros of
// both signs, groups that overlap.
struct RandomMeshKind {
    const char* pName;
    int positions;
    int faces;
    int grid;       // positions lie on a grid of this many steps, so that some are equal
    int groupKinds; // how many different group masks there are; 0: all flat
};

class RandomMesh {
public:
    explicit RandomMesh(uint32_t seed) : m_Random(seed) {}

    int Below(int limit) { return static_cast<int>(m_Random() % static_cast<uint32_t>(limit)); }

    MeshForm Make(const RandomMeshKind& kind) {
        MeshForm form;
        for (int i = 0; i < kind.positions; ++i)
            form.cVertex.push_back({Coordinate(kind.grid), Coordinate(kind.grid), Coordinate(kind.grid)});
        std::vector<uint32_t> groups;
        groups.reserve(static_cast<size_t>(kind.groupKinds));
        for (int i = 0; i < kind.groupKinds; ++i)
            groups.push_back(Below(8) == 0 ? 0 : 1u << Below(32) | 1u << Below(32));
        for (int i = 0; i < kind.faces; ++i) {
            MeshFace face;
            for (uint16_t& v : face.v)
                v = static_cast<uint16_t>(Below(kind.positions));
            face.smGroup = groups.empty() ? 0 : groups[static_cast<size_t>(Below(kind.groupKinds))];
            face.iShader = static_cast<uint16_t>(Below(3));
            form.cFace.push_back(face);
        }
        return form;
    }

private:
    float Coordinate(int grid) {
        const float value = static_cast<float>(Below(grid)) / 7.0f;
        return Below(2) == 0 ? value : -value;
    }

    std::mt19937 m_Random;
};
