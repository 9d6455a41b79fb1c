#include "Host/Gltf/Materials.h"

#include "Host/Gltf/MaterialExtras.h"
#include "Host/Gltf/Textures.h"
#include "Host/Scene/Materials.h"
#include "Host/Scene/Scene.h"

#include <cmath>

namespace gltf {

namespace {

constexpr std::string_view s_TransformExtension = "KHR_texture_transform";
constexpr int s_MirrorBoth = U_MIRROR | V_MIRROR;

// A texture as a glTF material names it.
struct TextureUse {
    int32_t texture = -1;
    uint32_t set = 0;
    std::optional<Matrix3> transform;
};

// glTF moves, turns and scales coordinates whose v runs down: (u, v) becomes offset + turn * scale * (u, v). Here v
// runs up, from 1 - v.
Matrix3 MakeTransform(const glm::vec2& offset, float rotation, const glm::vec2& scale) {
    const float s = std::sin(rotation);
    const float c = std::cos(rotation);
    Matrix3 m = IdentityMatrix();
    SetRow(m, 0, {c * scale.x, s * scale.x, 0.0f});
    SetRow(m, 1, {-s * scale.y, c * scale.y, 0.0f});
    SetRow(m, 3, {offset.x + s * scale.y, 1.0f - offset.y - c * scale.y, 0.0f});
    return m;
}

bool IsMirrored(int tiling) { return (tiling & s_MirrorBoth) == s_MirrorBoth; }

// glTF counts each mirrored copy of the picture as a tile, the host two of them.
Matrix3 CountMirrored(Matrix3 m) {
    for (int row = 0; row < 4; ++row)
        m[row] *= glm::vec3(0.5f, 0.5f, 1.0f);
    return m;
}

// Makes one of the file's materials.
class MaterialReader {
public:
    MaterialReader(const Messages& messages, Textures& textures, scene::Scene& scene, size_t materialCount)
        : m_Messages(messages), m_Textures(textures), m_Scene(scene), m_MaterialCount(materialCount) {}

    struct Made {
        Mtl* pMtl = nullptr;
        uint32_t texCoordSet = 0;
        // A multi-sub material, whose places are filled when all materials are there.
        scene::MultiMaterial* pMulti = nullptr;
        std::vector<int32_t> subs;
    };
    Made Read(const Place& place, const Json& json);

private:
    TextureUse ReadTexture(const Place& place, const Json& owner, std::string_view key);
    void SetMap(scene::MapSlot& slot, const TextureUse& use);
    scene::UVSettings MakePlacement(const TextureUse& use) const;
    uint32_t ReadStandard(const Place& place, const Json& json, scene::StandardSettings& settings);
    void ApplyExtras(const MaterialExtras& extras, scene::StandardSettings& settings);
    void ApplyMap(const MapExtras& extras, const MapTracks& tracks, scene::MapSlot& slot);

