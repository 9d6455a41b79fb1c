// Normals from smoothing groups.
#pragma once

#include <cstdint>
#include <vector>

#include "Shared_Tools/PVXExport/Mesh/MeshForm.h"
#include "Shared_Tools/PVXExport/Mesh/Uniquer.h"

// Works on positions that aren't deduplicated yet: the host's own sharing of a position is what makes an edge smooth.
// Keeps its working memory from mesh to mesh.
class NormalBuilder {
public:
    // Takes out the faces that have no area (a log line each), then fills cNormal, unique and in the order of its
    // bytes, and each face's n. A face without groups is flat; any other has at each corner the unweighted mean over
    // the faces there that share a group with it. False, with a log line, when such a mean has no direction.
    bool Build(MeshForm& form);

private:
    // What the faces around one position come to, as long as all of them bear the same groups.
    struct Around {
        glm::vec3 sum{};
        uint32_t smGroup = 0;
        int32_t candidate = s_None;
        bool mixed = false;
    };
    // A corner at a position whose faces bear different groups.
    struct Use {
        uint32_t face = 0;
        uint32_t corner = 0;
        int32_t candidate = s_None;
    };
    struct GroupCandidate {
        uint32_t smGroup = 0;
        int32_t candidate = s_None;
    };

    static constexpr int32_t s_None = -1;
    static constexpr int32_t s_NoDirection = -2;

    void RemoveInvalidFaces(MeshForm& form);
    bool SumAroundPositions(const MeshForm& form);
    void SumMixedPositions(const MeshForm& form);
    void SumMixedPosition(const MeshForm& form, uint32_t first, uint32_t last);
    int32_t AddCandidate(const glm::vec3& sum);
    int32_t CornerCandidate(const MeshFace& face, size_t faceIndex, size_t corner);
    bool NumberNormals(MeshForm& form);

    Uniquer m_Uniquer;
    std::vector<uint32_t> m_Remap;
    std::vector<glm::vec3> m_FaceNormals;
    std::vector<Around> m_Around;        // by position
    std::vector<glm::vec3> m_Candidates; // every normal that a corner may get, once for each position and groups
    std::vector<uint32_t> m_MixedStart;  // by position, into m_Uses
    std::vector<Use> m_Uses;
    std::vector<int32_t> m_MixedCandidates; // by corner; only what lies at mixed positions counts
    std::vector<GroupCandidate> m_Groups;
};
