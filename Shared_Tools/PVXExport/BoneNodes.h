#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <glm/mat4x3.hpp>

class INode;

struct BoneNode {
    INode* pNode = nullptr;
    std::string name;    // unique, case aside
    int32_t parent = -1; // index of the nearest ancestor that is in the list, -1 for none
    bool visible = true;
    glm::mat4x3 transform{1.0f}; // in the world, in the game's axes
};

// The bones of a scene, parents ahead of their children. Nodes and names are found without going through the list,
// since each vertex of a skin asks.
class BoneNodes {
public:
    // Returns the new bone's index. The bone gets the node's name, with "(2)", "(3)" and so on behind it when the name
    // is taken.
    int32_t Add(INode* pNode, int32_t parent, bool visible, const glm::mat4x3& transform);
    int32_t Find(const INode* pNode) const; // -1 when the node isn't in the list
    void Clear();

    bool empty() const { return m_Bones.empty(); }
    size_t size() const { return m_Bones.size(); }
    const BoneNode& operator[](size_t index) const { return m_Bones[index]; }
    auto begin() const { return m_Bones.begin(); }
    auto end() const { return m_Bones.end(); }

private:
    std::string MakeUniqueName(std::string_view name);

    std::vector<BoneNode> m_Bones;
    // Only ever looked up.
    std::unordered_map<const INode*, int32_t> m_IndexOfNode;
    std::unordered_map<std::string, int> m_LastNumber; // by taken name in lower case: the last number tried behind it
};
