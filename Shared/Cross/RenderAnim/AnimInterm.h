#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Shared/Cross/RenderAnim/Anim.h"

// An animation as the exporter samples it: for each bone one matrix in the world a frame. To sample:
//
//     pAnim->SetLength(frameCount, framesPerSecond);
//     pAnim->SetBoneCount(skeleton.GetBoneCount());
//     for each bone: SetBoneName, SetBoneAnimated
//     std::span<MatrixKey> keys = pAnim->MakeMatrixStream(bone, frameCount);   // for each bone
//     keys[frame] = {time, matrix};                                            // in any order
class AnimInterm : public Anim {
public:
    void SetBoneCount(uint32_t count) override;

    // Null for a bone that has none, and for an index out of range, which is a mistake.
    const MatrixStream* GetMatrixStream(int32_t boneIndex) const;
    MatrixStream* GetMatrixStream(int32_t boneIndex);
    void SetMatrixStream(int32_t boneIndex, std::unique_ptr<MatrixStream> pStream);
    // Gives the bone a stream of that many keys, for the caller to fill; see AnimStream::SetKeyCount. The span stays
    // good while other bones get theirs.
    std::span<MatrixKey> MakeMatrixStream(int32_t boneIndex, uint32_t keyCount);

private:
    std::vector<std::unique_ptr<MatrixStream>> m_MatrixStreams; // by the bones' indices
};
