#include "Tools/pvxdump/ModelText.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include <glm/common.hpp>
#include <glm/gtc/type_ptr.hpp>

#include "Tools/pvxdump/AnimText.h"
#include "Tools/pvxdump/ModelNames.h"
#include "Tools/pvxdump/TextFormat.h"
#include "Tools/pvxdump/TextTable.h"

namespace {

using enum TextTable::Align;
using TextFormat::Count;
using TextFormat::Name;
using TextFormat::Number;
using TextFormat::Vector;

constexpr double s_DegreesPerRadian = 57.29577951308232;

std::string FormatBox(const BoundVolume& volume) {
    if (!volume.IsValid())
        return "none";
    const OrientedBox& box = volume.GetBox();
    std::string text = Vector(box.centre - box.halfExtents) + " to " + Vector(box.centre + box.halfExtents);
    if (box.rotation != glm::mat3(1.0f))
        text = "centre " + Vector(box.centre) + ", half extents " + Vector(box.halfExtents) + ", turned";
    return text;
}

std::string FormatColour(Colour colour) {
    char text[16];
    std::snprintf(text, sizeof(text), "#%02X%02X%02X %3u", colour.r, colour.g, colour.b, colour.a);
    return text;
}

// Scale and offset tell most texture matrices; all numbers of the others are in the other form of output.
std::string FormatMatrix(const glm::mat4& m) {
    if (m == glm::mat4(1.0f))
        return "-";
    return "scale " + TextFormat::Numbers(std::array{m[0][0], m[1][1]}) + ", offset " +
           TextFormat::Numbers(std::array{m[3][0], m[3][1]});
}

std::string FormatMode(int32_t mode) {
    switch (mode) {
    case ChannelMode_Colour:
        return "colour";
    case ChannelMode_Texture:
        return "texture";
    case ChannelMode_Animated:
        return "animated";
    default:
        return std::to_string(mode);
    }
}

std::string FormatComponents(uint32_t components) {
    std::string text;
    for (uint32_t i = 0; i < gz::VC_Count; ++i)
        if ((components >> i & 1) != 0)
            text += (text.empty() ? "" : " ") + std::string(s_ComponentNames[i]);
    return text;
}

std::string FormatBone(const ModelContent& content, int32_t index) {
    if (index == -1)
        return "-";
    const std::string name = GetBoneName(content, index);
    return name.empty() ? '#' + std::to_string(index) : Name(name);
}

// The settings of a texture say nothing on a channel that is only a colour.
bool IsPlain(const ra::ChannelRecord& channel) {
    return channel.mode == ChannelMode_Colour && channel.texture.empty() && channel.tile == 0 && channel.filter == 0 &&
           channel.texGen == 0 && channel.matrix == glm::mat4(1.0f) && channel.bakedMatrix == glm::mat4(1.0f);
}

std::vector<std::string> MakeShaderRow(const ra::ShaderRecord& shader) {
    const bool tests = shader.alphaFunction != 0 || shader.alphaReference != 0.0f;
    std::vector<std::string> row = {
        Name(shader.name), std::to_string(shader.blendSource) + ", " + std::to_string(shader.blendDestination),
        shader.twoSided ? "two" : "one",
        tests ? std::to_string(shader.alphaFunction) + ", " + Number(static_cast<double>(shader.alphaReference)) : "-"};
    for (const ra::ChannelRecord& channel : shader.channels)
        row.push_back(FormatColour(channel.colour));
    return row;
}

std::vector<std::string> MakeChannelRow(const ra::ChannelRecord& channel, uint32_t n) {
    return {"",
            s_ChannelNames[n],
            FormatMode(channel.mode),
            channel.texture.empty() ? "-" : Name(channel.texture),
            std::to_string(channel.tile),
            std::to_string(channel.filter),
            std::to_string(channel.texGen),
            FormatMatrix(channel.matrix),
            FormatMatrix(channel.bakedMatrix)};
}

void PrintTextures(std::string& out, const std::vector<TextureContent>& textures) {
    const bool written =
        std::ranges::any_of(textures, [](const TextureContent& texture) { return !texture.file.empty(); });
    TextTable table({{"texture"}, {"size", Right}, {"type"}, {"levels", Right}, {"bytes", Right}});
    if (written)
        table.AddColumn({"picture"});
    for (const TextureContent& texture : textures) {
        std::vector<std::string> row = {Name(texture.name),
                                        std::to_string(texture.width) + "x" + std::to_string(texture.height),
                                        GetTextureTypeName(GuessFormat(texture.imageType)),
                                        std::to_string(texture.levelCount), Count(texture.size)};
        if (written)
            row.push_back(Name(texture.file));
        table.AddRow(std::move(row));
    }
    table.PrintSection(out, Count(textures.size(), "texture", "textures"));
}

void PrintShaders(std::string& out, const ModelContent& content) {
    TextTable shaders({{"shader"}, {"blend"}, {"sides"}, {"alpha test"}});
    for (const char* pName : s_ChannelNames)
        shaders.AddColumn({pName});
    TextTable textures({{"shader"},
                        {"channel"},
                        {"mode"},
                        {"texture"},
                        {"tile", Right},
                        {"filter", Right},
                        {"texgen", Right},
                        {"matrix"},
                        {"baked matrix"}});
    for (const ra::ShaderRecord& shader : content.shaders) {
        shaders.AddRow(MakeShaderRow(shader));
        std::string name = Name(shader.name);
        for (uint32_t n = 0; n < ChannelCount; ++n)
            if (!IsPlain(shader.channels[n])) {
                std::vector<std::string> row = MakeChannelRow(shader.channels[n], n);
                row.front() = std::exchange(name, {});
                textures.AddRow(std::move(row));
            }
    }
    shaders.PrintSection(out, Count(content.shaders.size(), "shader", "shaders") +
                                  ", colours as red, green, blue and alpha");
    textures.PrintSection(out, "channels with more than a colour");
    TextTable shared({{"name"}});
    for (const std::string& name : content.sharedShaders)
        shared.AddRow({Name(name)});
    shared.PrintSection(out, Count(content.sharedShaders.size(), "shared shader", "shared shaders"));
}

void PrintSkeleton(std::string& out, const ModelContent& content) {
    TextTable table({{"", Right}, {"bone"}, {"parent"}, {"position"}});
    for (size_t i = 0; i < content.bones.size(); ++i)
        table.AddRow({std::to_string(i), Name(content.bones[i].name), FormatBone(content, content.bones[i].parent),
                      Vector(content.bones[i].position)});
    const char* pWhere =
        content.level == DataLevel::Intermediate ? ", positions in the world" : ", positions in their parents";
    table.PrintSection(out, "skeleton of " + Count(content.bones.size(), "bone", "bones") + pWhere);
}

std::vector<std::string> MakeMeshRow(const ModelContent& content, const MeshContent& mesh) {
    const std::string bone = FormatBone(content, mesh.entry.parentBone);
    if (!mesh.isLocal)
        return {Name(mesh.entry.name), "", "", "in model " + Name(mesh.entry.xrefModel), "", bone};
    return {Name(mesh.entry.name),
            Count(GetHighLevel(mesh).count),
            Count(CountTriangles(mesh, ra::Mesh::Poly_High)),
            FormatComponents(GetHighLevel(mesh).components),
            FormatBox(mesh.pMesh->boundVolume),
            bone};
}

std::vector<std::string> MakeLowRow(const MeshContent& mesh) {
    return {"  low level",
            Count(GetLowLevel(mesh).count),
            Count(CountTriangles(mesh, ra::Mesh::Poly_Low)),
            FormatComponents(GetLowLevel(mesh).components),
            "",
            ""};
}

// For each shader, and for each level that has triangles with it.
void AddPrimSetRows(TextTable& table, const MeshContent& mesh, bool withLow) {
    std::string name = Name(mesh.entry.name);
    for (size_t i = 0; i < mesh.pMesh->primSets.size(); ++i) {
        const ra::PrimSetRecord& primSet = mesh.pMesh->primSets[i];
        for (const uint32_t level : {ra::Mesh::Poly_High, ra::Mesh::Poly_Low}) {
            const bool isLow = level == ra::Mesh::Poly_Low;
            if (isLow && !withLow)
                continue;
            const ra::TriangleRecord& triangles = primSet.levels[level];
            table.AddRow({std::exchange(name, {}), isLow ? "  low level" : Name(primSet.shader),
                          Count(mesh.indexCounts[i][level] / 3), std::to_string(triangles.firstVertex),
                          std::to_string(triangles.vertexCount)});
        }
    }
}

void PrintMeshes(std::string& out, const ModelContent& content) {
    TextTable meshes(
        {{"mesh"}, {"vertices", Right}, {"triangles", Right}, {"components"}, {"bounds"}, {"parent bone"}});
    TextTable sets({{"mesh"}, {"shader"}, {"triangles", Right}, {"vertices from", Right}, {"count", Right}});
    TextTable skins({{"mesh"}, {"bone"}, {"index", Right}});
    TextTable details({{"mesh"}, {"least detail", Right}, {"child selection"}});
    for (const MeshContent& mesh : content.meshes) {
        meshes.AddRow(MakeMeshRow(content, mesh));
        const std::string name = Name(mesh.entry.name);
        const bool hasLow = GetLowLevel(mesh).count > 0;
        if (hasLow)
            meshes.AddRow(MakeLowRow(mesh));
        AddPrimSetRows(sets, mesh, hasLow);
        for (const ra::SkinnedTransformRecord& transform : mesh.pMesh->skinnedTransforms)
            skins.AddRow({&transform == &mesh.pMesh->skinnedTransforms.front() ? name : "", Name(transform.bone),
                          std::to_string(transform.index)});
        if (mesh.pMesh->minDetail != 0 || !mesh.pMesh->childSelection)
            details.AddRow({name, std::to_string(mesh.pMesh->minDetail), mesh.pMesh->childSelection ? "yes" : "no"});
    }
    meshes.PrintSection(out,
                        Count(content.meshes.size(), "mesh", "meshes") + ", bounds " + FormatBox(content.boundVolume));
    sets.PrintSection(out, "primitive sets");
    skins.PrintSection(out, "skinned transforms");
    details.PrintSection(out, "detail and selection, where they aren't the default");
}

void PrintMarkers(std::string& out, const ModelContent& content) {
    TextTable table({{"marker"}, {"parent bone"}, {"position"}});
    for (const Marker& marker : content.markers)
        table.AddRow({Name(marker.name.GetTextOrEmpty()),
                      marker.m_parentName.IsValid() ? Name(marker.m_parentName.GetText()) : "-",
                      Vector(marker.m_transform[3])});
    table.PrintSection(out, Count(content.markers.size(), "marker", "markers"));
}

void PrintCameras(std::string& out, const ModelContent& content) {
    TextTable table({{"camera"}, {"position"}, {"target"}, {"field of view"}, {"near", Right}, {"far", Right}});
    for (const CameraDef& camera : content.cameras)
        table.AddRow({Name(camera.name.GetTextOrEmpty()), Vector(camera.position), Vector(camera.target),
                      Number(static_cast<double>(camera.fieldOfView) * s_DegreesPerRadian, 2) + " degrees",
                      Number(static_cast<double>(camera.nearClip)), Number(static_cast<double>(camera.farClip))});
    table.PrintSection(out, Count(content.cameras.size(), "camera", "cameras"));
}

} // namespace

