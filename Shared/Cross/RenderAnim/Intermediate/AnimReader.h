#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Anim.h"

namespace ra::intermediate {

// One pass over an "ANIM". Its kinds say where a bone belongs and what becomes of its keys.
class AnimReader {
public:
    // The animation is filled.
    AnimReader(Chunky& chunky, Anim& anim) : m_Chunky(chunky), m_Anim(anim) {}
    virtual ~AnimReader() = default;
    AnimReader(const AnimReader&) = delete;
    AnimReader& operator=(const AnimReader&) = delete;

    void Read();

protected:
    // Name and length have been read.
    virtual void Begin() {}
    // The bone's index; InvalidIndex leaves its stream out.
    virtual int32_t PlaceBone(const char* pName) = 0;
    // Null for no keys.
    virtual void TakeMatrices(int32_t index, std::unique_ptr<MatrixStream> pStream) = 0;
    virtual void TakeControl(Anim::ControlStream control) { m_Anim.TakeControl(std::move(control)); }

    Chunky& m_Chunky;
    Anim& m_Anim;

private:
    void ReadInfo();
    void ReadPart(const ChunkInfo& child);
    void ReadBone(const ChunkInfo& child);
};

} // namespace ra::intermediate
