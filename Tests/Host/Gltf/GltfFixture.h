#pragma once

#include "Host/Gltf/Loader.h"
#include "Host/Scene/Scene.h"
#include "Host/Sdk/Mesh.h"
#include "Host/Sdk/View.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

// Writes glTF files into a folder of the test's own and loads them.
class GltfFixture : public testing::Test {
protected:
    // The members of the file, as JSON texts; a list's items are separated by commas already. Empty ones are left out.
    struct Lists {
        std::string nodes = {};
        std::string meshes = {};
        std::string materials = {};
        std::string skins = {};
        std::string animations = {};
        std::string cameras = {};
        std::string scenes = {};
        std::string more = {}; // other members: "\"scene\": 1"
    };

    // Adds elements to the buffer and gives the accessor that reads them.
    template <typename T>
    int Add(const std::vector<T>& values, int componentType, const std::string& type, size_t count,
            const std::string& more = "") {
        const size_t offset = m_Buffer.size();
        m_Buffer.resize(offset + (values.size() * sizeof(T) + 3) / 4 * 4);
        std::memcpy(m_Buffer.data() + offset, values.data(), values.size() * sizeof(T));
        const int view = AddView(offset, values.size() * sizeof(T));
        return AddAccessor("{\"bufferView\":" + std::to_string(view) +
                           ",\"componentType\":" + std::to_string(componentType) +
                           ",\"count\":" + std::to_string(count) + ",\"type\":\"" + type + "\"" + more + "}");
    }
    int AddFloats(const std::vector<float>& values, const std::string& type) {
        const size_t components = type == "SCALAR" ? 1 : type == "MAT4" ? 16 : static_cast<size_t>(type[3] - '0');
        return Add(values, 5126, type, values.size() / components);
    }
    int AddIndices(const std::vector<uint16_t>& values) { return Add(values, 5123, "SCALAR", values.size()); }
    int AddView(size_t offset, size_t length, const std::string& more = "") {
        Append(m_Views, "{\"buffer\":0,\"byteOffset\":" + std::to_string(offset) +
                            ",\"byteLength\":" + std::to_string(length) + more + "}");
        return m_ViewCount++;
    }
    int AddAccessor(const std::string& json) {
        Append(m_Accessors, json);
        return m_AccessorCount++;
    }

    // A primitive of these attributes, given as `"POSITION":0,...`; `indices` below 0 for none.
    static std::string Primitive(const std::string& attributes, int indices = -1, const std::string& more = "") {
        return "{\"attributes\":{" + attributes + "}" + (indices < 0 ? "" : ",\"indices\":" + std::to_string(indices)) +
               more + "}";
    }
    static std::string MeshOf(const std::string& primitives, const std::string& more = "") {
        return "{\"primitives\":[" + primitives + "]" + more + "}";
    }
    // One triangle in the file's XY plane.
    std::string TriangleMesh() {
        const int positions = AddFloats({0, 0, 0, 1, 0, 0, 0, 1, 0}, "VEC3");
        return MeshOf(Primitive("\"POSITION\":" + std::to_string(positions)));
    }

