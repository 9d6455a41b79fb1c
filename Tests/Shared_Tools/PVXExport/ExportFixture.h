#pragma once

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Host/Scene/Build.h"
#include "Shared/Cross/RenderAnim/Mesh.h"
#include "Shared_Tools/PVXExport/PVXExport.h"
#include "Tests/Host/Sdk/TestHost.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

class AnimInterm;
class RenderModel;
class Shader;

// The element of each vertex, all zeros where the mesh hasn't the component.
template <class T>
std::vector<T> ReadComponent(const ra::Mesh& mesh, gz::VertexComponent component) {
    const gz::VertexSet& set = *mesh.GetVertexSet(ra::Mesh::Poly_High);
    std::vector<T> elements(set.GetSize());
    for (size_t i = 0; i < elements.size(); ++i)
        if (const void* pData = set.GetData(component))
            std::memcpy(static_cast<void*>(&elements[i]), static_cast<const char*>(pData) + i * set.GetStride(),
                        sizeof(T));
    return elements;
}

// A scene, a folder to export it to, and the user in front of the dialogs.
class ExportTest : public testing::Test {
protected:
    ExportTest();
    ~ExportTest() override;

    // Exports the scene to a file of the test's folder, which may have folders in its name, and answers what DoExport
    // answered. The user presses these in the options dialog.
    int Export(const std::string& fileName = "Foo.pvx", std::vector<int> presses = {IDOK});
    // The same without asking anyone.
    int ExportSilently(const std::string& fileName);

    std::string GetPath(const std::string& fileName) const { return m_Temp.Path(fileName); } // in the system's form
    bool IsThere(const std::string& fileName) const { return m_Temp.Has(fileName); }
    std::string ReadBytes(const std::string& fileName) const { return m_Temp.Read(fileName); }
    // Reads the exported model and hands it out, for as long as the call takes.
    void WithModel(const std::function<void(const RenderModel&)>& look, const std::string& fileName = "Foo.pvx");
    // The same with one of the model's shaders.
    void WithShader(const std::function<void(const Shader&)>& look, uint32_t index = 0);
    // Hands out the file's one animation as it is stored: bones in the world, and all keys.
    void WithStoredAnim(const std::function<void(const AnimInterm&)>& look, const std::string& fileName = "Foo.pvx");

    // A square of two faces in the host's X-Y plane, with texture coordinates.
    static Mesh MakeQuad(float size = 1.0f);
    // Such squares as nodes: with the material that all of them share, and with one of its own.
    scene::Node& AddQuad(const std::string& name, scene::Node* pParent = nullptr);
    scene::Node& AddPainted(const std::string& material, scene::StandardSettings settings = {});
    static scene::StandardSettings WithMaps(const std::vector<std::pair<int, Texmap*>>& maps);
    scene::StandardMaterial& AddMaterial(const std::string& name, scene::StandardSettings settings = {});

    scene::Scene m_Scene;
    Mtl* m_pPaint = &AddMaterial("Paint");
    PVXExport m_Export;
    TempFolder m_Temp;
    DialogAnswers m_User{{IDOK}};
    ListenerCapture m_Listener;
    std::vector<std::string> m_Messages; // lines of the last export's errors dialog
};
