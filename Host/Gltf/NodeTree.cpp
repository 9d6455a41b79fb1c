#include "Host/Gltf/NodeTree.h"

#include <algorithm>

namespace gltf {

namespace {

constexpr std::string_view s_LightExtension = "KHR_lights_punctual";

const Json* FindLights(const SceneFile& file) {
    const Json* pExtensions = FindObject({}, file.GetRoot(), "extensions");
    const Json* pExtension = pExtensions ? FindMember(*pExtensions, s_LightExtension) : nullptr;
    return pExtension ? FindArray({}, *pExtension, "lights") : nullptr;
}

class TreeReader {
public:
    TreeReader(const SceneFile& file, UniqueNames& names) : m_File(file), m_Names(names) {}

    NodeTree Read() {
        ReadNodes();
        LinkParents();
        CheckCycles();
        ReadSkins();
        MarkMoved();
        ChooseScene();
        LoadJoints();
        MakeOrder();
        return std::move(m_Tree);
    }

private:
    void ReadNodes();
    void LinkParents();
    void CheckCycles();
    void ReadSkins();
    void MarkMoved();
    void ChooseScene();
    void LoadJoints();
    void MakeOrder();

    std::string_view NameOf(std::string_view list, int32_t index) const;
    // Marks a node and all below it.
    void LoadSubtree(uint32_t root);
    void LoadWithAncestors(uint32_t node);
    void MarkLoaded(uint32_t node) {
        m_Tree.nodes[node].isLoaded = true;
        m_Loaded.push_back(node);
    }

