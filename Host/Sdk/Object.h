#pragma once

#include "Host/Sdk/Animatable.h"

class INode;
class Mesh;
class View;

// What stands at a node: geometry, camera, light, helper. Several nodes may share one.
class Object : public Animatable {
public:
    ~Object() override;
};

// The result of evaluating a node.
struct ObjectState {
    Object* obj = nullptr; // owned by the scene; null when the node has no object
};

// An object with a surface; every object whose super class is GEOMOBJECT_CLASS_ID is one.
class GeomObject : public Object {
public:
    ~GeomObject() override;
    SClass_ID SuperClassID() const override;

    // The mesh as rendered at `t`, in object space. Null: there is none. With `needDelete` set the caller owns it and
    // frees it by DeleteThis; otherwise it belongs to the object, and is good until the object is asked again.
    virtual Mesh* GetRenderMesh(TimeValue t, INode* pNode, View& view, bool& needDelete) = 0;
};

class Modifier : public Animatable {
public:
    ~Modifier() override;
    SClass_ID SuperClassID() const override;
};

// An object with a stack of modifiers; every object whose super class is GEN_DERIVOB_CLASS_ID is one.
class IDerivedObject : public Object {
public:
    ~IDerivedObject() override;
    SClass_ID SuperClassID() const override;

    virtual int NumModifiers() const = 0;
    // The topmost first. Null outside 0..NumModifiers()-1.
    virtual Modifier* GetModifier(int index) const = 0;
    // The object underneath, which may be derived itself.
    virtual Object* GetObjRef() const = 0;
};

// An object that is taken from another scene file.
class XRefObject : public Object {
public:
    ~XRefObject() override;
    SClass_ID SuperClassID() const override;
    Class_ID ClassID() const override;

    // The scene file that the object comes from. `resolve` asks for the place where it was found instead of the name
    // that the scene holds. The text lives as long as the object.
    virtual const char* GetFileName(bool resolve) const = 0;
};

// The object of a camera node. The camera looks along its own -Z.
class GenCamera : public Object {
public:
    ~GenCamera() override;
    SClass_ID SuperClassID() const override;

    // Distance of the target along the view axis. UpdateTargDistance, called first, brings it up to date.
    virtual float GetTDist(TimeValue t, Interval* pValid = nullptr) const = 0;
    virtual void UpdateTargDistance(TimeValue t, INode* pNode) = 0;

    // Field of view in radians.
    virtual float GetFOV(TimeValue t, Interval* pValid = nullptr) const = 0;

    // True when the clip planes are set by hand. `which`: 1 the near one, 2 the far one.
    virtual bool GetManualClip() const = 0;
    virtual float GetClipDist(TimeValue t, int which, Interval* pValid = nullptr) const = 0;
};

inline constexpr int CAM_HITHER_CLIP = 1;
inline constexpr int CAM_YON_CLIP = 2;
