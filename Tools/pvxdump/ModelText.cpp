#include "Tools/pvxdump/ModelText.h"

#include <glm/common.hpp>
#include <glm/gtc/type_ptr.hpp>

#include "Tools/pvxdump/ModelNames.h"
#include "Tools/pvxdump/TextFormat.h"
#include "Tools/pvxdump/TextTable.h"

namespace {

using enum TextTable::Align;
using TextFormat::Count;
using TextFormat::Name;
using TextFormat::Number;
using TextFormat::Vector;

constexpr uint32_t s_Indent = 2;
constexpr double s_DegreesPerRadian = 57.29577951308232;

void PrintHeading(std::string& out, const std::string& text) { out += '\n' + text + '\n'; }

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

void PrintShader(std::string& out, const ra::ShaderRecord& shader) {
    out.append(s_Indent, ' ');
    out += Name(shader.name) + ": blend " + std::to_string(shader.blendSource) + ", " +
           std::to_string(shader.blendDestination) + (shader.twoSided ? "; two-sided" : "; one-sided") +
           "; alpha function " + std::to_string(shader.alphaFunction) + ", reference " +
           Number(static_cast<double>(shader.alphaReference)) + '\n';
    TextTable table({{"channel"},
                     {"mode"},
                     {"colour, alpha"},
                     {"texture"},
                     {"tile", Right},
                     {"filter", Right},
                     {"texgen", Right},
                     {"matrix"},
                     {"baked matrix"}});
    for (uint32_t n = 0; n < ChannelCount; ++n) {
        const ra::ChannelRecord& channel = shader.channels[n];
        table.AddRow({s_ChannelNames[n], FormatMode(channel.mode), FormatColour(channel.colour),
                      channel.texture.empty() ? "-" : Name(channel.texture), std::to_string(channel.tile),
                      std::to_string(channel.filter), std::to_string(channel.texGen), FormatMatrix(channel.matrix),
                      FormatMatrix(channel.bakedMatrix)});
    }
    table.Print(out, s_Indent * 2);
}

void PrintShaders(std::string& out, const ModelContent& content) {
    if (!content.shaders.empty())
        PrintHeading(out, Count(content.shaders.size(), "shader", "shaders"));
    for (const ra::ShaderRecord& shader : content.shaders)
        PrintShader(out, shader);
    if (!content.sharedShaders.empty())
        PrintHeading(out, Count(content.sharedShaders.size(), "shared shader", "shared shaders"));
    for (const std::string& name : content.sharedShaders)
        out += std::string(s_Indent, ' ') + Name(name) + '\n';
}

void PrintSkeleton(std::string& out, const ModelContent& content) {
    if (!content.hasSkeleton)
        return;
    PrintHeading(out, "skeleton: " + Count(content.bones.size(), "bone", "bones"));
    TextTable table({{"", Right}, {"bone"}, {"parent"}, {"position"}});
    for (size_t i = 0; i < content.bones.size(); ++i)
        table.AddRow({std::to_string(i), Name(content.bones[i].name), FormatBone(content, content.bones[i].parent),
                      Vector(content.bones[i].transform[3])});
    table.Print(out, s_Indent);
}

std::vector<std::string> MakeMeshRow(const ModelContent& content, const MeshContent& mesh) {
    const std::string bone = FormatBone(content, mesh.entry.parentBone);
    if (!mesh.isLocal)
        return {Name(mesh.entry.name), "", "", "in model " + Name(mesh.entry.xrefModel), "", bone};
    return {Name(mesh.entry.name),
            Count(mesh.mesh.vertexCount),
            Count(CountTriangles(mesh)),
            FormatComponents(mesh.mesh.components),
            FormatBox(mesh.mesh.boundVolume),
            bone};
}

void PrintMeshes(std::string& out, const ModelContent& content) {
    if (!content.hasMeshGroup)
        return;
    PrintHeading(out, Count(content.meshes.size(), "mesh", "meshes") + ", bounds " + FormatBox(content.boundVolume));
    TextTable meshes(
        {{"mesh"}, {"vertices", Right}, {"triangles", Right}, {"components"}, {"bounds"}, {"parent bone"}});
    TextTable sets({{"mesh"}, {"shader"}, {"triangles", Right}, {"vertices from", Right}, {"count", Right}});
    TextTable skins({{"mesh"}, {"bone"}, {"index", Right}});
    TextTable details({{"mesh"}, {"least detail", Right}, {"child selection"}});
    for (const MeshContent& mesh : content.meshes) {
        meshes.AddRow(MakeMeshRow(content, mesh));
        const std::string name = Name(mesh.entry.name);
        for (size_t i = 0; i < mesh.mesh.primSets.size(); ++i) {
            const ra::PrimSetRecord& primSet = mesh.mesh.primSets[i];
            sets.AddRow({i == 0 ? name : "", Name(primSet.shader), Count(mesh.indexCounts[i] / 3),
                         std::to_string(primSet.firstVertex), std::to_string(primSet.vertexCount)});
        }
        for (const ra::SkinnedTransformRecord& transform : mesh.mesh.skinnedTransforms)
            skins.AddRow({&transform == &mesh.mesh.skinnedTransforms.front() ? name : "", Name(transform.bone),
                          std::to_string(transform.index)});
        if (mesh.mesh.minDetail != 0 || !mesh.mesh.childSelection)
            details.AddRow({name, std::to_string(mesh.mesh.minDetail), mesh.mesh.childSelection ? "yes" : "no"});
    }
    meshes.Print(out, s_Indent);
    PrintHeading(out, "primitive sets");
    sets.Print(out, s_Indent);
    std::string skinText;
    skins.Print(skinText, s_Indent);
    if (!skinText.empty())
        out += "\nskinned transforms\n" + skinText;
    std::string detailText;
    details.Print(detailText, s_Indent);
    if (!detailText.empty())
        out += "\ndetail and selection, where they aren't the default\n" + detailText;
}

void PrintMarkers(std::string& out, const ModelContent& content) {
    if (content.markers.empty())
        return;
    PrintHeading(out, Count(content.markers.size(), "marker", "markers"));
    TextTable table({{"marker"}, {"parent bone"}, {"position"}});
    for (const Marker& marker : content.markers)
        table.AddRow({Name(marker.name.GetTextOrEmpty()),
                      marker.m_parentName.IsValid() ? Name(marker.m_parentName.GetText()) : "-",
                      Vector(marker.m_transform[3])});
    table.Print(out, s_Indent);
}

void PrintCameras(std::string& out, const ModelContent& content) {
    if (content.cameras.empty())
        return;
    PrintHeading(out, Count(content.cameras.size(), "camera", "cameras"));
    TextTable table({{"camera"}, {"position"}, {"target"}, {"field of view"}, {"near", Right}, {"far", Right}});
    for (const CameraDef& camera : content.cameras)
        table.AddRow({Name(camera.name.GetTextOrEmpty()), Vector(camera.position), Vector(camera.target),
                      Number(static_cast<double>(camera.fieldOfView) * s_DegreesPerRadian, 2) + " degrees",
                      Number(static_cast<double>(camera.nearClip)), Number(static_cast<double>(camera.farClip))});
    table.Print(out, s_Indent);
}

void PrintAnimations(std::string& out, const ModelContent& content) {
    if (content.animations.empty())
        return;
    PrintHeading(out, Count(content.animations.size(), "animation", "animations"));
    TextTable table({{"animation"}, {"version", Right}, {"bytes", Right}});
    for (const AnimationContent& animation : content.animations)
        table.AddRow({Name(animation.name), std::to_string(animation.version), Count(animation.size)});
    table.Print(out, s_Indent);
}

void PrintUndecoded(std::string& out, const ModelContent& content) {
    if (content.undecoded.empty())
        return;
    PrintHeading(out, "not decoded");
    for (const auto& [id, count] : content.undecoded)
        out += std::string(s_Indent, ' ') + TextFormat::Code(id) + ": " + Count(count, "chunk", "chunks") + '\n';
}

} // namespace

void PrintModel(std::string& out, const ModelContent& content) {
    uint64_t vertices = 0;
    uint64_t triangles = 0;
    for (const MeshContent& mesh : content.meshes) {
        vertices += mesh.mesh.vertexCount;
        triangles += CountTriangles(mesh);
    }
    out += "model \"" + Name(content.name) + "\", " + (content.isGeneric ? "generic" : "intermediate") + ": " +
           Count(content.meshes.size(), "mesh", "meshes") + ", " + Count(vertices, "vertex", "vertices") + ", " +
           Count(triangles, "triangle", "triangles") + '\n';
    PrintShaders(out, content);
    PrintSkeleton(out, content);
    PrintMeshes(out, content);
    PrintMarkers(out, content);
    PrintCameras(out, content);
    PrintAnimations(out, content);
    PrintUndecoded(out, content);
}