void PrintUndecoded(std::string& out, const UndecodedChunks& chunks) {
    TextTable table({{"chunk"}, {"count", Right}});
    for (const auto& [id, count] : chunks)
        table.AddRow({TextFormat::Code(id), Count(count)});
    table.PrintSection(out, "not decoded");
}

void PrintModel(std::string& out, const ModelContent& content) {
    uint64_t vertices = 0;
    uint64_t triangles = 0;
    for (const MeshContent& mesh : content.meshes) {
        vertices += GetHighLevel(mesh).count;
        triangles += CountTriangles(mesh, ra::Mesh::Poly_High);
    }
    out += "model \"" + Name(content.name) + "\", " + GetText(content.level) + ": " +
           Count(content.meshes.size(), "mesh", "meshes") + ", " + Count(vertices, "vertex", "vertices") + ", " +
           Count(triangles, "triangle", "triangles") + '\n';
    PrintTextures(out, content.textures);
    PrintShaders(out, content);
    PrintSkeleton(out, content);
    PrintMeshes(out, content);
    PrintMarkers(out, content);
    PrintCameras(out, content);
    PrintAnimations(out, content.animations);
    PrintUndecoded(out, content.undecoded);
}

void PrintShaderFile(std::string& out, const ModelContent& content) {
    out +=
        "shared shader \"" + Name(content.name) + "\": " + Count(content.textures.size(), "texture", "textures") + '\n';
    PrintTextures(out, content.textures);
    PrintShaders(out, content);
    PrintUndecoded(out, content.undecoded);
}

void PrintTextureFile(std::string& out, const TextureContent& texture) {
    out += std::string(texture.isFinal ? "final" : "generic") + " texture\n";
    std::vector<TextureContent> textures;
    textures.push_back(texture);
    PrintTextures(out, textures);
}
