#include "Shared_Tools/PVXExport/ControlTracks.h"

#include <algorithm>
#include <functional>
#include <memory>

#include "Host/Sdk/Material.h"
#include "Host/Sdk/Node.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Anim.h"
#include "Shared_Tools/PVXExport/ExportContext.h"
#include "Shared_Tools/PVXExport/ExportScene.h"
#include "Shared_Tools/PVXExport/FrameRange.h"
#include "Shared_Tools/PVXExport/PVXErrors.h"
#include "Shared_Tools/PVXExport/TextureMatrix.h"

namespace {

constexpr float s_Tolerance = 0.005f;

using Value = std::function<float(TimeValue)>;

// Samples tracks into one animation. The keys of a track that turns out to stay the same are never laid down.
class TrackSampler {
public:
    TrackSampler(std::span<const AnimFrame> frames, Anim& anim)
        : m_Frames(frames.first(std::min<size_t>(frames.size(), FloatStream::MaxKeyCount))), m_Anim(anim),
          m_Keys(m_Frames.size()) {}

    // False when the value never changes, unless a constant is to be kept: that makes a stream of one key.
    bool Add(const ControlRef& ref, bool keepConstant, const Value& value) {
        if (!Evaluate(value)) {
            if (keepConstant)
                AddStream(ref, 1);
            return keepConstant;
        }
        ThinKeys(AddStream(ref, m_Keys.size()), s_Tolerance);
        return true;
    }

private:
    // True when any value differs from the one before it.
    bool Evaluate(const Value& value) {
        bool changes = false;
        for (size_t i = 0; i < m_Frames.size(); ++i) {
            m_Keys[i] = {m_Frames[i].time, value(m_Frames[i].tick)};
            changes = changes || (i > 0 && m_Keys[i].value != m_Keys[i - 1].value);
        }
        return changes;
    }

    FloatStream& AddStream(const ControlRef& ref, size_t keyCount) {
        auto pStream = std::make_unique<FloatStream>();
        std::ranges::copy_n(m_Keys.begin(), static_cast<std::ptrdiff_t>(keyCount),
                            pStream->SetKeyCount(static_cast<uint32_t>(keyCount)).begin());
        FloatStream& stream = *pStream;
        m_Anim.SetControlStream(m_Anim.AddControl(ra::Name(), ref), std::move(pStream));
        return stream;
    }

    std::span<const AnimFrame> m_Frames;
    Anim& m_Anim;
    std::vector<FloatKey> m_Keys;
};

float Clamp01(float value) { return std::clamp(value, 0.0f, 1.0f); }

// The tracks of one material, which is the shader of that index.
class MaterialTracks {
public:
    MaterialTracks(TrackSampler& sampler, int32_t shaderIndex, Shader& shader, StdMat& material, bool warn)
        : m_Sampler(sampler), m_ShaderIndex(shaderIndex), m_Shader(shader), m_Mtl(material), m_Warn(warn) {}

    void Add() {
        m_Sampler.Add(Ref(CN_SelfIllumination, ControlProperty_Amount), false,
                      [this](TimeValue t) { return Clamp01(m_Mtl.GetSelfIllum(t)); });
        AddOpacity();
        AddDiffuse();
        for (size_t channel = 0; channel < TextureMatrix::s_MapOfChannel.size(); ++channel)
            AddMotion(static_cast<int32_t>(channel), TextureMatrix::s_MapOfChannel[channel]);
    }

private:
    ControlRef Ref(int32_t channel, int32_t property) const {
        return {.type = ControlTarget_Shader, .m_index = m_ShaderIndex, .channel = channel, .property = property};
    }

    bool AddAmount(int32_t channel, int mapId) {
        return m_Mtl.MapEnabled(mapId) &&
               m_Sampler.Add(Ref(channel, ControlProperty_Amount), false,
                             [=, this](TimeValue t) { return Clamp01(m_Mtl.GetTexmapAmt(mapId, t)); });
    }

