#pragma once

class RenderModel;

// The animations of one model.
class AnimList {
public:
    // The model owns the list.
    explicit AnimList(RenderModel& model) : m_Model(model) {}
    virtual ~AnimList() = default;
    AnimList(const AnimList&) = delete;
    AnimList& operator=(const AnimList&) = delete;

    RenderModel& GetModel() const { return m_Model; }

private:
    RenderModel& m_Model;
};
