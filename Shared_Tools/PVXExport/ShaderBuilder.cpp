#include "Shared_Tools/PVXExport/ShaderBuilder.h"

#include <algorithm>
#include <string>

#include "Host/Sdk/ClassIds.h"
#include "Host/Sdk/Material.h"
#include "Host/Sdk/Node.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared_Tools/PVXExport/ExportContext.h"
#include "Shared_Tools/PVXExport/ExportScene.h"
#include "Shared_Tools/PVXExport/PVXErrors.h"
#include "Shared_Tools/PVXExport/SharedTextureName.h"
#include "Shared_Tools/PVXExport/TextureLoad.h"
#include "Shared_Tools/PVXExport/TextureMatrix.h"

namespace {

constexpr float s_VisibleSpecularLevel = 0.05f;
constexpr float s_ByteScale = 255.99f; // brings 1 to 255, and each byte an equal share

constexpr int s_TileBoth = U_WRAP | V_WRAP;
constexpr int32_t s_Clamped = 0;
constexpr int32_t s_Tiled = 1;
constexpr int32_t s_Mirrored = 2;
constexpr int32_t s_TexGenSphere = 6;

std::string ClassNameOf(const Animatable& object) {
    std::string name;
    object.GetClassName(name);
    return name;
}

uint8_t Truncated(float value) { return value > 0.0f ? static_cast<uint8_t>(std::min(value, 255.0f)) : uint8_t{0}; }

// The components as they stand: a shader carries no tint of the host's 0..1 colours.
Colour UnscaledColour(const Color& c) {
    return {.b = Truncated(c.b), .g = Truncated(c.g), .r = Truncated(c.r), .a = 255};
}

Colour Grey(float value) {
    const uint8_t byte = Truncated(value * s_ByteScale);
    return {.b = byte, .g = byte, .r = byte, .a = 255};
}

Colour WireColour(COLORREF colour) {
    return {.b = static_cast<uint8_t>(colour >> 16),
            .g = static_cast<uint8_t>(colour >> 8),
            .r = static_cast<uint8_t>(colour),
            .a = 255};
}

int32_t FilterOf(int hostFilter) {
    switch (hostFilter) {
    case FILTER_PYR:
        return 4;
    case FILTER_SAT:
        return 5;
    default:
        return 0;
    }
}

// Puts the -1..1 of a sphere's directions into the picture.
glm::mat4 SphereMatrix() {
    glm::mat4 m(1.0f);
    m[0].x = m[1].y = m[3].x = m[3].y = 0.5f;
    return m;
}

} // namespace

Mtl* GetMaterialOfSlot(Mtl* pNodeMtl, size_t slot) {
    return pNodeMtl && pNodeMtl->NumSubMtls() > 0 ? pNodeMtl->GetSubMtl(static_cast<int>(slot)) : pNodeMtl;
}

void ShaderBuilder::BuildForNode(INode* pNode, std::span<const uint8_t> usedSlots, std::vector<uint32_t>& usedShaders) {
    Mtl* pNodeMtl = pNode->GetMtl();
    for (size_t slot = 0; slot < usedSlots.size(); ++slot) {
        if (!usedSlots[slot])
            continue;
        Mtl* pMtl = GetMaterialOfSlot(pNodeMtl, slot);
        dbAssertText(pMtl || !pNodeMtl, "pMtl");
        usedShaders.push_back(pMtl ? FindOrConvert(*pMtl) : AddDefaultShader(pNode));
    }
}

uint32_t ShaderBuilder::FindOrConvert(Mtl& material) {
    const auto known = m_Scene.m_ShaderOfMaterial.find(&material);
    return known != m_Scene.m_ShaderOfMaterial.end() ? known->second : Convert(material);
}