    const Messages& m_Messages;
    Textures& m_Textures;
    scene::Scene& m_Scene;
    size_t m_MaterialCount;
    std::map<scene::MapSlot*, TextureUse> m_Uses; // of the material in work: what its maps were made from
};

TextureUse MaterialReader::ReadTexture(const Place& place, const Json& owner, std::string_view key) {
    TextureUse use;
    const Json* pInfo = FindObject(place, owner, key);
    if (!pInfo)
        return use;
    use.texture = ReadIndex(place, *pInfo, "index", m_Textures.GetCount());
    uint64_t set = ReadSize(place, *pInfo, "texCoord", 0);
    const Json* pExtensions = FindObject(place, *pInfo, "extensions");
    if (const Json* pTransform = pExtensions ? FindObject(place, *pExtensions, s_TransformExtension) : nullptr) {
        float offset[2] = {0.0f, 0.0f};
        float scale[2] = {1.0f, 1.0f};
        ReadFloats(place, *pTransform, "offset", offset);
        ReadFloats(place, *pTransform, "scale", scale);
        use.transform = MakeTransform({offset[0], offset[1]}, ReadFloat(place, *pTransform, "rotation", 0.0f),
                                      {scale[0], scale[1]});
        set = ReadSize(place, *pTransform, "texCoord", set);
    }
    use.set = static_cast<uint32_t>(std::min<uint64_t>(set, UINT32_MAX));
    return use;
}

scene::UVSettings MaterialReader::MakePlacement(const TextureUse& use) const {
    scene::UVSettings uv;
    uv.transform = use.transform;
    if (use.texture >= 0)
        uv.tiling = m_Textures.Get(static_cast<size_t>(use.texture)).tiling;
    if (IsMirrored(uv.tiling))
        uv.transform = CountMirrored(use.transform.value_or(IdentityMatrix()));
    return uv;
}

void MaterialReader::SetMap(scene::MapSlot& slot, const TextureUse& use) {
    if (use.texture < 0)
        return;
    const TextureInfo& info = m_Textures.Get(static_cast<size_t>(use.texture));
    slot.pMap = &m_Scene.Make<scene::Bitmap>(info.name, info.path, MakePlacement(use), info.filter);
    m_Uses[&slot] = use;
}

// What glTF says. The answer is the set of texture coordinates that the material's textures take.
uint32_t MaterialReader::ReadStandard(const Place& place, const Json& json, scene::StandardSettings& settings) {
    float base[4] = {1.0f, 1.0f, 1.0f, 1.0f};
    float emissive[3] = {0.0f, 0.0f, 0.0f};
    float roughness = 1.0f;
    TextureUse baseTexture;
    if (const Json* pSurface = FindObject(place, json, "pbrMetallicRoughness")) {
        ReadFloats(place, *pSurface, "baseColorFactor", base);
        roughness = ReadFloat(place, *pSurface, "roughnessFactor", roughness);
        baseTexture = ReadTexture(place, *pSurface, "baseColorTexture");
    }
    ReadFloats(place, json, "emissiveFactor", emissive);
    const TextureUse emissiveTexture = ReadTexture(place, json, "emissiveTexture");
    settings.diffuse = {base[0], base[1], base[2]};
    settings.opacity = base[3];
    settings.shininess = 1.0f - roughness;
    settings.selfIllumColor = Color{emissive[0], emissive[1], emissive[2]};
    settings.twoSided = ReadBool(place, json, "doubleSided", false);
    if (ReadString(place, json, "alphaMode") == "BLEND")
        settings.transparency = TRANSP_FILTER;
    SetMap(settings.maps[ID_DI], baseTexture);
    SetMap(settings.maps[ID_SI], emissiveTexture);
    if (baseTexture.texture >= 0 && emissiveTexture.texture >= 0 && baseTexture.set != emissiveTexture.set)
        m_Messages.Warn(place,
                        "the emissive texture lies on texture coordinates " + std::to_string(emissiveTexture.set) +
                            ", the base colour texture on " + std::to_string(baseTexture.set) + ", which both get",
                        "lay both on one set");
    return baseTexture.texture >= 0 || emissiveTexture.texture < 0 ? baseTexture.set : emissiveTexture.set;
}

void MaterialReader::ApplyMap(const MapExtras& extras, const MapTracks& tracks, scene::MapSlot& slot) {
    TextureUse use = m_Uses[&slot];
    if (extras.texture)
        use = {.texture = static_cast<int32_t>(*extras.texture), .set = 0, .transform = {}};
    scene::UVSettings uv = MakePlacement(use);
    // Values of the host's own replace what glTF says in another way.
    if (extras.tile || extras.mirror) {
        uv.tiling = extras.tile.value_or(0) | extras.mirror.value_or(0);
        uv.transform = use.transform;
    }
    if (extras.offset || extras.scale)
        uv.transform.reset();
    if (extras.offset) {
        uv.uOffset = extras.offset->x;
        uv.vOffset = extras.offset->y;
    }
    if (extras.scale) {
        uv.uScale = extras.scale->x;
        uv.vScale = extras.scale->y;
    }
    uv.uOffset = tracks.uOffset.value_or(uv.uOffset);
    uv.vOffset = tracks.vOffset.value_or(uv.vOffset);
    uv.uScale = tracks.uScale.value_or(uv.uScale);
    uv.vScale = tracks.vScale.value_or(uv.vScale);
    uv.mapChannel = extras.channel.value_or(uv.mapChannel);
    uv.environment = extras.environment.value_or(uv.environment);

    const TextureInfo info = use.texture >= 0 ? m_Textures.Get(static_cast<size_t>(use.texture)) : TextureInfo{};
    const bool isBitmap = !extras.mapClass || *extras.mapClass == "bitmap";
    m_Uses[&slot].texture = isBitmap ? use.texture : -1;
    if (!isBitmap)
        slot.pMap = &m_Scene.Make<scene::OtherTexmap>(info.name, *extras.mapClass);
    else if (use.texture >= 0)
        slot.pMap =
            &m_Scene.Make<scene::Bitmap>(info.name, info.path, std::move(uv), extras.filter.value_or(info.filter));
    slot.enabled = extras.enabled.value_or(slot.enabled);
    slot.amount = extras.amount ? scene::FloatTrack(*extras.amount) : slot.amount;
    slot.amount = tracks.amount.value_or(slot.amount);
}

void MaterialReader::ApplyExtras(const MaterialExtras& extras, scene::StandardSettings& settings) {
    settings.faceMap = extras.faceMap.value_or(settings.faceMap);
    settings.twoSided = extras.twoSided.value_or(settings.twoSided);
    settings.supersample = extras.supersample.value_or(settings.supersample);
    settings.diffuse = extras.diffuse.value_or(settings.diffuse);
    settings.specular = extras.specular.value_or(settings.specular);
    settings.transparency = extras.transparency.value_or(settings.transparency);
    const auto set = [](scene::FloatTrack& track, const std::optional<float>& value) {
        if (value)
            track = *value;
    };
    set(settings.shininess, extras.shininess);
    set(settings.specularLevel, extras.specularLevel);
    set(settings.opacity, extras.opacity);
    set(settings.selfIllum, extras.selfIllum);
    if (extras.selfIllum || extras.selfIllumColor)
        settings.selfIllumColor = extras.selfIllumColor;
    settings.selfIllum = extras.selfIllumTrack.value_or(settings.selfIllum);
    settings.opacity = extras.opacityTrack.value_or(settings.opacity);

    std::map<int, std::pair<MapExtras, MapTracks>> slots;
    for (const auto& [slot, map] : extras.maps)
        slots[slot].first = map;
    for (const auto& [slot, tracks] : extras.mapTracks)
        slots[slot].second = tracks;
    for (const auto& [slot, told] : slots)
        ApplyMap(told.first, told.second, settings.maps[static_cast<size_t>(slot)]);
}

MaterialReader::Made MaterialReader::Read(const Place& place, const Json& json) {
    const MaterialExtras extras = ReadMaterialExtras(m_Messages, place, json, m_MaterialCount, m_Textures.GetCount());
    const std::string kind = extras.materialClass.value_or("standard");
    std::string name(place.name);
    Made made;
    if (kind == "multi") {
        made.pMulti = &m_Scene.Make<scene::MultiMaterial>(std::move(name));
        made.pMtl = made.pMulti;
        made.subs = extras.subs.value_or(std::vector<int32_t>{});
        return made;
    }
    if (kind != "standard") {
        made.pMtl = &m_Scene.Make<scene::OtherMaterial>(std::move(name), kind);
        return made;
    }
    m_Uses.clear();
    scene::StandardSettings settings;
    made.texCoordSet = ReadStandard(place, json, settings);
    ApplyExtras(extras, settings);
    for (const auto& [pSlot, use] : m_Uses)
        if (use.texture >= 0)
            m_Textures.Unpack(static_cast<size_t>(use.texture));
    made.pMtl = &m_Scene.Make<scene::StandardMaterial>(std::move(name), std::move(settings));
    return made;
}

} // namespace

Materials::Materials(const SceneFile& file, const std::string& path, BufferStore& buffers, const Messages& messages,
                     scene::Scene& scene, std::span<const std::string> taken)
    : m_Scene(scene) {
    for (const std::string& name : taken)
        m_Names.Make(name, name);
    const Json* pMaterials = FindArray({}, file.GetRoot(), "materials");
    if (!pMaterials)
        return;
    Textures textures(file, path, buffers, messages);
    MaterialReader reader(messages, textures, scene, pMaterials->Size());
    std::vector<MaterialReader::Made> all;
    for (const Json& json : pMaterials->GetArray()) {
        Place place{.kind = "material", .index = all.size()};
        const std::string name = m_Names.Make(ReadString(place, json, "name"), "Material");
        place.name = name;
        CheckLength(place, name);
        all.push_back(reader.Read(place, json));
        m_Materials.push_back(all.back().pMtl);
        m_TexCoordSets.push_back(all.back().texCoordSet);
    }
    for (const MaterialReader::Made& made : all) {
        if (!made.pMulti)
            continue;
        std::vector<Mtl*> subs;
        for (const int32_t sub : made.subs)
            subs.push_back(sub < 0 ? nullptr : m_Materials[static_cast<size_t>(sub)]);
        made.pMulti->SetSubs(std::move(subs));
    }
}

Mtl& Materials::GetDefault() {
    if (!m_pDefault) {
        scene::StandardSettings white;
        white.diffuse = Color(1.0f);
        m_pDefault = &m_Scene.Make<scene::StandardMaterial>(m_Names.Make("Default", "Default"), std::move(white));
    }
    return *m_pDefault;
}

Mtl* Materials::GetForMesh(const std::vector<int32_t>& materials, std::string_view meshName) {
    if (materials.empty() || (materials.size() == 1 && materials[0] < 0))
        return nullptr;
    if (materials.size() == 1)
        return m_Materials[static_cast<size_t>(materials[0])];
    Mtl*& pMulti = m_Multis[materials];
    if (!pMulti) {
        std::vector<Mtl*> subs;
        subs.reserve(materials.size());
        for (const int32_t material : materials)
            subs.push_back(material < 0 ? &GetDefault() : m_Materials[static_cast<size_t>(material)]);
        pMulti = &m_Scene.Make<scene::MultiMaterial>(std::string(meshName), std::move(subs));
    }
    return pMulti;
}

} // namespace gltf
