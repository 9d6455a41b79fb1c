#pragma once

#include "Host/Sdk/Matrix3.h"

class INode;

// What one node has under the Skin modifier: which bones hold each point, and how strongly.
class ISkinContextData {
public:
    virtual ~ISkinContextData();

    // The number of points of the skinned mesh, equal to its vertex count.
    virtual int GetNumPoints() const = 0;
    // 0 for a point out of range.
    virtual int GetNumAssignedBones(int point) const = 0;
    // Index into the modifier's bones; -1 for none.
    virtual int GetAssignedBone(int point, int index) const = 0;
    virtual float GetBoneWeight(int point, int index) const = 0;
};

// The Skin modifier seen by its bones; got from it with GetInterface(I_SKIN).
class ISkin {
public:
    static constexpr int Failed = 0;
    static constexpr int Ok = 1;

    virtual ~ISkin();

    virtual int GetNumBones() const = 0;
    // Null outside 0..GetNumBones()-1.
    virtual INode* GetBone(int index) const = 0;

    // Where the bone stood when the mesh was bound to it. Failed when the modifier doesn't have that bone.
    virtual int GetBoneInitTM(INode* pBone, Matrix3& tm, bool isObject = false) const = 0;

    // Null when the modifier doesn't act on the node. Good until the interface is released.
    virtual ISkinContextData* GetContextInterface(INode* pNode) = 0;
};
