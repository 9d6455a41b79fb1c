#include "Shared_Tools/PVXExport/TextureMatrix.h"

#include "Host/Sdk/ClassIds.h"
#include "Host/Sdk/Material.h"

namespace {

constexpr int s_MirrorBoth = U_MIRROR | V_MIRROR;

} // namespace

namespace TextureMatrix {

const std::array<int, ChannelCount> s_MapOfChannel = {ID_DI, ID_SP, ID_RL, ID_SI, ID_OP, ID_SS};

BitmapTex* AsBitmap(Texmap* pTexmap) {
    return pTexmap && pTexmap->ClassID() == BMTEX_CLASS_ID ? static_cast<BitmapTex*>(pTexmap) : nullptr;
}

StdMat* AsStandard(Mtl* pMtl) {
    return pMtl && pMtl->ClassID() == DMTL_CLASS_ID ? static_cast<StdMat*>(pMtl) : nullptr;
}

bool IsMirrored(int tiling) { return (tiling & s_MirrorBoth) == s_MirrorBoth; }

bool FromMap(Texmap* pTexmap, glm::mat4& out) {
    BitmapTex* pBitmap = AsBitmap(pTexmap);
    StdUVGen* pUVGen = pBitmap ? pBitmap->GetUVGen() : nullptr;
    if (!pUVGen)
        return false;
    Matrix3 m = IdentityMatrix();
    pUVGen->GetUVTransform(m);
    // A mirrored tile is half of what the host counts as one.
    const float scale = IsMirrored(pUVGen->GetTextureTiling()) ? 2.0f : 1.0f;
    for (int row = 0; row < 4; ++row)
        out[row] = glm::vec4(m[row].x * scale, m[row].y * scale, m[row].z, row == 3 ? 1.0f : 0.0f);
    return true;
}

bool IsShared(StdMat& material, glm::mat4& out) {
    out = glm::mat4(1.0f);
    bool found = false;
    for (const int id : s_MapOfChannel) {
        glm::mat4 matrix;
        if (!material.MapEnabled(id) || material.MapSlotType(id) != MAPSLOT_TEXTURE ||
            !FromMap(material.GetSubTexmap(id), matrix))
            continue;
        if (found && matrix != out) {
            out = glm::mat4(1.0f);
            return false;
        }
        out = matrix;
        found = true;
    }
    return true;
}

glm::mat4 OfFace(Mtl* pMtl) {
    glm::mat4 matrix(1.0f);
    if (StdMat* pStandard = AsStandard(pMtl))
        IsShared(*pStandard, matrix);
    return matrix;
}

} // namespace TextureMatrix
