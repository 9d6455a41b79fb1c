#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/RenderAnim/AnimStream.h"
#include "Shared/Cross/RenderAnim/RenderAnimName.h"

// What an animated float drives. The numbers are in files.
enum ControlTarget : int32_t {
    ControlTarget_Shader = 0,
    ControlTarget_Mesh = 2,
};

// Of a shader's channel, by ControlRef::property; a mesh has property 0, its visibility. The numbers are in files.
enum ControlProperty : int32_t {
    ControlProperty_Amount = 0,
    ControlProperty_OffsetU = 1,
    ControlProperty_OffsetV = 2,
    ControlProperty_ScaleU = 3,
    ControlProperty_ScaleV = 4,
};

struct ControlRef {
    int32_t type = ControlTarget_Shader;
    int32_t m_index = -1; // of the shader or mesh; only while a model is being built, in no file
    int32_t channel = 0;  // of the shader; 0 for a mesh
    int32_t property = ControlProperty_Amount;

    bool operator==(const ControlRef&) const = default;
};

// The streams of one animation. An index out of range is a mistake of the caller: a getter then gives an empty record,
// a setter does nothing.
class Anim : public Inv::NamedResource {
public:
    static constexpr int32_t InvalidIndex = -1;

    struct BoneStream {
        ra::Name name;
        bool isAnimated = false;
        std::unique_ptr<Vec3Stream> pPosition; // may be absent, both together
        std::unique_ptr<QuatStream> pRotation;
    };
    struct CameraStream {
        ra::Name name;
        std::unique_ptr<Vec3Stream> pPosition;
        std::unique_ptr<QuatStream> pRotation;
    };
    struct ControlStream {
        ra::Name name; // of the shader or mesh; INVALID as long as only the index is known
        ControlRef ref;
        std::unique_ptr<FloatStream> pValues;
    };

    static Inv::ResourceTypeInfo& GetTypeInfo();

    int32_t GetFrameCount() const { return m_FrameCount; }
    float GetDuration() const { return m_Duration; } // in seconds
    void SetFrameCount(int32_t frameCount);          // above 0
    void SetDuration(float time);                    // above 0
    // Both: the duration is the count divided by the rate.
    void SetLength(int32_t frameCount, float framesPerSecond);

    // Each index is a bone of the skeleton; new ones have no name.
    virtual void SetBoneCount(uint32_t count);
    uint32_t GetBoneCount() const { return static_cast<uint32_t>(m_boneAnims.size()); }
    const BoneStream& GetBone(int32_t boneIndex) const;
    int32_t FindBone(const ra::Name& name) const; // the first of that name, -1 without one
    // A bone that is there already gives its index.
    int32_t AddBone(const ra::Name& name);
    void SetBoneName(int32_t boneIndex, const ra::Name& name);
    void SetBoneAnimated(int32_t boneIndex, bool isAnimated);
    void SetBoneStreams(int32_t boneIndex, std::unique_ptr<Vec3Stream> pPosition,
                        std::unique_ptr<QuatStream> pRotation);
    // In place of all bones, each with its name.
    void TakeBones(std::vector<BoneStream> bones);

    uint32_t GetCameraCount() const { return static_cast<uint32_t>(m_cameraAnims.size()); }
    const CameraStream& GetCamera(int32_t cameraIndex) const;
    int32_t FindCamera(const ra::Name& name) const; // -1 without one
    // A camera that is there already gives its index.
    int32_t AddCamera(const ra::Name& name);
    void SetCameraStreams(int32_t cameraIndex, std::unique_ptr<Vec3Stream> pPosition,
                          std::unique_ptr<QuatStream> pRotation);

    uint32_t GetControlCount() const { return static_cast<uint32_t>(m_controlAnims.size()); }
    const ControlStream& GetControl(int32_t controlIndex) const;
    int32_t FindControl(const ra::Name& name, const ControlRef& ref) const; // -1 without one
    // One of that name and reference that is there already gives its index. While a model is being built the name is
    // INVALID and the reference's index says what is meant.
    int32_t AddControl(const ra::Name& name, const ControlRef& ref);
    void SetControlStream(int32_t controlIndex, std::unique_ptr<FloatStream> pValues);
    // One that is there already by its name, or name and reference, gets the new streams.
    int32_t TakeCamera(CameraStream camera);
    int32_t TakeControl(ControlStream control);
    // Both change what FindControl goes by.
    void SetControlName(int32_t controlIndex, const ra::Name& name);
    void SetControlIndex(int32_t controlIndex, int32_t targetIndex); // ControlRef::m_index

private:
    using NameIndices = std::unordered_map<ra::Name, int32_t>;

    struct ControlKey {
        ra::Name name;
        ControlRef ref;
        bool operator==(const ControlKey&) const = default;
    };
    struct ControlHash {
        size_t operator()(const ControlKey& key) const;
    };

    const NameIndices& GetBoneIndices() const;
    BoneStream* GetOwnBone(int32_t boneIndex);
    CameraStream* GetOwnCamera(int32_t cameraIndex);
    ControlStream* GetOwnControl(int32_t controlIndex);

    int32_t m_FrameCount = 1;
    float m_Duration = 1.0f;
    std::vector<BoneStream> m_boneAnims;
    std::vector<CameraStream> m_cameraAnims;
    std::vector<ControlStream> m_controlAnims;
    // The first index of each; looked things up in, never walked. That of the bones is made by the first search, which
    // an animation of the model's own never sees.
    mutable std::optional<NameIndices> m_BoneIndices;
    NameIndices m_CameraIndices;
    std::unordered_map<ControlKey, int32_t, ControlHash> m_ControlIndices;
};

using AnimRef = Inv::Handle<Anim>;
