#include "Shared_Tools/PVXExport/ExportScene.h"

void ExportScene::Clear() {
    m_MeshNodes.clear();
    m_MarkerNodes.clear();
    m_BoneNodes.Clear();
    m_LightNodes.clear();
    m_CameraNodes.clear();
    m_UsedShaders.clear();
    m_ShaderOfMaterial.clear();
    m_TextureOfFile.clear();
    m_ShaderOrder.clear();
    m_Skeleton.reset();
}
