#pragma once

#include "Host/Sdk/Matrix3.h"

// The view that a mesh is rendered for. GetRenderMesh wants one; objects without a view-dependent mesh ignore it.
class View {
public:
    virtual ~View();

    virtual Point2 ViewToScreen(Point3 point) = 0;

    Matrix3 worldToView = IdentityMatrix();
    float screenW = 0.0f;
    float screenH = 0.0f;
};
