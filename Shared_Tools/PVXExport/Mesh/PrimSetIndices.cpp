#include "Shared_Tools/PVXExport/Mesh/PrimSetIndices.h"

void PrimSetIndices::Build(std::span<const MeshFace> faces, size_t shaderCount) {
    // Counted one place up, so that each list's end is its start until it has been filled.
    m_Lists.assign(shaderCount + 1, List{});
    for (const MeshFace& face : faces)
        m_Lists[face.iShader + size_t{1}].end += 3;
    for (size_t i = 0; i < shaderCount; ++i)
        m_Lists[i + 1].end += m_Lists[i].end;

    m_Indices.resize(faces.size() * 3);
    // Faces of one shader mostly come one after the other; their list is kept at hand for as long.
    for (size_t i = 0; i < faces.size();) {
        const uint16_t shader = faces[i].iShader;
        List list = m_Lists[shader];
        for (; i < faces.size() && faces[i].iShader == shader; ++i)
            for (const uint16_t index : faces[i].v) {
                m_Indices[list.end++] = index;
                if (index < list.lowest)
                    list.lowest = index;
                else if (index > list.highest)
                    list.highest = index;
            }
        m_Lists[shader] = list;
    }
}

std::span<const uint16_t> PrimSetIndices::GetIndices(size_t shader) const {
    const size_t start = shader ? m_Lists[shader - 1].end : 0;
    return std::span(m_Indices).subspan(start, m_Lists[shader].end - start);
}
