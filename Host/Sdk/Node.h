#pragma once

#include "Host/Sdk/Matrix3.h"
#include "Host/Sdk/Object.h"

#include <string>

class Control;
class Mtl;

// A node of the scene. The scene owns all nodes; pointers are good as long as the scene is.
class INode {
public:
    virtual ~INode();

    // Never null.
    virtual const char* GetName() const = 0;
    virtual COLORREF GetWireColor() const = 0;

    virtual bool IsRootNode() const = 0;
    // Null for the root.
    virtual INode* GetParentNode() const = 0;
    virtual int NumberOfChildren() const = 0;
    // In the host's order; null outside 0..NumberOfChildren()-1.
    virtual INode* GetChildNode(int index) const = 0;

    // World space at a time. The node's own transformation; the object's, which has the object offset in it; and the
    // object's after space warps.
    virtual Matrix3 GetNodeTM(TimeValue t, Interval* pValid = nullptr) = 0;
    virtual Matrix3 GetObjectTM(TimeValue t, Interval* pValid = nullptr) = 0;
    virtual Matrix3 GetObjTMAfterWSM(TimeValue t, Interval* pValid = nullptr) = 0;

    virtual ObjectState EvalWorldState(TimeValue t, bool evalHidden = true) = 0;
    // The object at the top of the node's reference, before evaluation; null when there is none.
    virtual Object* GetObjectRef() const = 0;

    // True when the node takes part in rendering.
    virtual bool Renderable() const = 0;
    // True when the user has switched the node's bone behaviour on.
    virtual bool GetBoneNodeOnOff() const = 0;

    // What the node looks at, or null; and its transformation, stored in `m`: false, and `m` as it was, without one.
    virtual INode* GetTarget() const = 0;
    virtual bool GetTargetTM(TimeValue t, Matrix3& m) = 0;

    virtual Control* GetTMController() const = 0;
    // 1 is visible.
    virtual float GetVisibility(TimeValue t, Interval* pValid = nullptr) const = 0;
    // Null when the node has no material.
    virtual Mtl* GetMtl() const = 0;

    // The user properties; keys are compared without regard to case. A getter answers false, and leaves `out` as it
    // was, when the key is missing; the integer one also when the value doesn't begin with a number.
    virtual bool UserPropExists(const char* pKey) const = 0;
    virtual bool GetUserPropString(const char* pKey, std::string& out) const = 0;
    virtual bool GetUserPropInt(const char* pKey, int& out) const = 0;
};
