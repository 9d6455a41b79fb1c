#include "Host/Gltf/SmoothingGroups.h"

#include <algorithm>
#include <array>
#include <bit>
#include <numeric>
#include <unordered_map>

namespace gltf {

namespace {

constexpr uint32_t s_None = 0xffffffff;
constexpr int s_GroupCount = 32;
// cos(0.5 degrees), squared.
constexpr double s_SameNormalCosine2 = 0.99992384661617;
// A position with more different normals than there are groups can't be told right anyway; the limit keeps a position
// with a hundred thousand of them from costing their square.
constexpr int s_MostNormalsCompared = 64;
constexpr size_t s_MostKeptBuckets = 1024;

bool IsNormal(const glm::vec3& n) {
    const float length2 = n.x * n.x + n.y * n.y + n.z * n.z;
    return length2 > 0.0f && length2 <= 3.4e38f;
}

// A corner class is what the faces around a position see as one normal. The faces of a class have to share a group;
// those of two classes of one position must not.
class GroupMaker {
public:
    explicit GroupMaker(const SmoothingInput& input) : m_Input(input), m_FaceCount(input.corners.size() / 3) {}

    std::vector<uint32_t> Make() {
        MakeClasses();
        JoinClasses();
        ListClassFaces();
        FindConflicts();
        ColourSimpleComponents();
        ColourConflictedClasses();
        return std::move(m_FaceMasks);
    }

private:
    // A list of lists, all in one array: the items of list i are those from firsts[i] to firsts[i + 1].
    struct Lists {
        std::vector<uint32_t> firsts;
        std::vector<uint32_t> items;
        std::span<const uint32_t> Get(size_t list) const {
            return std::span(items).subspan(firsts[list], firsts[list + 1] - firsts[list]);
        }
    };

    void MakeClasses();
    void JoinClasses();
    void ListClassFaces();
    void FindConflicts();
    void ColourSimpleComponents();
    void ColourConflictedClasses();
    void ColourConflictedClass(uint32_t cornerClass);
    void SplitByConflicts(std::span<const uint32_t> faces, uint32_t position);
    void ColourFaces(std::span<const uint32_t> faces);

    uint32_t ClassOf(size_t corner) const { return m_ClassOfVertex[m_Input.corners[corner]]; }
    bool IsHard(uint32_t position) const { return m_NextOfClass[m_FirstClass[position]] != s_None; }
    uint32_t FindRoot(uint32_t cornerClass);

    // The groups that a class must not take, since another class of its position has them.
    uint32_t GetForbidden(uint32_t cornerClass) const {
        const uint32_t position = m_PositionOfClass[cornerClass];
        return m_Several[position] | (m_Any[position] & ~m_ClassMasks[cornerClass]);
    }
    void AddGroup(uint32_t cornerClass, uint32_t group);
    template <typename Classes>
    uint32_t ChooseGroup(const Classes& forEachClass, uint32_t preferred);

    const SmoothingInput& m_Input;
    size_t m_FaceCount;
    std::vector<uint32_t> m_FaceMasks;

    std::vector<uint32_t> m_ClassOfVertex;   // s_None: the corner is flat
    std::vector<uint32_t> m_FirstClass;      // of each position
    std::vector<uint32_t> m_NextOfClass;     // the next class of the same position
    std::vector<uint32_t> m_PositionOfClass; // of each class
    std::vector<uint32_t> m_Parents;         // union-find over classes that a face connects
    Lists m_FacesOfClass;
    std::vector<uint32_t> m_FacesOfRoot;  // how many faces a component has
    std::vector<bool> m_ConflictedOfRoot; // whether a component meets itself at a hard edge
    std::vector<uint32_t> m_ClassMasks;   // groups of any face of the class
    std::vector<uint32_t> m_Any;          // per position: groups that some class of it has
    std::vector<uint32_t> m_Several;      // per position: groups that two or more classes of it have

    size_t m_NextReused = 0; // where the search goes on when all groups are taken

