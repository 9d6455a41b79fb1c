#include "Shared_Tools/PVXExport/Mesh/MeshNormals.h"

#include <algorithm>
#include <climits>
#include <cmath>

#include "Shared/Cross/Debug/db.h"

namespace {

constexpr uint16_t s_RemovedIndex = 0xffff;

float SquaredLength(const glm::vec3& v) { return v.x * v.x + v.y * v.y + v.z * v.z; }

glm::vec3 Normalised(const glm::vec3& v, float squaredLength) { return v * (1.0f / std::sqrt(squaredLength)); }

glm::vec3 Cross(const glm::vec3& a, const glm::vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

// False for a face without area.
bool FaceNormal(const MeshFace& face, const std::vector<glm::vec3>& positions, glm::vec3& normal) {
    const auto& v = face.v;
    if (v[0] == v[1] || v[1] == v[2] || v[2] == v[0])
        return false;
    const glm::vec3& origin = positions[v[0]];
    const glm::vec3 cross = Cross(positions[v[1]] - origin, positions[v[2]] - origin);
    const float squaredLength = SquaredLength(cross);
    if (squaredLength == 0.0f)
        return false;
    normal = Normalised(cross, squaredLength);
    return true;
}

size_t CountNormals(const std::vector<MeshFace>& faces) {
    size_t count = 0;
    for (const MeshFace& face : faces)
        count += face.smGroup ? 3 : 1;
    return count;
}

} // namespace

bool NormalBuilder::Build(MeshForm& form) {
    RemoveInvalidFaces(form);
    m_Candidates.clear();
    if (SumAroundPositions(form))
        SumMixedPositions(form);
    if (!NumberNormals(form))
        return false;
    m_Uniquer.Run(form.cNormal, m_Remap);
    for (MeshFace& face : form.cFace)
        for (uint16_t& n : face.n) {
            const uint32_t v = m_Remap[n];
            dbAssertText(v <= USHRT_MAX, "v <= USHRT_MAX");
            n = static_cast<uint16_t>(v);
        }
    return true;
}

void NormalBuilder::RemoveInvalidFaces(MeshForm& form) {
    m_FaceNormals.clear();
    m_FaceNormals.reserve(form.cFace.size());
    for (size_t i = 0; i < form.cFace.size(); ++i) {
        MeshFace& face = form.cFace[i];
        glm::vec3 normal;
        if (FaceNormal(face, form.cVertex, normal)) {
            m_FaceNormals.push_back(normal);
        } else {
            dbWarningf("Removing invalid face %d", static_cast<int>(i));
            face.v.fill(s_RemovedIndex);
        }
    }
    if (m_FaceNormals.size() < form.cFace.size())
        std::erase_if(form.cFace, [](const MeshFace& face) {
            return std::ranges::all_of(face.v, [](uint16_t v) { return v == s_RemovedIndex; });
        });
}

// Sums in the order of the faces. True if there are positions whose faces bear different groups.
bool NormalBuilder::SumAroundPositions(const MeshForm& form) {
    m_Around.assign(form.cVertex.size(), Around{});
    bool mixed = false;
    for (size_t i = 0; i < form.cFace.size(); ++i) {
        const MeshFace& face = form.cFace[i];
        if (!face.smGroup)
            continue;
        for (const uint16_t v : face.v) {
            Around& around = m_Around[v];
            if (!around.smGroup)
                around.smGroup = face.smGroup;
            if (around.smGroup == face.smGroup)
                around.sum += m_FaceNormals[i];
            else
                mixed = around.mixed = true;
        }
    }
    return mixed;
}

void NormalBuilder::SumMixedPositions(const MeshForm& form) {
    m_MixedStart.assign(form.cVertex.size() + 1, 0);
    const auto forEachUse = [&](auto&& use) {
        for (size_t i = 0; i < form.cFace.size(); ++i)
            for (size_t c = 0; form.cFace[i].smGroup && c < 3; ++c)
                if (m_Around[form.cFace[i].v[c]].mixed)
                    use(i, c, form.cFace[i].v[c]);
    };
    forEachUse([&](size_t, size_t, uint16_t v) { ++m_MixedStart[v + 1u]; });
    for (size_t v = 0; v < form.cVertex.size(); ++v)
        m_MixedStart[v + 1] += m_MixedStart[v];
    m_Uses.resize(m_MixedStart.back());
    forEachUse([&](size_t i, size_t c, uint16_t v) {
        m_Uses[m_MixedStart[v]++] = {static_cast<uint32_t>(i), static_cast<uint32_t>(c), s_None};
    });

    m_MixedCandidates.resize(form.cFace.size() * 3);
    // Filling has moved each start to the next position's.
    for (size_t v = 0; v < form.cVertex.size(); ++v)
        SumMixedPosition(form, v ? m_MixedStart[v - 1] : 0, m_MixedStart[v]);
}

void NormalBuilder::SumMixedPosition(const MeshForm& form, uint32_t first, uint32_t last) {
    m_Groups.clear();
    for (uint32_t i = first; i < last; ++i) {
        Use& use = m_Uses[i];
        const uint32_t smGroup = form.cFace[use.face].smGroup;
        const auto known = std::ranges::find(m_Groups, smGroup, &GroupCandidate::smGroup);
        if (known != m_Groups.end()) {
            use.candidate = known->candidate;
        } else {
            glm::vec3 sum(0.0f);
            for (uint32_t k = first; k < last; ++k)
                if (form.cFace[m_Uses[k].face].smGroup & smGroup)
                    sum += m_FaceNormals[m_Uses[k].face];
            use.candidate = AddCandidate(sum);
            m_Groups.push_back({smGroup, use.candidate});
        }
        m_MixedCandidates[use.face * size_t{3} + use.corner] = use.candidate;
    }
}

int32_t NormalBuilder::AddCandidate(const glm::vec3& sum) {
    const float squaredLength = SquaredLength(sum);
    if (squaredLength == 0.0f)
        return s_NoDirection;
    m_Candidates.push_back(Normalised(sum, squaredLength));
    return static_cast<int32_t>(m_Candidates.size()) - 1;
}

int32_t NormalBuilder::CornerCandidate(const MeshFace& face, size_t faceIndex, size_t corner) {
    Around& around = m_Around[face.v[corner]];
    if (around.mixed)
        return m_MixedCandidates[faceIndex * 3 + corner];
    if (around.candidate == s_None)
        around.candidate = AddCandidate(around.sum);
    return around.candidate;
}

// Gives the faces the numbers of their normals, which are counted in 16 bits as one for each flat face and three for
// each other. Where that count doesn't run over, a normal that is shared needs to be there only once.
bool NormalBuilder::NumberNormals(MeshForm& form) {
    const bool runsOver = CountNormals(form.cFace) > size_t{USHRT_MAX} + 1;
    form.cNormal.clear();
    const auto number = [&](int32_t candidate) {
        if (!runsOver)
            return static_cast<uint16_t>(candidate);
        form.cNormal.push_back(m_Candidates[static_cast<size_t>(candidate)]);
        return static_cast<uint16_t>(form.cNormal.size() - 1);
    };
    for (size_t i = 0; i < form.cFace.size(); ++i) {
        MeshFace& face = form.cFace[i];
        if (!face.smGroup) {
            m_Candidates.push_back(m_FaceNormals[i]);
            face.n.fill(number(static_cast<int32_t>(m_Candidates.size()) - 1));
            continue;
        }
        for (size_t c = 0; c < 3; ++c) {
            const int32_t candidate = CornerCandidate(face, i, c);
            if (candidate == s_NoDirection) {
                dbWarningf("Face %d does not have the smoothing property set!", static_cast<int>(i));
                return false;
            }
            face.n[c] = number(candidate);
        }
    }
    if (!runsOver)
        form.cNormal.assign(m_Candidates.begin(), m_Candidates.end());
    return true;
}
