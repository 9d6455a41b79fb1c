#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include <glm/mat4x3.hpp>

#include "Shared/Cross/RenderAnim/RenderAnimName.h"

class ByteStream;
class Skeleton;

// In what an animation file's bones differ from a model's. The names are in the order of the side that has them, those
// of the last two in the file's.
struct BoneDifferences {
    std::vector<std::string> missingInFile;
    std::vector<std::string> missingInModel;
    std::vector<std::string> otherParent;
    std::vector<std::string> otherRest; // another place relative to the same parent

    bool IsEmpty() const {
        return missingInFile.empty() && missingInModel.empty() && otherParent.empty() && otherRest.empty();
    }
};

// Holds the bones of animation files against those of one model, for an animation that was made for another skeleton
// merges without a complaint and then moves the wrong bones, or none.
class BoneCheck {
public:
    // The skeleton outlives this.
    explicit BoneCheck(const Skeleton& skeleton);

    // Of the file's first animation, which alone gets merged; nothing for a file without one. A file without a skeleton
    // of its own, as an export of an animation alone is, says nothing of parents and rest. Throws Chunky::Exception or
    // ByteStream::Exception for a damaged file.
    BoneDifferences Compare(ByteStream& file) const;

    // One block of lines in the log, counts first; none without a difference. The host shows the lines by their mark.
    static void Report(const std::string& fileName, const BoneDifferences& differences);

private:
    struct FileBones;

    void CompareNames(const std::vector<std::string>& names, BoneDifferences& differences) const;
    void CompareRest(const FileBones& bones, BoneDifferences& differences) const;
    bool IsSameRest(const glm::mat4x3& fileLocal, int32_t bone) const;

    const Skeleton& m_Skeleton;
    std::unordered_map<ra::Name, int32_t> m_Indices; // looked things up in, never walked
    float m_PositionTolerance = 0.0f;
};