    // Working space of ColourConflictedClass.
    std::vector<uint32_t> m_Core;
    std::array<std::vector<uint32_t>, s_GroupCount> m_Parts;
    std::unordered_map<uint64_t, uint32_t> m_Claims;
    std::vector<uint32_t> m_Unit;
};

void GroupMaker::MakeClasses() {
    m_ClassOfVertex.assign(m_Input.positions.size(), s_None);
    m_FirstClass.assign(m_Input.positionCount, s_None);
    std::vector<uint32_t> firstVertex; // of each class: its normal stands for the class
    for (uint32_t vertex = 0; vertex < m_Input.positions.size(); ++vertex) {
        if (!IsNormal(m_Input.normals[vertex]))
            continue;
        const uint32_t position = m_Input.positions[vertex];
        uint32_t found = m_FirstClass[position];
        for (int i = 0;
             found != s_None && !AreNormalsEqual(m_Input.normals[firstVertex[found]], m_Input.normals[vertex]); ++i)
            found = i < s_MostNormalsCompared ? m_NextOfClass[found] : s_None;
        if (found == s_None) {
            found = static_cast<uint32_t>(firstVertex.size());
            firstVertex.push_back(vertex);
            m_PositionOfClass.push_back(position);
            m_NextOfClass.push_back(m_FirstClass[position]);
            m_FirstClass[position] = found;
        }
        m_ClassOfVertex[vertex] = found;
    }
}

uint32_t GroupMaker::FindRoot(uint32_t cornerClass) {
    while (m_Parents[cornerClass] != cornerClass) {
        m_Parents[cornerClass] = m_Parents[m_Parents[cornerClass]];
        cornerClass = m_Parents[cornerClass];
    }
    return cornerClass;
}

void GroupMaker::JoinClasses() {
    m_Parents.resize(m_PositionOfClass.size());
    std::iota(m_Parents.begin(), m_Parents.end(), 0u);
    for (size_t face = 0; face < m_FaceCount; ++face) {
        uint32_t previous = s_None;
        for (size_t corner = face * 3; corner < face * 3 + 3; ++corner) {
            if (ClassOf(corner) == s_None)
                continue;
            const uint32_t root = FindRoot(ClassOf(corner));
            // The lower root wins, so that components are numbered by their first class.
            if (previous != s_None && root != previous)
                m_Parents[std::max(root, previous)] = std::min(root, previous);
            previous = previous == s_None ? root : std::min(root, previous);
        }
    }
}

void GroupMaker::ListClassFaces() {
    const size_t classCount = m_PositionOfClass.size();
    m_FacesOfClass.firsts.assign(classCount + 1, 0);
    m_FacesOfRoot.assign(classCount, 0);
    for (size_t corner = 0; corner < m_FaceCount * 3; ++corner)
        if (ClassOf(corner) != s_None)
            ++m_FacesOfClass.firsts[ClassOf(corner) + 1];
    std::partial_sum(m_FacesOfClass.firsts.begin(), m_FacesOfClass.firsts.end(), m_FacesOfClass.firsts.begin());
    m_FacesOfClass.items.resize(m_FacesOfClass.firsts.back());
    std::vector<uint32_t> next(m_FacesOfClass.firsts.begin(), m_FacesOfClass.firsts.end() - 1);
    for (size_t face = 0; face < m_FaceCount; ++face) {
        uint32_t root = s_None;
        for (size_t corner = face * 3; corner < face * 3 + 3; ++corner) {
            if (ClassOf(corner) == s_None)
                continue;
            m_FacesOfClass.items[next[ClassOf(corner)]++] = static_cast<uint32_t>(face);
            root = FindRoot(ClassOf(corner));
        }
        if (root != s_None)
            ++m_FacesOfRoot[root];
    }
}

void GroupMaker::FindConflicts() {
    const size_t classCount = m_PositionOfClass.size();
    m_ConflictedOfRoot.assign(classCount, false);
    m_ClassMasks.assign(classCount, 0);
    m_FaceMasks.assign(m_FaceCount, 0);
    m_Any.assign(m_Input.positionCount, 0);
    m_Several.assign(m_Input.positionCount, 0);
    std::vector<uint32_t> seenAt(classCount, s_None); // per root: the last position that it was met at
    for (uint32_t position = 0; position < m_Input.positionCount; ++position)
        for (uint32_t i = m_FirstClass[position]; i != s_None; i = m_NextOfClass[i]) {
            const uint32_t root = FindRoot(i);
            if (seenAt[root] == position)
                m_ConflictedOfRoot[root] = true;
            seenAt[root] = position;
        }
}

void GroupMaker::AddGroup(uint32_t cornerClass, uint32_t group) {
    if (m_ClassMasks[cornerClass] & group)
        return;
    const uint32_t position = m_PositionOfClass[cornerClass];
    m_Several[position] |= m_Any[position] & group;
    m_Any[position] |= group;
    m_ClassMasks[cornerClass] |= group;
}

// The group for something that touches the classes that `forEachClass` goes through: one of `preferred` if it may be,
// otherwise the first that may be, otherwise the one that the fewest of them must not have.
template <typename Classes>
uint32_t GroupMaker::ChooseGroup(const Classes& forEachClass, uint32_t preferred) {
    uint32_t forbidden = 0;
    forEachClass([&](uint32_t cornerClass) { forbidden |= GetForbidden(cornerClass); });
    const uint32_t allowed = (preferred & ~forbidden) ? (preferred & ~forbidden) : ~forbidden;
    if (allowed)
        return allowed & (~allowed + 1);
    std::array<size_t, s_GroupCount> harm{};
    forEachClass([&](uint32_t cornerClass) {
        for (uint32_t mask = GetForbidden(cornerClass); mask; mask &= mask - 1)
            ++harm[static_cast<size_t>(std::countr_zero(mask))];
    });
    // Of those that do the same harm not always the first, which would have all of it.
    size_t best = m_NextReused;
    for (size_t i = 0; i < harm.size(); ++i)
        if (const size_t group = (m_NextReused + i) % harm.size(); harm[group] < harm[best])
            best = group;
    m_NextReused = (best + 1) % harm.size();
    return 1u << best;
}

// One group for each connected smooth part that doesn't meet itself at a hard edge: nearly all there are.
void GroupMaker::ColourSimpleComponents() {
    const size_t classCount = m_PositionOfClass.size();
    Lists classesOfRoot;
    classesOfRoot.firsts.assign(classCount + 1, 0);
    for (uint32_t i = 0; i < classCount; ++i)
        ++classesOfRoot.firsts[FindRoot(i) + 1];
    std::partial_sum(classesOfRoot.firsts.begin(), classesOfRoot.firsts.end(), classesOfRoot.firsts.begin());
    classesOfRoot.items.resize(classCount);
    std::vector<uint32_t> next(classesOfRoot.firsts.begin(), classesOfRoot.firsts.end() - 1);
    for (uint32_t i = 0; i < classCount; ++i)
        classesOfRoot.items[next[FindRoot(i)]++] = i;

    for (uint32_t root = 0; root < classCount; ++root) {
        if (m_FacesOfRoot[root] < 2 || m_ConflictedOfRoot[root])
            continue;
        const std::span<const uint32_t> classes = classesOfRoot.Get(root);
        const uint32_t group = ChooseGroup(
            [&](const auto& visit) {
                for (const uint32_t i : classes)
                    visit(i);
            },
            0);
        for (const uint32_t i : classes) {
            AddGroup(i, group);
            for (const uint32_t face : m_FacesOfClass.Get(i))
                m_FaceMasks[face] = group;
        }
    }
}

void GroupMaker::ColourConflictedClasses() {
    for (uint32_t i = 0; i < m_PositionOfClass.size(); ++i)
        if (m_ConflictedOfRoot[FindRoot(i)] && m_FacesOfClass.Get(i).size() > 1)
            ColourConflictedClass(i);
}

void GroupMaker::ColourConflictedClass(uint32_t cornerClass) {
    const std::span<const uint32_t> faces = m_FacesOfClass.Get(cornerClass);
    if (faces.size() == 2) {
        ColourFaces(faces);
        return;
    }
    SplitByConflicts(faces, m_PositionOfClass[cornerClass]);
    if (m_Parts[0].empty())
        ColourFaces(m_Core);
    for (std::vector<uint32_t>& part : m_Parts) {
        if (part.empty())
            break;
        m_Unit = m_Core;
        m_Unit.insert(m_Unit.end(), part.begin(), part.end());
        if (m_Unit.size() > 1)
            ColourFaces(m_Unit);
        part.clear();
    }
}

// Sorts the faces of a class into those that are hard with none of the others at their other corners, the core, and
// parts of the rest inside which none is hard with another.
void GroupMaker::SplitByConflicts(std::span<const uint32_t> faces, uint32_t position) {
    m_Core.clear();
    // Clearing costs a map's buckets, so one huge fan mustn't leave its own to all that follow.
    if (m_Claims.bucket_count() > s_MostKeptBuckets)
        m_Claims = {};
    m_Claims.clear();
    // First by position alone: which of them several classes of these faces meet at.
    const auto forEachOther = [&](uint32_t face, const auto& visit) {
        for (size_t corner = face * size_t{3}; corner < face * size_t{3} + 3; ++corner) {
            const uint32_t other = ClassOf(corner);
            if (other != s_None && m_PositionOfClass[other] != position && IsHard(m_PositionOfClass[other]))
                visit(m_PositionOfClass[other], other);
        }
    };
    for (const uint32_t face : faces)
        forEachOther(face, [&](uint32_t at, uint32_t other) {
            const auto [claim, isNew] = m_Claims.try_emplace(at, other);
            if (!isNew && claim->second != other)
                claim->second = s_None;
        });
    const auto isContested = [&](uint32_t face) {
        bool contested = false;
        forEachOther(face, [&](uint32_t at, uint32_t) { contested |= m_Claims.at(at) == s_None; });
        return contested;
    };
    for (const uint32_t face : faces) {
        if (!isContested(face)) {
            m_Core.push_back(face);
            continue;
        }
        // The first part in which no other class holds one of the face's positions.
        const auto key = [](uint32_t at, size_t part) { return (static_cast<uint64_t>(part + 1) << 32) | at; };
        for (size_t part = 0; part < m_Parts.size(); ++part) {
            bool fits = true;
            forEachOther(face, [&](uint32_t at, uint32_t other) {
                const auto claim = m_Claims.find(key(at, part));
                fits &= claim == m_Claims.end() || claim->second == other;
            });
            if (!fits)
                continue;
            forEachOther(face, [&](uint32_t at, uint32_t other) { m_Claims.emplace(key(at, part), other); });
            m_Parts[part].push_back(face);
            break;
        }
    }
}

// Gives the faces a common group, unless they have one already.
void GroupMaker::ColourFaces(std::span<const uint32_t> faces) {
    uint32_t common = 0xffffffff;
    uint32_t used = 0;
    for (const uint32_t face : faces) {
        common &= m_FaceMasks[face];
        used |= m_FaceMasks[face];
    }
    if (common)
        return;
    const auto forEachClass = [&](const auto& visit) {
        for (const uint32_t face : faces)
            for (size_t corner = face * size_t{3}; corner < face * size_t{3} + 3; ++corner)
                if (ClassOf(corner) != s_None)
                    visit(ClassOf(corner));
    };
    const uint32_t group = ChooseGroup(forEachClass, used);
    for (const uint32_t face : faces)
        m_FaceMasks[face] |= group;
    forEachClass([&](uint32_t cornerClass) { AddGroup(cornerClass, group); });
}

} // namespace

bool AreNormalsEqual(const glm::vec3& a, const glm::vec3& b) {
    if (a == b)
        return true;
    const auto dot = [](const glm::vec3& p, const glm::vec3& q) {
        return double{p.x} * double{q.x} + double{p.y} * double{q.y} + double{p.z} * double{q.z};
    };
    const double cosine = dot(a, b);
    return cosine > 0.0 && cosine * cosine >= s_SameNormalCosine2 * dot(a, a) * dot(b, b);
}

std::vector<uint32_t> MakeSmoothingGroups(const SmoothingInput& input) { return GroupMaker(input).Make(); }

} // namespace gltf
