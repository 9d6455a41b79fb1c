// Host materials become shaders of the model.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "Shared/Cross/RenderAnim/ResourceRefs.h"

struct ExportContext;
struct ExportScene;
class BitmapTex;
class INode;
class Mtl;
class StdMat;

// The material of the faces in a slot: the sub-material of a multi-sub one, otherwise the node's. Null without one, and
// for an empty place among the sub-materials.
Mtl* GetMaterialOfSlot(Mtl* pNodeMtl, size_t slot);

// A material becomes a shader once in an export, however many meshes use it. What is wrong with one is reported to the
// artist and stops nothing: the shader stays, without the bad parts.
class ShaderBuilder {
public:
    ShaderBuilder(ExportScene& scene, const ExportContext& context) : m_Scene(scene), m_Context(context) {}

    // Appends the shaders of the node's used slots, in the order of the slots, as indices in the scene's used shaders.
    void BuildForNode(INode* pNode, std::span<const uint8_t> usedSlots, std::vector<uint32_t>& usedShaders);

private:
    // What converting one material is about.
    struct Conversion {
        Shader& shader;
        StdMat& material;
        bool sharedMatrix; // the texture matrix is in the vertices
    };

    uint32_t FindOrConvert(Mtl& material);
    uint32_t AddDefaultShader(INode* pNode);
    uint32_t Convert(Mtl& material);
    void ConvertStandard(Shader& shader, StdMat& material);
    void SetColours(Conversion& conversion);
    void SetMap(Conversion& conversion, uint32_t channel);
    void SetBitmap(Conversion& conversion, uint32_t channel, BitmapTex& bitmap);
    void SetTile(Conversion& conversion, uint32_t channel, const BitmapTex& bitmap, int tiling);
    int32_t GetSortKey(const Shader& shader) const;

    ExportScene& m_Scene;
    const ExportContext& m_Context;
};
