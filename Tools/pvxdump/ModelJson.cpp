#include "Tools/pvxdump/ModelJson.h"

#include <cstring>

#include "Shared/Cross/RenderAnim/VertexWeight.h"
#include "Tools/pvxdump/AnimJson.h"
#include "Tools/pvxdump/JsonValues.h"
#include "Tools/pvxdump/ModelNames.h"
#include "Tools/pvxdump/TextFormat.h"

namespace {

using nlohmann::json;

json ToJson(Colour colour) { return {{"r", colour.r}, {"g", colour.g}, {"b", colour.b}, {"a", colour.a}}; }

json ToJson(const TextureContent& texture) {
    json out = {{"name", texture.name},
                {"level", texture.isFinal ? "final" : "generic"},
                {"type", GetTextureTypeName(GuessFormat(texture.imageType))},
                {"imageType", static_cast<uint32_t>(texture.imageType)},
                {"width", texture.width},
                {"height", texture.height},
                {"mips", texture.levelCount},
                {"bytes", texture.size}};
    if (!texture.file.empty())
        out["file"] = texture.file;
    return out;
}

json ToJson(const ra::ChannelRecord& channel, uint32_t n) {
    return {{"channel", n},
            {"name", s_ChannelNames[n]},
            {"mode", channel.mode},
            {"colour", ToJson(channel.colour)},
            {"texture", channel.texture},
            {"tile", channel.tile},
            {"filter", channel.filter},
            {"texGen", channel.texGen},
            {"matrix", ValueToJson(channel.matrix)},
            {"bakedMatrix", ValueToJson(channel.bakedMatrix)}};
}

json ToJson(const ra::ShaderRecord& shader) {
    json channels = json::array();
    for (uint32_t n = 0; n < ChannelCount; ++n)
        channels.push_back(ToJson(shader.channels[n], n));
    return {{"name", shader.name},
            {"blendSource", shader.blendSource},
            {"blendDestination", shader.blendDestination},
            {"alphaReference", shader.alphaReference},
            {"alphaFunction", shader.alphaFunction},
            {"twoSided", shader.twoSided},
            {"channels", channels}};
}

json ToJson(const ModelContent& content, const BoneContent& bone) {
    json out = {{"name", bone.name}, {"parent", bone.parent}, {"parentName", GetBoneName(content, bone.parent)}};
    if (content.level == DataLevel::Intermediate) {
        out["transform"] = ValueToJson(bone.transform);
    } else {
        out["position"] = ValueToJson(bone.position);
        out["rotation"] = ValueToJson(bone.rotation);
    }
    return out;
}

// One list of floats for each vertex.
json ArrayToJson(std::span<const std::byte> array, uint32_t vertexCount, size_t floats, size_t stride) {
    json values = json::array();
    for (uint32_t i = 0; i < vertexCount && !array.empty(); ++i) {
        float vertex[4];
        std::memcpy(vertex, array.data() + stride * i, floats * sizeof(float));
        values.push_back(FloatsToJson(vertex, floats));
    }
    return values;
}

json BoneIndicesToJson(std::span<const std::byte> array, uint32_t vertexCount) {
    json values = json::array();
    for (uint32_t i = 0; i < vertexCount && !array.empty(); ++i) {
        VertexWeight weight;
        std::memcpy(&weight, array.data() + sizeof(weight) * i, sizeof(weight));
        values.push_back(weight.bone);
    }
    return values;
}

void AddVertices(json& out, const ra::VertexRecord& level) {
    const uint32_t count = level.count;
    out["positions"] = ArrayToJson(level.arrays[gz::VC_Position], count, 3, 12);
    out["normals"] = ArrayToJson(level.arrays[gz::VC_Normal], count, 3, 12);
    out["texcoords"] = ArrayToJson(level.arrays[gz::VC_TexCoord0], count, 2, 8);
    out["weights"] = ArrayToJson(level.arrays[gz::VC_Weights], count, 3, sizeof(VertexWeight));
    out["boneIndices"] = BoneIndicesToJson(level.arrays[gz::VC_Weights], count);
}

json PrimSetsToJson(const MeshContent& mesh, uint32_t level, bool withVertices) {
    json sets = json::array();
    for (size_t i = 0; i < mesh.pMesh->primSets.size(); ++i) {
        const ra::PrimSetRecord& primSet = mesh.pMesh->primSets[i];
        const ra::TriangleRecord& triangles = primSet.levels[level];
        json set = {{"shader", primSet.shader},
                    {"indexCount", mesh.indexCounts[i][level]},
                    {"triangleCount", mesh.indexCounts[i][level] / 3},
                    {"firstVertex", triangles.firstVertex},
                    {"vertexCount", triangles.vertexCount}};
        if (withVertices)
            set["indices"] = triangles.indices;
        sets.push_back(std::move(set));
    }
    return sets;
}

void AddLevel(json& out, const MeshContent& mesh, uint32_t level, bool withVertices) {
    const ra::VertexRecord& vertices = mesh.pMesh->levels[level];
    json components = json::array();
    for (uint32_t i = 0; i < gz::VC_Count; ++i)
        if ((vertices.components >> i & 1) != 0)
            components.push_back(s_ComponentNames[i]);
    out["vertexCount"] = vertices.count;
    out["triangleCount"] = CountTriangles(mesh, level);
    out["componentMask"] = vertices.components;
    out["components"] = components;
    out["primitiveSets"] = PrimSetsToJson(mesh, level, withVertices);
    if (withVertices)
        AddVertices(out, vertices);
}

json ToJson(const ModelContent& content, const MeshContent& mesh, bool withVertices) {
    json out = {{"name", mesh.entry.name},
                {"xrefModel", mesh.entry.xrefModel},
                {"parentBone", mesh.entry.parentBone},
                {"parentBoneName", GetBoneName(content, mesh.entry.parentBone)}};
    if (!mesh.isLocal)
        return out;
    json transforms = json::array();
    for (const ra::SkinnedTransformRecord& transform : mesh.pMesh->skinnedTransforms)
        transforms.push_back({{"bone", transform.bone}, {"index", transform.index}});
    out["minDetail"] = mesh.pMesh->minDetail;
    out["childSelection"] = mesh.pMesh->childSelection;
    out["polygonsHigh"] = mesh.pMesh->polyCountHigh;
    out["polygonsLow"] = mesh.pMesh->polyCountLow;
    out["bounds"] = ValueToJson(mesh.pMesh->boundVolume);
    out["skinnedTransforms"] = transforms;
    AddLevel(out, mesh, ra::Mesh::Poly_High, withVertices);
    if (GetLowLevel(mesh).count > 0)
        AddLevel(out["lowLevel"], mesh, ra::Mesh::Poly_Low, withVertices);
    return out;
}

json ToJson(const Marker& marker) {
    return {{"name", marker.name.GetTextOrEmpty()},
            {"parentName", marker.m_parentName.GetTextOrEmpty()},
            {"transform", ValueToJson(marker.m_transform)}};
}

json ToJson(const CameraDef& camera) {
    return {{"name", camera.name.GetTextOrEmpty()},
            {"position", ValueToJson(camera.position)},
            {"rotation", ValueToJson(camera.rotation)},
            {"fov", camera.fieldOfView},
            {"near", camera.nearClip},
            {"far", camera.farClip},
            {"target", ValueToJson(camera.target)}};
}

template <class T>
json ListToJson(const std::vector<T>& items) {
    json list = json::array();
    for (const T& item : items)
        list.push_back(ToJson(item));
    return list;
}

} // namespace

