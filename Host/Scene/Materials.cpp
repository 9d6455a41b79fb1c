#include "Host/Scene/Materials.h"

#include "Host/Sdk/ClassIds.h"

#include <cmath>
#include <string_view>

namespace scene {

namespace {

// A class id of our own making for classes that are known by name alone. The second word sets them apart from those
// that the host knows.
Class_ID MakeClassID(std::string_view className) {
    uint32_t hash = 2166136261u;
    for (const char c : className)
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    return {hash, 1};
}

} // namespace

void StandardMaterial::GetClassName(std::string& out) const { out = "Standard"; }

uint32_t StandardMaterial::Requirements(int) const { return m_Settings.faceMap ? MTLREQ_FACEMAP : 0; }

bool StandardMaterial::GetSelfIllumColorOn(int, bool) const { return m_Settings.selfIllumColor.has_value(); }

Color StandardMaterial::GetSelfIllumColor(TimeValue) const { return m_Settings.selfIllumColor.value_or(Color(0.0f)); }

const MapSlot* StandardMaterial::FindSlot(int id) const {
    return id >= 0 && id < NTEXMAPS ? &m_Settings.maps[static_cast<size_t>(id)] : nullptr;
}

bool StandardMaterial::MapEnabled(int id) const {
    const MapSlot* pSlot = FindSlot(id);
    return pSlot && pSlot->pMap && pSlot->enabled;
}

float StandardMaterial::GetTexmapAmt(int id, TimeValue t) const {
    const MapSlot* pSlot = FindSlot(id);
    return pSlot ? pSlot->amount.Evaluate(t) : 0.0f;
}

Texmap* StandardMaterial::GetSubTexmap(int id) const {
    const MapSlot* pSlot = FindSlot(id);
    return pSlot ? pSlot->pMap : nullptr;
}

int StandardMaterial::MapSlotType(int) const { return MAPSLOT_TEXTURE; }

Class_ID MultiMaterial::ClassID() const { return MULTI_CLASS_ID; }
void MultiMaterial::GetClassName(std::string& out) const { out = "Multi/Sub-Object"; }

uint32_t MultiMaterial::Requirements(int subMtl) const {
    uint32_t all = 0;
    for (int i = 0; i < NumSubMtls(); ++i) {
        const Mtl* pSub = GetSubMtl(i);
        if ((subMtl < 0 || subMtl == i) && pSub && pSub->ClassID() != MULTI_CLASS_ID)
            all |= pSub->Requirements(-1);
    }
    return all;
}

Mtl* MultiMaterial::GetSubMtl(int index) const {
    return index >= 0 && index < NumSubMtls() ? m_Subs[static_cast<size_t>(index)] : nullptr;
}

Class_ID OtherMaterial::ClassID() const { return MakeClassID(m_ClassName); }

Class_ID UVPlacement::ClassID() const { return {0x100, 0}; }
void UVPlacement::GetClassName(std::string& out) const { out = "StandardUVGen"; }

void UVPlacement::GetUVTransform(Matrix3& out) const {
    if (m_Settings.transform) {
        out = *m_Settings.transform;
        return;
    }
    const double cosine = std::cos(static_cast<double>(m_Settings.angle));
    const double sine = std::sin(static_cast<double>(m_Settings.angle));
    const glm::dvec3 u = static_cast<double>(GetUScl(0)) * glm::dvec3(cosine, sine, 0.0);
    const glm::dvec3 v = static_cast<double>(GetVScl(0)) * glm::dvec3(-sine, cosine, 0.0);
    const glm::dvec3 middle(0.5, 0.5, 0.0);
    out = Matrix3(glm::dmat4x3(u, v, glm::dvec3(0.0, 0.0, 1.0),
                               middle - (middle.x + GetUOffs(0)) * u - (middle.y + GetVOffs(0)) * v));
}

uint32_t UVPlacement::Requirements(int) const { return m_Settings.environment ? MTLREQ_VIEW_DEP : MTLREQ_UV; }

int UVPlacement::GetCoordMapping(int) const { return m_Settings.environment ? UVMAP_SPHERE_ENV : UVMAP_EXPLICIT; }

Bitmap::Bitmap(std::string name, std::string path, std::optional<UVSettings> uv, int filter)
    : m_Name(std::move(name)), m_Path(std::move(path)), m_Filter(filter) {
    if (uv)
        m_pUVGen = std::make_unique<UVPlacement>(std::move(*uv));
}

void Bitmap::GetClassName(std::string& out) const { out = "Bitmap"; }

uint32_t Bitmap::Requirements(int subMtl) const { return m_pUVGen ? m_pUVGen->Requirements(subMtl) : 0; }

Class_ID OtherTexmap::ClassID() const { return MakeClassID(m_ClassName); }

} // namespace scene
