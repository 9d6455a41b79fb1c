// What a node of the scene is to the export. A node can be two things at once: a box that serves as a bone is also a
// mesh. All answers are false for null, and but for IsXRef for the root too.
#pragma once

#include "Host/Sdk/Types.h"

class INode;

struct NodeRoles {
    bool bone = false;
    bool camera = false;
    bool light = false;
    bool marker = false;
    bool mesh = false;
};

namespace PVXUtil {

// All roles at the price of one evaluation.
NodeRoles GetNodeRoles(INode* pNode, TimeValue t);

bool IsBone(INode* pNode, TimeValue t);
bool IsMesh(INode* pNode, TimeValue t);
bool IsMarker(INode* pNode, TimeValue t);
bool IsCamera(INode* pNode, TimeValue t);
bool IsLight(INode* pNode, TimeValue t);
bool IsHelper(INode* pNode, TimeValue t);
// The node's object lies in another scene file, and the artist hasn't said otherwise with "ForceLocal". This looks at
// the reference and not at what it evaluates to.
bool IsXRef(INode* pNode);

} // namespace PVXUtil
