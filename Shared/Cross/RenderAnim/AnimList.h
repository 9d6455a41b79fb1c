#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "Shared/Cross/RenderAnim/AnimListNode.h"

class RenderModel;

// The animations of one model.
class AnimList {
public:
    static constexpr int32_t InvalidIndex = -1;

    // The model owns the list.
    explicit AnimList(RenderModel& model) : m_Model(model) {}
    virtual ~AnimList() = default;
    AnimList(const AnimList&) = delete;
    AnimList& operator=(const AnimList&) = delete;

    RenderModel& GetModel() const { return m_Model; }

    uint32_t GetCount() const { return static_cast<uint32_t>(m_pAnimNodes.size()); }
    // Null past the end, which is the caller's mistake.
    AnimListNode* GetNode(uint32_t index) const;
    // The first animation whose name is spelled so; -1 without one.
    int32_t FindNode(const char* pName) const;
    // The node has its animation, and is made for as many bones as the model has. Fills the node's maps from the
    // model's skeleton, cameras and mesh group: an own animation has the skeleton's bones in their order, another's are
    // found by name.
    void AddNode(std::unique_ptr<AnimListNode> pNode);

    // Once model and list are complete: there is a mark for each shader from now on, and no memory to spare.
    void Finalise();

    // Whether any of the animations drives the model's shader of that index. False past the end.
    bool IsShaderAnimated(uint32_t shaderIndex) const {
        return shaderIndex < m_bShaderAnimated.size() && m_bShaderAnimated[shaderIndex];
    }
    uint32_t GetShaderMarkCount() const { return static_cast<uint32_t>(m_bShaderAnimated.size()); }

private:
    void MapBones(AnimListNode& node) const;
    void MapCameras(AnimListNode& node) const;
    void MapControls(AnimListNode& node);
    int32_t FindTarget(const Anim::ControlStream& control) const;

    RenderModel& m_Model;
    std::vector<std::unique_ptr<AnimListNode>> m_pAnimNodes;
    std::vector<bool> m_bShaderAnimated;                    // by the indices of the model's shaders
    std::unordered_map<std::string, int32_t> m_NodeIndices; // the first of each name; never walked
};
