#pragma once

#include "Host/Scene/Track.h"
#include "Host/Sdk/ClassIds.h"
#include "Host/Sdk/Object.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace scene {

// Where the mesh of an object comes from. The scene holds sources, which may be compact; a mesh in its working form is
// made only when it is asked for, and thrown away by the one who asked.
class MeshSource {
public:
    virtual ~MeshSource();
    // A new mesh in object space, as it is at `t` without modifiers; null when there is none. May throw a standard
    // exception, which ends the export with its text.
    virtual std::unique_ptr<Mesh> Build(TimeValue t) const = 0;
};

// A mesh that is there already; every Build is a copy.
class ReadyMeshSource : public MeshSource {
public:
    explicit ReadyMeshSource(Mesh mesh);
    ~ReadyMeshSource() override;
    std::unique_ptr<Mesh> Build(TimeValue t) const override;

private:
    std::unique_ptr<const Mesh> m_pMesh;
};

enum class GeometryClass {
    Mesh,     // an editable mesh as it shows after evaluation
    EditMesh, // in its edit form
    Patch,
    Bone,
    Box,
};

// All objects with a surface. Without a source there is no mesh: a biped's box that nobody renders.
class GeometryObject : public GeomObject {
public:
    explicit GeometryObject(GeometryClass kind, std::unique_ptr<MeshSource> pSource = nullptr);

    Class_ID ClassID() const override;
    void GetClassName(std::string& out) const override;
    Mesh* GetRenderMesh(TimeValue t, INode* pNode, View& view, bool& needDelete) override;

    // For sources that can be made only after the object. Null for none.
    void SetSource(std::unique_ptr<MeshSource> pSource) { m_pSource = std::move(pSource); }

private:
    GeometryClass m_Class;
    std::unique_ptr<MeshSource> m_pSource;
};

enum class HelperClass { Dummy, Point };

class HelperObject : public Object {
public:
    explicit HelperObject(HelperClass kind) : m_Class(kind) {}
    SClass_ID SuperClassID() const override { return HELPER_CLASS_ID; }
    Class_ID ClassID() const override;
    void GetClassName(std::string& out) const override;

private:
    HelperClass m_Class;
};

enum class LightClass { Omni, Spot, Directional, FreeSpot, TargetDirectional };

class LightObject : public Object {
public:
    explicit LightObject(LightClass kind) : m_Class(kind) {}
    SClass_ID SuperClassID() const override { return LIGHT_CLASS_ID; }
    Class_ID ClassID() const override;
    void GetClassName(std::string& out) const override;

private:
    LightClass m_Class;
};

struct CameraSettings {
    bool hasTarget = false;             // a target camera; the node's target is the node's to hold
    FloatTrack fieldOfView = 0.785398f; // radians
    FloatTrack targetDistance = 1.0f;   // of a free camera, or of one whose node has no target
    bool manualClip = false;
    float nearClip = 0.0f;
    float farClip = 1000.0f;
};

class CameraObject : public GenCamera {
public:
    explicit CameraObject(CameraSettings settings) : m_Settings(std::move(settings)) {}
    Class_ID ClassID() const override;
    void GetClassName(std::string& out) const override;

    float GetTDist(TimeValue t, Interval* pValid = nullptr) const override;
    // A target camera takes the distance from the node to its target.
    void UpdateTargDistance(TimeValue t, INode* pNode) override;
    float GetFOV(TimeValue t, Interval* pValid = nullptr) const override;
    bool GetManualClip() const override { return m_Settings.manualClip; }
    float GetClipDist(TimeValue t, int which, Interval* pValid = nullptr) const override;

private:
    CameraSettings m_Settings;
    std::optional<float> m_MeasuredDistance;
};

// An object of another scene file, and what it is when it is evaluated.
class XRef : public XRefObject {
public:
    // The evaluated object is borrowed from the scene; null when the file's content isn't there.
    XRef(std::string fileName, Object* pObject) : m_FileName(std::move(fileName)), m_pObject(pObject) {}
    void GetClassName(std::string& out) const override;
    const char* GetFileName(bool resolve) const override;
    Object* GetObject() const { return m_pObject; }

private:
    std::string m_FileName;
    Object* m_pObject;
};

} // namespace scene
