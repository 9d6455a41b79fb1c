#include "Shared/Cross/RenderAnim/Intermediate/LocalAnim.h"

#include <stdexcept>
#include <utility>
#include <vector>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Intermediate/AnimReader.h"
#include "Shared/Cross/RenderAnim/Intermediate/ControlOffsets.h"
#include "Shared/Cross/RenderAnim/Intermediate/LocalStreams.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"

namespace ra::intermediate {

namespace {

class LocalReader : public AnimReader {
public:
    LocalReader(Chunky& chunky, Anim& anim, const RenderModel& model)
        : AnimReader(chunky, anim), m_Model(model), m_pSkeleton(model.GetSkeleton()) {}

    WorldStreams TakeWorldStreams() { return std::move(m_World); }

private:
    void Begin() override {
        const uint32_t boneCount = m_pSkeleton ? m_pSkeleton->GetBoneCount() : 0;
        m_World.resize(boneCount);
        m_Anim.SetBoneCount(boneCount);
        for (uint32_t i = 0; i < boneCount; ++i) {
            const auto index = static_cast<int32_t>(i);
            m_Anim.SetBoneName(index, m_pSkeleton->GetBone(index).GetName());
        }
    }

    int32_t PlaceBone(const char* pName) override {
        if (!m_pSkeleton)
            throw std::runtime_error("Trying to load bone stream, but render model doesn't have a skeleton.  Make sure "
                                     "you aren't trying to merge an animation with a ref file that doesn't have a "
                                     "skeleton");
        // A name that was never made is no bone's.
        Name streamName;
        const int32_t index = Name::Find(pName, streamName) ? m_Anim.FindBone(streamName) : Anim::InvalidIndex;
        if (index == Anim::InvalidIndex)
            dbWarningf("Unable to find bone %s in skeleton, ignoring it!", pName);
        return index;
    }

    void TakeMatrices(int32_t index, std::unique_ptr<MatrixStream> pStream) override {
        m_World[static_cast<size_t>(index)] = std::move(pStream);
    }

    void TakeControl(Anim::ControlStream control) override {
        if (MakeOffsets(control, m_Model, m_Anim.GetName()))
            AnimReader::TakeControl(std::move(control));
    }

    const RenderModel& m_Model;
    const Skeleton* m_pSkeleton; // null without one
    WorldStreams m_World;        // by the bones' indices
};

} // namespace

std::unique_ptr<Anim> ReadLocalAnim(Chunky& chunky, const RenderModel& model) {
    auto pAnim = std::make_unique<Anim>();
    LocalReader reader(chunky, *pAnim, model);
    reader.Read();
    if (const Skeleton* pSkeleton = model.GetSkeleton())
        MakeLocalStreams(*pAnim, reader.TakeWorldStreams(), *pSkeleton);
    if (const MeshGroup* pGroup = model.GetMeshGroup())
        AddMissingVisibility(*pAnim, *pGroup);
    return pAnim;
}

} // namespace ra::intermediate
