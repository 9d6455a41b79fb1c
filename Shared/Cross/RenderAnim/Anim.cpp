#include "Shared/Cross/RenderAnim/Anim.h"

#include <utility>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/AnimTypeInfo.h"

namespace {

template <class Stream>
const Stream& GetStream(const std::vector<Stream>& streams, int32_t index) {
    static const Stream s_None;
    // Above every count when negative, so that one test is enough behind the assertions.
    const auto place = static_cast<uint32_t>(index);
    dbAssert(place < streams.size());
    return place < streams.size() ? streams[place] : s_None;
}

// Null for an index that GetStream has complained about.
template <class Stream>
Stream* GetOwnStream(std::vector<Stream>& streams, int32_t index) {
    const Stream& stream = GetStream(streams, index);
    return static_cast<uint32_t>(index) < streams.size() ? const_cast<Stream*>(&stream) : nullptr;
}

template <class Map, class Key>
int32_t FindIndex(const Map& indices, const Key& key) {
    const auto it = indices.find(key);
    return it != indices.end() ? it->second : Anim::InvalidIndex;
}

// The first to have a key keeps it.
template <class Map, class Key>
void ChangeKey(Map& indices, const Key& from, const Key& to, int32_t index) {
    if (const auto it = indices.find(from); it != indices.end() && it->second == index)
        indices.erase(it);
    indices.try_emplace(to, index);
}

} // namespace

size_t Anim::ControlHash::operator()(const ControlKey& key) const {
    uint64_t hash = key.name.GetValue();
    for (const int32_t part : {key.ref.type, key.ref.m_index, key.ref.channel, key.ref.property}) {
        hash = (hash ^ static_cast<uint32_t>(part)) * 0x9E3779B97F4A7C15u;
        hash ^= hash >> 32;
    }
    return hash;
}

Inv::ResourceTypeInfo& Anim::GetTypeInfo() {
    static AnimTypeInfo s_typeInfo;
    return s_typeInfo;
}

void Anim::SetFrameCount(int32_t frameCount) {
    dbAssert(frameCount > 0);
    if (frameCount > 0)
        m_FrameCount = frameCount;
}

void Anim::SetDuration(float time) {
    dbAssert(time > 0.0f);
    if (time > 0.0f)
        m_Duration = time;
}

void Anim::SetLength(int32_t frameCount, float framesPerSecond) {
    SetFrameCount(frameCount);
    SetDuration(static_cast<float>(frameCount) / framesPerSecond);
}

void Anim::SetBoneCount(uint32_t count) {
    if (count < m_boneAnims.size())
        m_BoneIndices.reset();
    m_boneAnims.resize(count);
}

const Anim::BoneStream& Anim::GetBone(int32_t boneIndex) const {
    dbAssert(boneIndex != InvalidIndex);
    return GetStream(m_boneAnims, boneIndex);
}

Anim::BoneStream* Anim::GetOwnBone(int32_t boneIndex) {
    dbAssert(boneIndex != InvalidIndex);
    return GetOwnStream(m_boneAnims, boneIndex);
}

const Anim::NameIndices& Anim::GetBoneIndices() const {
    if (!m_BoneIndices) {
        m_BoneIndices.emplace();
        for (size_t i = 0; i < m_boneAnims.size(); ++i)
            if (m_boneAnims[i].name.IsValid())
                m_BoneIndices->try_emplace(m_boneAnims[i].name, static_cast<int32_t>(i));
    }
    return *m_BoneIndices;
}

int32_t Anim::FindBone(const ra::Name& name) const { return FindIndex(GetBoneIndices(), name); }

int32_t Anim::AddBone(const ra::Name& name) {
    if (const int32_t found = FindBone(name); found != InvalidIndex)
        return found;
    const auto index = static_cast<int32_t>(m_boneAnims.size());
    SetBoneCount(GetBoneCount() + 1);
    SetBoneName(index, name);
    return index;
}

void Anim::SetBoneName(int32_t boneIndex, const ra::Name& name) {
    dbAssertText(name != ra::Name::INVALID, "name != ra::Name::INVALID");
    BoneStream* pBone = GetOwnBone(boneIndex);
    if (!pBone || !name.IsValid())
        return;
    if (m_BoneIndices)
        ChangeKey(*m_BoneIndices, pBone->name, name, boneIndex);
    pBone->name = name;
}