    std::string MakeText(const Lists& lists) const {
        std::string text = "{\"asset\":{\"version\":\"2.0\"}";
        AppendList(text, "nodes", lists.nodes);
        AppendList(text, "meshes", lists.meshes);
        AppendList(text, "materials", lists.materials);
        AppendList(text, "skins", lists.skins);
        AppendList(text, "animations", lists.animations);
        AppendList(text, "cameras", lists.cameras);
        AppendList(text, "scenes", lists.scenes);
        AppendList(text, "accessors", m_Accessors);
        AppendList(text, "bufferViews", m_Views);
        if (!lists.more.empty())
            text += "," + lists.more;
        return text + "}";
    }
    // The binary form, with the buffer as its second chunk.
    std::string MakeGlb(const Lists& lists) const {
        Lists withBuffer = lists;
        withBuffer.more += (lists.more.empty() ? "" : ",") + BufferList("");
        std::string json = MakeText(withBuffer);
        json.resize((json.size() + 3) / 4 * 4, ' ');
        const std::string content =
            Word(json.size()) + "JSON" + json +
            (m_Buffer.empty() ? "" : Word(m_Buffer.size()) + std::string("BIN\0", 4) + m_Buffer);
        return "glTF" + Word(2) + Word(12 + content.size()) + content;
    }
    std::string BufferList(const std::string& uri) const {
        return m_Buffer.empty() ? "\"extras\":{}"
                                : "\"buffers\":[{\"byteLength\":" + std::to_string(m_Buffer.size()) +
                                      (uri.empty() ? "" : ",\"uri\":\"" + uri + "\"") + "}]";
    }

    static std::string Word(size_t value) {
        const auto word = static_cast<uint32_t>(value);
        return {reinterpret_cast<const char*>(&word), sizeof word};
    }

    void Write(const std::string& name, const std::string& content) const { m_Temp.Write(name, content); }
    std::string At(const std::string& name) const { return m_Temp.Path(name); }

    scene::Scene& LoadFile(const std::string& name) {
        m_Warnings.clear();
        m_pScene = gltf::Load(At(name), m_Options, [this](const std::string& line) { m_Warnings.push_back(line); });
        return *m_pScene;
    }
    scene::Scene& Load(const Lists& lists) {
        Write("scene.glb", MakeGlb(lists));
        return LoadFile("scene.glb");
    }
    // The text of the fault that loading ends in; empty when it doesn't.
    std::string FaultOfFile(const std::string& name) {
        try {
            LoadFile(name);
        } catch (const gltf::LoadError& error) {
            return error.what();
        }
        return "";
    }
    std::string FaultOf(const Lists& lists) {
        Write("scene.glb", MakeGlb(lists));
        return FaultOfFile("scene.glb");
    }

    scene::Node& Find(const std::string& name) {
        scene::Node* pNode = m_pScene->FindNode(name);
        if (!pNode)
            throw std::runtime_error("no node " + name);
        return *pNode;
    }
    static std::string ClassOf(INode& node) {
        std::string name = "none";
        if (Object* pObject = node.EvalWorldState(0).obj)
            pObject->GetClassName(name);
        return name;
    }
    static Class_ID ClassIdOf(INode& node) { return node.EvalWorldState(0).obj->ClassID(); }

    class AnyView : public View {
    public:
        Point2 ViewToScreen(Point3 point) override { return {point.x, point.y}; }
    };
    static std::unique_ptr<Mesh> MeshAt(INode& node, TimeValue t = 0) {
        AnyView view;
        bool needDelete = false;
        Object* pObject = node.EvalWorldState(t).obj;
        if (!pObject || pObject->SuperClassID() != GEOMOBJECT_CLASS_ID)
            return nullptr;
        Mesh* pMesh = static_cast<GeomObject*>(pObject)->GetRenderMesh(t, &node, view, needDelete);
        return needDelete ? std::unique_ptr<Mesh>(pMesh) : std::make_unique<Mesh>(*pMesh);
    }

    TempFolder m_Temp;
    const std::filesystem::path m_Folder{m_Temp.Native()};
    gltf::LoadOptions m_Options;
    std::unique_ptr<scene::Scene> m_pScene;
    std::vector<std::string> m_Warnings;
    std::string m_Buffer;

private:
    static void Append(std::string& list, const std::string& item) { list += (list.empty() ? "" : ",") + item; }
    static void AppendList(std::string& text, const char* pName, const std::string& items) {
        if (!items.empty())
            text += std::string(",\"") + pName + "\":[" + items + "]";
    }

    std::string m_Views;
    std::string m_Accessors;
    int m_ViewCount = 0;
    int m_AccessorCount = 0;
};