uint32_t ShaderBuilder::AddDefaultShader(INode* pNode) {
    if (m_Context.m_ExportMeshes)
        PVXErrors::Get().Warning("Object [%s] has no material assigned to it.", pNode->GetName());
    std::unique_ptr<Shader> pShader = Shader::Create();
    pShader->SetName(pNode->GetName());
    pShader->SetChannelColour(CN_Diffuse, WireColour(pNode->GetWireColor()));
    UsedShader& used = m_Scene.m_UsedShaders.emplace_back();
    used.shader.Set(std::move(pShader));
    return static_cast<uint32_t>(m_Scene.m_UsedShaders.size() - 1);
}

uint32_t ShaderBuilder::Convert(Mtl& material) {
    dbAssertText(material.GetName(), "pMtl->GetName()");
    const char* pName = material.GetName() ? material.GetName() : "";
    std::unique_ptr<Shader> pShader = Shader::Create();
    pShader->SetName(pName);

    const Class_ID classId = material.ClassID();
    if (StdMat* pStandard = TextureMatrix::AsStandard(&material))
        ConvertStandard(*pShader, *pStandard);
    else if (classId == MULTI_CLASS_ID)
        PVXErrors::Get().Error("Nested multi-sub objects not supported.  \"%s\" is nested.",
                               ClassNameOf(material).c_str());
    else
        PVXErrors::Get().Error("Unsupported material type \"%s\" [%s] : Class_ID(%X,%X)", pName,
                               ClassNameOf(material).c_str(), classId.PartA(), classId.PartB());

    const auto index = static_cast<uint32_t>(m_Scene.m_UsedShaders.size());
    UsedShader& used = m_Scene.m_UsedShaders.emplace_back();
    used.pMtl = &material;
    used.sortKey = GetSortKey(*pShader);
    used.shader.Set(std::move(pShader));
    m_Scene.m_ShaderOfMaterial.emplace(&material, index);
    return index;
}

void ShaderBuilder::ConvertStandard(Shader& shader, StdMat& material) {
    glm::mat4 matrix;
    Conversion conversion{shader, material, TextureMatrix::IsShared(material, matrix)};
    shader.SetTwoSided(material.GetTwoSided());
    shader.SetSupersample(material.GetSamplingOn());
    shader.SetShininess(material.GetShininess(m_Context.m_Time));
    SetColours(conversion);
    for (uint32_t channel = 0; channel < ChannelCount; ++channel)
        SetMap(conversion, channel);

    switch (material.GetTransparencyType()) {
    case TRANSP_ADDITIVE:
        shader.SetBlendMode(s_BlendOne, s_BlendOne);
        break;
    case TRANSP_FILTER:
        shader.SetBlendMode(s_BlendSourceAlpha, s_BlendInverseSourceAlpha);
        break;
    default:
        break;
    }
}

void ShaderBuilder::SetColours(Conversion& conversion) {
    auto& [shader, material, sharedMatrix] = conversion;
    const TimeValue t = m_Context.m_Time;
    shader.SetChannelColour(CN_Diffuse, UnscaledColour(material.GetDiffuse(t)));
    shader.SetChannelColour(CN_Specular, UnscaledColour(material.GetSpecular(t)));

    float specularLevel = material.GetShinStr(t);
    if (specularLevel > s_VisibleSpecularLevel)
        PVXErrors::Get().Warning("Shader [%s] has a specular level that is not 0.  This may not render properly.",
                                 material.GetName());
    else
        specularLevel = 0.0f;
    shader.SetChannelColour(CN_SpecularLevel, Grey(specularLevel));

    shader.SetChannelColour(CN_SelfIllumination, material.GetSelfIllumColorOn(0, false)
                                                     ? UnscaledColour(material.GetSelfIllumColor(t))
                                                     : Grey(material.GetSelfIllum(t)));
    shader.SetChannelColour(CN_Opacity,
                            {.b = 255, .g = 255, .r = 255, .a = Truncated(material.GetOpacity(t) * s_ByteScale)});
}