json UndecodedToJson(const UndecodedChunks& chunks) {
    json undecoded = json::object();
    for (const auto& [id, count] : chunks)
        undecoded[TextFormat::Code(id)] = count;
    return undecoded;
}

json TextureFileToJson(const TextureContent& texture) {
    json out = ToJson(texture);
    out["kind"] = "texture";
    return out;
}

nlohmann::json ToJson(const ModelContent& content, bool withVertices, bool withKeys) {
    json bones = json::array();
    for (const BoneContent& bone : content.bones)
        bones.push_back(ToJson(content, bone));
    json meshes = json::array();
    for (const MeshContent& mesh : content.meshes)
        meshes.push_back(ToJson(content, mesh, withVertices));
    json animations = json::array();
    for (const AnimationContent& animation : content.animations)
        animations.push_back(ToJson(animation, withKeys));
    return {{"kind", "model"},
            {"level", GetText(content.level)},
            {"name", content.name},
            {"version", content.version},
            {"textures", ListToJson(content.textures)},
            {"shaders", ListToJson(content.shaders)},
            {"sharedShaders", content.sharedShaders},
            {"skeleton", content.hasSkeleton ? json{{"bones", bones}} : json()},
            {"meshes", meshes},
            {"bounds", ValueToJson(content.boundVolume)},
            {"markers", ListToJson(content.markers)},
            {"cameras", ListToJson(content.cameras)},
            {"animations", animations},
            {"undecoded", UndecodedToJson(content.undecoded)}};
}

nlohmann::json ShaderFileToJson(const ModelContent& content) {
    return {{"kind", "shared shader"},
            {"name", content.name},
            {"version", content.version},
            {"textures", ListToJson(content.textures)},
            {"shaders", ListToJson(content.shaders)},
            {"sharedShaders", content.sharedShaders},
            {"undecoded", UndecodedToJson(content.undecoded)}};
}
