#pragma once

#include "Host/Scene/Transform.h"
#include "Host/Sdk/Object.h"
#include "Host/Sdk/Skin.h"

#include <memory>
#include <span>
#include <vector>

namespace scene {

class Node;

// A modifier of the scene. Most change the evaluated mesh.
class MeshModifier : public Modifier {
public:
    // Changes the mesh as it comes from below. `pNode` is the node that it is evaluated for.
    virtual void Deform(Mesh& mesh, TimeValue t, INode* pNode) = 0;
};

// An object with modifiers over another object. Evaluated, it is an editable mesh, when the object underneath has a
// surface; otherwise the modifiers have nothing to change, and it is the object underneath.
class DerivedObject : public IDerivedObject {
public:
    // The base, never null, is borrowed from the scene.
    explicit DerivedObject(Object* pBase);
    ~DerivedObject() override;

    // Puts a modifier, borrowed from the scene, on top of the others.
    void AddModifier(MeshModifier& modifier);

    Class_ID ClassID() const override;
    void GetClassName(std::string& out) const override;
    int NumModifiers() const override { return static_cast<int>(m_Modifiers.size()); }
    Modifier* GetModifier(int index) const override;
    Object* GetObjRef() const override { return m_pBase; }

    // Null when there is nothing underneath but a reference without its object.
    Object* GetEvaluated() const;

private:
    class Result;

    Object* m_pBase;
    std::vector<MeshModifier*> m_Modifiers; // the lowest first
    std::unique_ptr<Result> m_pResult;      // null for a base without a surface
};

// The object that stands there after modifiers and external references; null for null.
Object* EvaluateObject(Object* pObject);

// The influences of bones on the points of one mesh.
struct SkinWeights {
    struct Influence {
        int bone = 0; // index in the modifier's bones
        float weight = 0.0f;
    };

    // The influences of point i are those from firsts[i] up to firsts[i + 1]: one entry more than there are points.
    std::vector<uint32_t> firsts = {0};
    std::vector<Influence> influences = {};

    size_t GetPointCount() const { return firsts.size() - 1; }
    std::span<const Influence> GetPoint(size_t point) const {
        return std::span(influences).subspan(firsts[point], firsts[point + 1] - firsts[point]);
    }
    // Adds the next point.
    void AddPoint(std::span<const Influence> point) {
        influences.insert(influences.end(), point.begin(), point.end());
        firsts.push_back(static_cast<uint32_t>(influences.size()));
    }
};

// Where the weights of a skin come from; compact like a MeshSource. The weights are held only while they are in use, so
// that a source may keep what it made, or make it anew each time.
class SkinSource {
public:
    virtual ~SkinSource();
    // One point for each vertex of the mesh, in its order. Never null. Bones out of range count for nothing.
    virtual std::shared_ptr<const SkinWeights> Build() const = 0;
};

class ReadySkinSource : public SkinSource {
public:
    explicit ReadySkinSource(SkinWeights weights) : m_pWeights(std::make_shared<SkinWeights>(std::move(weights))) {}
    std::shared_ptr<const SkinWeights> Build() const override { return m_pWeights; }

private:
    std::shared_ptr<const SkinWeights> m_pWeights;
};

// A bone of a skin, with the inverse of its transformation at the time of binding: from the mesh's space to the bone's.
struct SkinBone {
    Node* pNode = nullptr;
    Matrix3 inverseBind = IdentityMatrix();
};

// The Skin modifier. The mesh that it makes is in world space: a node that carries it shows its object without a
// transformation of its own (Node::SetWorldSpaceObject).
class SkinModifier : public MeshModifier, public ISkin {
public:
    SkinModifier(std::vector<SkinBone> bones, std::unique_ptr<SkinSource> pSource);
    ~SkinModifier() override;

    Class_ID ClassID() const override;
    void GetClassName(std::string& out) const override;
    void* GetInterface(uint32_t id) override;
    void ReleaseInterface(uint32_t id, void* pInterface) override;

    void Deform(Mesh& mesh, TimeValue t, INode* pNode) override;

    int GetNumBones() const override { return static_cast<int>(m_Bones.size()); }
    INode* GetBone(int index) const override;
    int GetBoneInitTM(INode* pBone, Matrix3& tm, bool isObject) const override;
    ISkinContextData* GetContextInterface(INode* pNode) override;

private:
    class Context;

    std::vector<SkinBone> m_Bones;
    std::unique_ptr<SkinSource> m_pSource;
    std::unique_ptr<Context> m_pContext; // while somebody has the interface
};

} // namespace scene
