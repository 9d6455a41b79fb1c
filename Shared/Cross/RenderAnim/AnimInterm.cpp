#include "Shared/Cross/RenderAnim/AnimInterm.h"

#include <utility>

#include "Shared/Cross/Debug/db.h"

void AnimInterm::SetBoneCount(uint32_t count) {
    Anim::SetBoneCount(count);
    m_MatrixStreams.resize(count);
}

const MatrixStream* AnimInterm::GetMatrixStream(int32_t boneIndex) const {
    const auto place = static_cast<uint32_t>(boneIndex);
    dbAssert(place < m_MatrixStreams.size());
    return place < m_MatrixStreams.size() ? m_MatrixStreams[place].get() : nullptr;
}

MatrixStream* AnimInterm::GetMatrixStream(int32_t boneIndex) {
    return const_cast<MatrixStream*>(std::as_const(*this).GetMatrixStream(boneIndex));
}

void AnimInterm::SetMatrixStream(int32_t boneIndex, std::unique_ptr<MatrixStream> pStream) {
    const auto place = static_cast<uint32_t>(boneIndex);
    dbAssert(place < m_MatrixStreams.size());
    if (place < m_MatrixStreams.size())
        m_MatrixStreams[place] = std::move(pStream);
}

std::span<MatrixKey> AnimInterm::MakeMatrixStream(int32_t boneIndex, uint32_t keyCount) {
    auto pStream = std::make_unique<MatrixStream>();
    const std::span<MatrixKey> keys = pStream->SetKeyCount(keyCount);
    SetMatrixStream(boneIndex, std::move(pStream));
    return static_cast<uint32_t>(boneIndex) < m_MatrixStreams.size() ? keys : std::span<MatrixKey>();
}
