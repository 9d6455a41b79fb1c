#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Anim.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimPartReader.h"

// What the animations of the forms have in common. All throw std::runtime_error when the stream doesn't take all, and
// as AnimPartReader on reading.

namespace ra {

constexpr uint32_t s_AnimDataChunk = FourCC("DATA");
constexpr uint32_t s_AnimInfoChunk = FourCC("INFO");
constexpr uint32_t s_BoneAnimChunk = FourCC("BANM");
constexpr uint32_t s_CameraAnimChunk = FourCC("CMRA");

template <StreamScalar T>
void WriteAnimField(Chunky& chunky, T value);
void WriteAnimName(Chunky& chunky, const Name& name);
// A uint32 count and the keys; null is written as no keys.
template <class V>
void WriteKeys(Chunky& chunky, const AnimStream<V>* pStream);

// Frames and duration alone, which is all that the newest version of either form holds.
void WriteAnimInfo(Chunky& chunky, const Anim& anim, uint32_t version);
// Both above 0.
void SetAnimLength(Anim& anim, const AnimPartReader& reader, int64_t frameCount, float duration);

void WriteControlAnim(Chunky& chunky, const Anim::ControlStream& control, uint32_t id, uint32_t version);
// The next chunk is this one, of that version or an older one; the version is told.
Anim::ControlStream ReadControlAnim(Chunky& chunky, const char* pAnimName, uint32_t id, uint32_t& version);

void WriteCameraAnim(Chunky& chunky, const Anim::CameraStream& camera);
// The next chunk is this one.
Anim::CameraStream ReadCameraAnim(Chunky& chunky, const char* pAnimName);

// For messages: "animation 'run', bone 'hip'".
std::string DescribeAnimPart(const char* pAnimName, const char* pPart, const char* pPartName);

} // namespace ra
