#pragma once

#include <algorithm>
#include <cmath>

#include "Host/Sdk/Mesh.h"

// A wavy sheet of about that many positions, two faces to each square. Smooth: all faces share a group. Welded: the
// faces share the texture vertices as they share the positions; otherwise each corner has its own position and texture
// vertex.
inline Mesh MakeGridMesh(int positions, bool smooth = true, bool welded = true) {
    const int side = std::max(2, static_cast<int>(std::sqrt(static_cast<double>(positions))));
    Mesh grid;
    grid.setNumVerts(side * side);
    grid.setNumTVerts(side * side);
    grid.setNumFaces((side - 1) * (side - 1) * 2);
    grid.setNumTVFaces(grid.numFaces);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const auto i = static_cast<size_t>(y * side + x);
            const float u = static_cast<float>(x) / static_cast<float>(side);
            const float v = static_cast<float>(y) / static_cast<float>(side);
            grid.verts[i] = {u * 10.0f, v * 10.0f, std::sin(u * 17.0f) * std::cos(v * 13.0f)};
            grid.tVerts[i] = {u, v, 0.0f};
        }
    for (int y = 0, face = 0; y + 1 < side; ++y)
        for (int x = 0; x + 1 < side; ++x)
            for (int half = 0; half < 2; ++half, ++face) {
                const auto at = [&](int dx, int dy) { return static_cast<uint32_t>((y + dy) * side + x + dx); };
                Face& f = grid.faces[static_cast<size_t>(face)];
                f.setVerts(at(0, 0), half == 0 ? at(1, 0) : at(1, 1), half == 0 ? at(1, 1) : at(0, 1));
                f.setSmGroup(smooth ? 1 : 0);
                grid.tvFace[static_cast<size_t>(face)].setTVerts(f.v[0], f.v[1], f.v[2]);
            }
    if (welded)
        return grid;

    Mesh split = grid;
    split.setNumTVerts(grid.numFaces * 3);
    for (size_t i = 0; i < static_cast<size_t>(grid.numFaces); ++i)
        for (size_t c = 0; c < 3; ++c) {
            const auto corner = static_cast<uint32_t>(i * 3 + c);
            split.tVerts[corner] = grid.tVerts[grid.tvFace[i].t[c]];
            split.tvFace[i].t[c] = corner;
        }
    return split;
}