void Anim::SetBoneAnimated(int32_t boneIndex, bool isAnimated) {
    if (BoneStream* pBone = GetOwnBone(boneIndex))
        pBone->isAnimated = isAnimated;
}

void Anim::SetBoneStreams(int32_t boneIndex, std::unique_ptr<Vec3Stream> pPosition,
                          std::unique_ptr<QuatStream> pRotation) {
    if (BoneStream* pBone = GetOwnBone(boneIndex)) {
        pBone->pPosition = std::move(pPosition);
        pBone->pRotation = std::move(pRotation);
    }
}

void Anim::TakeBones(std::vector<BoneStream> bones) {
    SetBoneCount(static_cast<uint32_t>(bones.size()));
    m_boneAnims = std::move(bones);
    m_BoneIndices.reset();
}

const Anim::CameraStream& Anim::GetCamera(int32_t cameraIndex) const { return GetStream(m_cameraAnims, cameraIndex); }

Anim::CameraStream* Anim::GetOwnCamera(int32_t cameraIndex) { return GetOwnStream(m_cameraAnims, cameraIndex); }

int32_t Anim::FindCamera(const ra::Name& name) const { return FindIndex(m_CameraIndices, name); }

int32_t Anim::AddCamera(const ra::Name& name) {
    const auto [it, isNew] = m_CameraIndices.try_emplace(name, static_cast<int32_t>(m_cameraAnims.size()));
    if (isNew)
        m_cameraAnims.push_back({.name = name, .pPosition = nullptr, .pRotation = nullptr});
    return it->second;
}

void Anim::SetCameraStreams(int32_t cameraIndex, std::unique_ptr<Vec3Stream> pPosition,
                            std::unique_ptr<QuatStream> pRotation) {
    if (CameraStream* pCamera = GetOwnCamera(cameraIndex)) {
        pCamera->pPosition = std::move(pPosition);
        pCamera->pRotation = std::move(pRotation);
    }
}

const Anim::ControlStream& Anim::GetControl(int32_t controlIndex) const {
    return GetStream(m_controlAnims, controlIndex);
}

Anim::ControlStream* Anim::GetOwnControl(int32_t controlIndex) { return GetOwnStream(m_controlAnims, controlIndex); }

int32_t Anim::FindControl(const ra::Name& name, const ControlRef& ref) const {
    return FindIndex(m_ControlIndices, ControlKey{name, ref});
}

int32_t Anim::AddControl(const ra::Name& name, const ControlRef& ref) {
    const auto index = static_cast<int32_t>(m_controlAnims.size());
    const auto [it, isNew] = m_ControlIndices.try_emplace(ControlKey{name, ref}, index);
    if (isNew)
        m_controlAnims.push_back({.name = name, .ref = ref, .pValues = nullptr});
    return it->second;
}

void Anim::SetControlStream(int32_t controlIndex, std::unique_ptr<FloatStream> pValues) {
    if (ControlStream* pControl = GetOwnControl(controlIndex))
        pControl->pValues = std::move(pValues);
}

int32_t Anim::TakeCamera(CameraStream camera) {
    const int32_t index = AddCamera(camera.name);
    SetCameraStreams(index, std::move(camera.pPosition), std::move(camera.pRotation));
    return index;
}

int32_t Anim::TakeControl(ControlStream control) {
    const int32_t index = AddControl(control.name, control.ref);
    SetControlStream(index, std::move(control.pValues));
    return index;
}

void Anim::SetControlName(int32_t controlIndex, const ra::Name& name) {
    ControlStream* pControl = GetOwnControl(controlIndex);
    if (!pControl)
        return;
    ChangeKey(m_ControlIndices, ControlKey{pControl->name, pControl->ref}, ControlKey{name, pControl->ref},
              controlIndex);
    pControl->name = name;
}

void Anim::SetControlIndex(int32_t controlIndex, int32_t targetIndex) {
    ControlStream* pControl = GetOwnControl(controlIndex);
    if (!pControl)
        return;
    const ControlKey before{pControl->name, pControl->ref};
    pControl->ref.m_index = targetIndex;
    ChangeKey(m_ControlIndices, before, ControlKey{pControl->name, pControl->ref}, controlIndex);
}
