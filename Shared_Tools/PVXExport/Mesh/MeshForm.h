// The working form of one mesh between the host's scene and the model: separate lists for positions, weights, normals
// and texture coordinates, and faces that index them. It is filled from the host, made unique, and laid out at last.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

#include "Shared/Cross/RenderAnim/VertexWeight.h"

// The whole system indexes with 16 bits; a host mesh beyond that fails only when its vertices are counted.
struct MeshFace {
    std::array<uint16_t, 3> v{}; // into cVertex; after the vertex step into the final vertices, as n and t then too
    std::array<uint16_t, 3> n{}; // into cNormal
    std::array<uint16_t, 3> t{}; // into cTexVertex
    uint16_t iShader = 0;        // material slot first, then the mesh's shader
    uint32_t smGroup = 0;        // smoothing groups, a bit each; 0 is flat
};

struct MeshForm {
    std::vector<glm::vec3> cVertex;    // the game's axes, world space
    std::vector<VertexWeight> cWeight; // one per position, empty for a mesh without skin
    std::vector<glm::vec3> cNormal;    // unit length
    std::vector<glm::vec2> cTexVertex; // empty for a mesh without texture coordinates
    std::vector<MeshFace> cFace;

    // Empties the lists and keeps their memory, which the next mesh is going to need.
    void Clear() {
        cVertex.clear();
        cWeight.clear();
        cNormal.clear();
        cTexVertex.clear();
        cFace.clear();
    }
};
