#include "Host/Sdk/Mesh.h"

#include <algorithm>

namespace {

template <class T>
int Resize(std::vector<T>& array, int count) {
    count = std::max(count, 0);
    array.resize(static_cast<size_t>(count));
    return count;
}

} // namespace

void Mesh::setNumVerts(int count) { numVerts = Resize(verts, count); }
void Mesh::setNumFaces(int count) { numFaces = Resize(faces, count); }
void Mesh::setNumTVerts(int count) { numTVerts = Resize(tVerts, count); }
void Mesh::setNumTVFaces(int count) { Resize(tvFace, count); }
