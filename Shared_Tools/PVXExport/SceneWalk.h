// The first step of an export: which node is what.
#pragma once

struct ExportContext;
struct ExportScene;
class INode;

namespace SceneWalk {

// Goes through the tree once, parents before children, and puts the nodes on the scene's lists.
void Collect(INode* pRoot, ExportContext& context, ExportScene& scene);

// Ascending by "RenderPriority", which is 0 where it is missing or no integer. Meshes of one priority keep their order.
void SortMeshNodes(ExportScene& scene);

} // namespace SceneWalk