void ShaderBuilder::SetMap(Conversion& conversion, uint32_t channel) {
    auto& [shader, material, sharedMatrix] = conversion;
    const int mapId = TextureMatrix::s_MapOfChannel[channel];
    shader.SetChannelMode(channel, ChannelMode_Colour);
    if (!material.MapEnabled(mapId))
        return;
    if (channel == CN_SpecularLevel)
        PVXErrors::Get().Warning("Shader [%s] has a specular level map specified.  This may not render properly.",
                                 material.GetName());
    Texmap* pTexmap = material.GetSubTexmap(mapId);
    if (!pTexmap)
        return;
    if (BitmapTex* pBitmap = TextureMatrix::AsBitmap(pTexmap))
        SetBitmap(conversion, channel, *pBitmap);
    else
        PVXErrors::Get().Error("Unsupported texture type:[%s] name:[%s]", ClassNameOf(*pTexmap).c_str(),
                               pTexmap->GetName());
}

void ShaderBuilder::SetBitmap(Conversion& conversion, uint32_t channel, BitmapTex& bitmap) {
    auto& [shader, material, sharedMatrix] = conversion;
    const TextureRef texture = TextureLoad::Load(m_Scene, bitmap.GetMapName(), m_Context.m_ExportMeshes);
    if (texture) {
        shader.SetChannelMode(channel, ChannelMode_Texture);
        shader.SetChannelTexture(channel, texture);
        // Models find the shader that they share by its texture.
        if (channel == CN_Diffuse && OmbrelSharedShader::IsSharedTextureName(texture->GetName()))
            shader.SetName(texture->GetName());
    }
    StdUVGen* pUVGen = bitmap.GetUVGen();
    if (!pUVGen) {
        PVXErrors::Get().Warning("Texture [%s] does not have a UVGen.", bitmap.GetName());
        return;
    }

    glm::mat4 matrix(1.0f);
    const uint32_t requirements = pUVGen->Requirements(0);
    if (requirements && !(requirements & MTLREQ_VIEW_DEP)) {
        glm::mat4 mapMatrix(1.0f);
        TextureMatrix::FromMap(&bitmap, mapMatrix);
        if (sharedMatrix)
            shader.SetChannelBakedMatrix(channel, mapMatrix);
        else
            matrix = mapMatrix;
        shader.SetChannelTexGen(channel, pUVGen->GetMapChannel() - 1);
    } else if (pUVGen->GetCoordMapping(m_Context.m_Time) == UVMAP_SPHERE_ENV) {
        shader.SetChannelTexGen(channel, s_TexGenSphere);
        matrix = SphereMatrix();
    }
    SetTile(conversion, channel, bitmap, pUVGen->GetTextureTiling());
    shader.SetChannelFilter(channel, FilterOf(bitmap.GetFilterType()));
    shader.SetChannelMatrix(channel, matrix);
    shader.SetChannelTexMatrix(channel, matrix);
}

void ShaderBuilder::SetTile(Conversion& conversion, uint32_t channel, const BitmapTex& bitmap, int tiling) {
    int32_t tile = s_Tiled;
    if ((tiling & s_TileBoth) == s_TileBoth) {
        tile = s_Tiled;
    } else if (TextureMatrix::IsMirrored(tiling)) {
        if (m_Context.m_ExportMeshes)
            PVXErrors::Get().Error("Mirroring is not properly supported in shader [%s].",
                                   conversion.material.GetName());
        tile = s_Mirrored;
    } else if (tiling == 0) {
        tile = s_Clamped;
    } else {
        PVXErrors::Get().Warning("Texture [%s] must have both U and V tile modes as the same.  Assuming tiling.",
                                 bitmap.GetName());
    }
    conversion.shader.SetChannelTile(channel, tile);
}

// Without an order of names, opaque shaders come first, so that the others blend with them.
int32_t ShaderBuilder::GetSortKey(const Shader& shader) const {
    const auto& order = m_Scene.m_ShaderOrder;
    const auto named = std::ranges::find(order, std::string_view(shader.GetName()));
    if (named != order.end())
        return static_cast<int32_t>(named - order.begin()) + 2;
    return shader.IsOpaque() ? 0 : 1;
}