    void AddOpacity() {
        if (!AddAmount(CN_Opacity, ID_OP)) {
            m_Sampler.Add(Ref(CN_Opacity, ControlProperty_Amount), false,
                          [this](TimeValue t) { return Clamp01(m_Mtl.GetOpacity(t)); });
            return;
        }
        if (m_Warn && m_Mtl.GetOpacity(0) != 0.0f)
            PVXErrors::Get().Warning("Material [%s]: Material opacity not set to zero when animating texture opacity - "
                                     "exported file may not look the same.",
                                     m_Mtl.GetName());
        m_Shader.SetChannelMode(CN_Opacity, ChannelMode_Animated);
    }

    void AddDiffuse() {
        if (!AddAmount(CN_Diffuse, ID_DI))
            return;
        if (m_Warn && m_Mtl.GetDiffuse(0) != Color(0.0f, 0.0f, 0.0f))
            PVXErrors::Get().Warning("Material [%s]: Material diffuse not set to black when animating texture diffuse "
                                     "amount - exported file may not look the same.",
                                     m_Mtl.GetName());
        m_Shader.SetChannelMode(CN_Diffuse, ChannelMode_Animated);
    }

    // Where a map lies: the offsets as they are, the scales against that of the model itself.
    void AddMotion(int32_t channel, int mapId) {
        BitmapTex* pBitmap = m_Mtl.MapEnabled(mapId) ? TextureMatrix::AsBitmap(m_Mtl.GetSubTexmap(mapId)) : nullptr;
        const StdUVGen* pUV = pBitmap ? pBitmap->GetUVGen() : nullptr;
        if (!pUV)
            return;
        const auto add = [&](int32_t property, const Value& value) {
            m_Sampler.Add(Ref(channel, property), false, value);
        };
        add(ControlProperty_OffsetU, [=](TimeValue t) { return -pUV->GetUOffs(t); });
        add(ControlProperty_OffsetV, [=](TimeValue t) { return -pUV->GetVOffs(t); });
        add(ControlProperty_ScaleU, [=](TimeValue t) { return pUV->GetUScl(t) / pUV->GetUScl(0) - 1.0f; });
        add(ControlProperty_ScaleV, [=](TimeValue t) { return pUV->GetVScl(t) / pUV->GetVScl(0) - 1.0f; });
    }

    TrackSampler& m_Sampler;
    int32_t m_ShaderIndex;
    Shader& m_Shader;
    StdMat& m_Mtl;
    bool m_Warn;
};

} // namespace

namespace ControlTracks {

void AddMaterials(const ExportScene& scene, const ExportContext& context, std::span<const AnimFrame> frames,
                  Anim& anim) {
    TrackSampler sampler(frames, anim);
    for (size_t i = 0; i < scene.m_UsedShaders.size(); ++i) {
        const UsedShader& used = scene.m_UsedShaders[i];
        if (StdMat* pStdMtl = TextureMatrix::AsStandard(used.pMtl))
            MaterialTracks(sampler, static_cast<int32_t>(i), *used.shader.GetData(), *pStdMtl, context.m_ExportMeshes)
                .Add();
    }
}

void AddVisibility(const ExportScene& scene, std::span<const AnimFrame> frames, Anim& anim) {
    TrackSampler sampler(frames, anim);
    for (size_t i = 0; i < scene.m_MeshNodes.size(); ++i) {
        INode* pNode = scene.m_MeshNodes[i].pNode;
        const ControlRef ref{.type = ControlTarget_Mesh, .m_index = static_cast<int32_t>(i)};
        if (pNode->UserPropExists("ForceInvisible"))
            sampler.Add(ref, true, [](TimeValue) { return 0.0f; });
        else
            sampler.Add(ref, true, [=](TimeValue t) { return pNode->GetVisibility(t); });
    }
}

} // namespace ControlTracks
