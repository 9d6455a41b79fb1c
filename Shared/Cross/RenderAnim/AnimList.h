#pragma once

#include <cstdint>
#include <memory>
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
    // The node has its animation. It is bound to bones and cameras by the counts it was made for.
    void AddNode(std::unique_ptr<AnimListNode> pNode);

private:
    RenderModel& m_Model;
    std::vector<std::unique_ptr<AnimListNode>> m_pAnimNodes;
};