    const SceneFile& m_File;
    UniqueNames& m_Names;
    NodeTree m_Tree;
    std::vector<uint32_t> m_Roots;              // to be loaded, in order
    std::vector<uint32_t> m_Loaded;             // as they were marked
    std::vector<std::vector<uint32_t>> m_Skins; // joints
};

std::string_view TreeReader::NameOf(std::string_view list, int32_t index) const {
    if (index < 0)
        return {};
    const Json& named = (*FindMember(m_File.GetRoot(), list))[static_cast<rapidjson::SizeType>(index)];
    return ReadString({.kind = list, .index = static_cast<size_t>(index)}, named, "name");
}

void TreeReader::ReadNodes() {
    const Json* pNodes = FindArray({}, m_File.GetRoot(), "nodes");
    if (!pNodes)
        return;
    const size_t meshCount = m_File.CountOf("meshes");
    const size_t skinCount = m_File.CountOf("skins");
    const size_t cameraCount = m_File.CountOf("cameras");
    const Json* pLights = FindLights(m_File);
    m_Tree.nodes.reserve(pNodes->Size());
    for (const Json& json : pNodes->GetArray()) {
        Place place{.kind = "node", .index = m_Tree.nodes.size()};
        std::string_view name = ReadString(place, json, "name");
        place.name = name;
        NodeRecord node{.pJson = &json};
        node.mesh = ReadIndex(place, json, "mesh", meshCount);
        node.skin = ReadIndex(place, json, "skin", skinCount);
        node.camera = ReadIndex(place, json, "camera", cameraCount);
        const Json* pExtensions = FindObject(place, json, "extensions");
        const Json* pLight = pExtensions ? FindMember(*pExtensions, s_LightExtension) : nullptr;
        if (pLight)
            node.light = ReadIndex(place, *pLight, "light", pLights ? pLights->Size() : 0);
        if (name.empty())
            name = NameOf("meshes", node.mesh);
        if (name.empty())
            name = NameOf("cameras", node.camera);
        if (name.empty() && node.light >= 0)
            name = ReadString({.kind = "light"}, GetLight(m_File, node.light), "name");
        node.name = m_Names.Make(name, "Node");
        m_Tree.nodes.push_back(std::move(node));
    }
}

void TreeReader::LinkParents() {
    for (uint32_t i = 0; i < m_Tree.nodes.size(); ++i) {
        const Json* pChildren = FindArray(m_Tree.GetPlace(i), *m_Tree.nodes[i].pJson, "children");
        if (!pChildren)
            continue;
        for (const Json& value : pChildren->GetArray()) {
            const auto child =
                static_cast<uint32_t>(ToIndex(m_Tree.GetPlace(i), value, "children", m_Tree.nodes.size()));
            NodeRecord& record = m_Tree.nodes[child];
            if (record.parent >= 0)
                FailDamaged(m_Tree.GetPlace(child), "it is a child of both " +
                                                        Quoted(m_Tree.nodes[static_cast<size_t>(record.parent)].name) +
                                                        " and " + Quoted(m_Tree.nodes[i].name));
            record.parent = static_cast<int32_t>(i);
            m_Tree.nodes[i].children.push_back(child);
        }
    }
}

// Since no node has two parents, a node that can't be reached from one without a parent hangs on a ring.
void TreeReader::CheckCycles() {
    std::vector<bool> reached(m_Tree.nodes.size(), false);
    std::vector<uint32_t> open;
    for (uint32_t i = 0; i < m_Tree.nodes.size(); ++i)
        if (m_Tree.nodes[i].parent < 0)
            open.push_back(i);
    while (!open.empty()) {
        const uint32_t node = open.back();
        open.pop_back();
        reached[node] = true;
        open.insert(open.end(), m_Tree.nodes[node].children.begin(), m_Tree.nodes[node].children.end());
    }
    const auto ring = std::ranges::find(reached, false);
    if (ring != reached.end())
        FailDamaged(m_Tree.GetPlace(static_cast<size_t>(ring - reached.begin())), "it is among its own ancestors");
}

void TreeReader::ReadSkins() {
    const Json* pSkins = FindArray({}, m_File.GetRoot(), "skins");
    if (!pSkins)
        return;
    for (const Json& skin : pSkins->GetArray()) {
        const Place place{.kind = "skin", .index = m_Skins.size()};
        std::vector<uint32_t> joints;
        const Json* pJoints = FindArray(place, skin, "joints");
        if (!pJoints || pJoints->Empty())
            FailDamaged(place, "it has no joints");
        for (const Json& joint : pJoints->GetArray())
            joints.push_back(static_cast<uint32_t>(ToIndex(place, joint, "joints", m_Tree.nodes.size())));
        for (const uint32_t joint : joints)
            m_Tree.nodes[joint].isJoint = true;
        m_Skins.push_back(std::move(joints));
    }
}

void TreeReader::MarkMoved() {
    const Json* pAnimations = FindArray({}, m_File.GetRoot(), "animations");
    if (!pAnimations)
        return;
    std::vector<uint32_t> open;
    for (rapidjson::SizeType i = 0; i < pAnimations->Size(); ++i) {
        const Place place{.kind = "animation", .index = i};
        const Json* pChannels = FindArray(place, (*pAnimations)[i], "channels");
        for (rapidjson::SizeType k = 0; pChannels && k < pChannels->Size(); ++k) {
            const Json* pTarget = FindObject(place, (*pChannels)[k], "target");
            const int32_t node = pTarget ? ReadIndex(place, *pTarget, "node", m_Tree.nodes.size()) : -1;
            // Morph weights move no node.
            if (node >= 0 && ReadString(place, *pTarget, "path") != "weights")
                open.push_back(static_cast<uint32_t>(node));
        }
    }
    while (!open.empty()) {
        NodeRecord& node = m_Tree.nodes[open.back()];
        open.pop_back();
        if (!node.isMoved)
            open.insert(open.end(), node.children.begin(), node.children.end());
        node.isMoved = true;
    }
}

void TreeReader::LoadSubtree(uint32_t root) {
    std::vector<uint32_t> open{root};
    while (!open.empty()) {
        const uint32_t node = open.back();
        open.pop_back();
        if (m_Tree.nodes[node].isLoaded)
            continue;
        MarkLoaded(node);
        open.insert(open.end(), m_Tree.nodes[node].children.begin(), m_Tree.nodes[node].children.end());
    }
}

void TreeReader::ChooseScene() {
    const Json* pScenes = FindArray({}, m_File.GetRoot(), "scenes");
    const int32_t given = ReadIndex({}, m_File.GetRoot(), "scene", pScenes ? pScenes->Size() : 0);
    if (!pScenes || pScenes->Empty()) {
        for (uint32_t i = 0; i < m_Tree.nodes.size(); ++i)
            if (m_Tree.nodes[i].parent < 0)
                m_Roots.push_back(i);
    } else {
        const auto index = static_cast<rapidjson::SizeType>(std::max(given, 0));
        m_Tree.pScene = &(*pScenes)[index];
        const Place place{.kind = "scene", .index = index, .name = NameOf("scenes", static_cast<int32_t>(index))};
        const Json* pRoots = FindArray(place, *m_Tree.pScene, "nodes");
        for (rapidjson::SizeType i = 0; pRoots && i < pRoots->Size(); ++i) {
            const auto root = static_cast<uint32_t>(ToIndex(place, (*pRoots)[i], "nodes", m_Tree.nodes.size()));
            const NodeRecord& node = m_Tree.nodes[root];
            if (node.parent >= 0)
                FailDamaged(m_Tree.GetPlace(root), "it is a root of the scene and a child of " +
                                                       Quoted(m_Tree.nodes[static_cast<size_t>(node.parent)].name));
            m_Roots.push_back(root);
        }
    }
    for (const uint32_t root : m_Roots)
        LoadSubtree(root);
}

// Only the chain up to the root, not what else hangs on it.
void TreeReader::LoadWithAncestors(uint32_t node) {
    while (!m_Tree.nodes[node].isLoaded) {
        MarkLoaded(node);
        if (m_Tree.nodes[node].parent < 0) {
            m_Roots.push_back(node);
            return;
        }
        node = static_cast<uint32_t>(m_Tree.nodes[node].parent);
    }
}

// A joint from outside the scene may carry a skinned mesh itself, so the list grows while it is gone through.
void TreeReader::LoadJoints() {
    std::vector<bool> used(m_Skins.size(), false);
    for (size_t i = 0; i < m_Loaded.size(); ++i) {
        const NodeRecord& node = m_Tree.nodes[m_Loaded[i]];
        const auto skin = static_cast<size_t>(node.skin);
        if (node.skin < 0 || node.mesh < 0 || used[skin])
            continue;
        used[skin] = true;
        for (const uint32_t joint : m_Skins[skin])
            LoadWithAncestors(joint);
    }
}

void TreeReader::MakeOrder() {
    std::vector<uint32_t> open(m_Roots.rbegin(), m_Roots.rend());
    std::vector<bool> listed(m_Tree.nodes.size(), false);
    while (!open.empty()) {
        const uint32_t node = open.back();
        open.pop_back();
        if (listed[node] || !m_Tree.nodes[node].isLoaded)
            continue;
        listed[node] = true;
        m_Tree.order.push_back(node);
        const std::vector<uint32_t>& children = m_Tree.nodes[node].children;
        open.insert(open.end(), children.rbegin(), children.rend());
    }
}

} // namespace

NodeTree ReadNodeTree(const SceneFile& file, UniqueNames& names) { return TreeReader(file, names).Read(); }

const Json& GetLight(const SceneFile& file, int32_t index) {
    return (*FindLights(file))[static_cast<rapidjson::SizeType>(index)];
}

} // namespace gltf
