#pragma once

#include "Host/Sdk/Matrix3.h"

#include <cstdint>
#include <vector>

// One triangle by its positions.
struct Face {
    static constexpr uint32_t EdgeA = 1; // vertex 0 to 1 is visible
    static constexpr uint32_t EdgeB = 2; // 1 to 2
    static constexpr uint32_t EdgeC = 4; // 2 to 0
    static constexpr uint32_t AllEdges = EdgeA | EdgeB | EdgeC;
    static constexpr uint32_t MatIDShift = 16;

    uint32_t v[3] = {};
    uint32_t smGroup = 0;      // a bit for each smoothing group; 0 is a flat face
    uint32_t flags = AllEdges; // edge visibility in the low bits, material id in the high 16

    void setVerts(uint32_t a, uint32_t b, uint32_t c) {
        v[0] = a;
        v[1] = b;
        v[2] = c;
    }
    uint32_t getSmGroup() const { return smGroup; }
    void setSmGroup(uint32_t group) { smGroup = group; }
    uint16_t getMatID() const { return static_cast<uint16_t>(flags >> MatIDShift); }
    void setMatID(uint16_t id) { flags = (flags & 0xffffu) | (static_cast<uint32_t>(id) << MatIDShift); }
    void setEdgeVisFlags(uint32_t edges) { flags = (flags & ~AllEdges) | (edges & AllEdges); }
};

// The texture vertices of one triangle.
struct TVFace {
    uint32_t t[3] = {};

    void setTVerts(uint32_t a, uint32_t b, uint32_t c) {
        t[0] = a;
        t[1] = b;
        t[2] = c;
    }
};

// A triangle mesh in its working form, in object space. It is read by its fields and sized by its setters, which keep
// the counts and the arrays together.
class Mesh {
public:
    int numVerts = 0;
    int numFaces = 0;
    int numTVerts = 0;          // 0: the mesh has no texture coordinates
    std::vector<Point3> verts;  // numVerts
    std::vector<Face> faces;    // numFaces
    std::vector<Point3> tVerts; // numTVerts
    std::vector<TVFace> tvFace; // numFaces when there are texture vertices, otherwise empty

    // Each keeps what is there as far as the new size allows. A negative count is 0.
    void setNumVerts(int count);
    void setNumFaces(int count);
    void setNumTVerts(int count);
    // The texture faces, one a face; called with numFaces once there are texture vertices.
    void setNumTVFaces(int count);

    // Frees a mesh that GetRenderMesh gave with `needDelete` set. The pointer is dead afterwards.
    void DeleteThis() { delete this; }
};
