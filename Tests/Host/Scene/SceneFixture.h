#pragma once

#include "Host/Scene/Build.h"
#include "Host/Sdk/Mesh.h"
#include "Host/Sdk/View.h"

#include <functional>
#include <memory>

// Short ways for tests that build scenes and look at them as a module does.

class TestView : public View {
public:
    Point2 ViewToScreen(Point3 point) override { return {point.x, point.y}; }
};

// The mesh of a node as a module gets it, freed as one does; null when the node has none.
inline std::unique_ptr<Mesh> GetMesh(INode& node, TimeValue t = 0) {
    Object* pObject = node.EvalWorldState(t).obj;
    if (!pObject || pObject->SuperClassID() != GEOMOBJECT_CLASS_ID)
        return nullptr;
    TestView view;
    bool needDelete = false;
    Mesh* pMesh = static_cast<GeomObject*>(pObject)->GetRenderMesh(t, &node, view, needDelete);
    if (!pMesh || needDelete)
        return std::unique_ptr<Mesh>(pMesh);
    return std::make_unique<Mesh>(*pMesh);
}

// Moves along X, by a function of the time.
class SlideController : public scene::Controller {
public:
    explicit SlideController(std::function<double(TimeValue)> x) : m_X(std::move(x)) {}

    scene::Affine Evaluate(TimeValue t) const override {
        ++m_Calls;
        scene::Affine local = scene::IdentityAffine();
        local[3].x = m_X(t);
        return local;
    }
    bool IsAnimated() const override { return true; }
    int GetCalls() const { return m_Calls; }

private:
    std::function<double(TimeValue)> m_X;
    mutable int m_Calls = 0;
};
