#pragma once

#include "Host/Scene/Transform.h"
#include "Host/Sdk/Animatable.h"
#include "Host/Sdk/ClassIds.h"

#include <span>

namespace scene {

// What moves a node: its local transformation, relative to its parent, at any time.
class Controller : public Control {
public:
    // Few enough that a run of all nodes stays in the processor's cache.
    static constexpr size_t LongestRun = 8;

    // The class is what the node shows as its controller's; it says nothing about how the node moves.
    explicit Controller(Class_ID classId = PRS_CONTROL_CLASS_ID) : m_ClassId(classId) {}

    Class_ID ClassID() const override { return m_ClassId; }
    void SetClassID(Class_ID classId) { m_ClassId = classId; }
    void GetClassName(std::string& out) const override;

    // The same for the same time, always. Called once for each time that the scene is asked for, more or less.
    virtual Affine Evaluate(TimeValue t) const = 0;
    // At up to LongestRun times, which ascend: what Evaluate gives at each of them, in as many places. One after the
    // other, unless a kind of controller has something better.
    virtual void EvaluateRun(std::span<const TimeValue> times, Affine* pLocals) const;
    // False when Evaluate gives the same at all times. Such a node costs nothing in an animation.
    virtual bool IsAnimated() const = 0;

private:
    Class_ID m_ClassId;
};

// A node that stays where it is.
class RestController : public Controller {
public:
    using Controller::Controller;

    void SetLocal(const Affine& local) { m_Local = local; }
    const Affine& GetLocal() const { return m_Local; }

    Affine Evaluate(TimeValue) const override { return m_Local; }
    bool IsAnimated() const override { return false; }

private:
    Affine m_Local = IdentityAffine();
};

} // namespace scene
