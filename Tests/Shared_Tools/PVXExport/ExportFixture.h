#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Host/Scene/Build.h"
#include "Host/Sdk/Listener.h"
#include "Host/Sdk/Window.h"
#include "Shared_Tools/PVXExport/PVXExport.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

class AnimInterm;
class RenderModel;
class Shader;

// A scene, a folder to export it to, and the user in front of the dialogs.
class ExportTest : public testing::Test {
protected:
    ExportTest();
    ~ExportTest() override;

    // Exports the scene to a file of the test's folder, which may have folders in its name, and answers what DoExport
    // answered. Without a prompt nobody is asked for options.
    int Export(const std::string& fileName = "Foo.pvx", bool suppressPrompts = false);
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
    scene::StandardMaterial& AddMaterial(const std::string& name, scene::StandardSettings settings = {});

    scene::Scene m_Scene;
    PVXExport m_Export;
    TempFolder m_Temp;
    const std::filesystem::path m_Folder{m_Temp.Native()};

    // The user: presses these in the options dialog, and then OK.
    std::vector<int> m_Presses;
    int m_LastPress = 1;
    // What the export has shown and said.
    std::vector<std::string> m_Messages; // lines of the errors dialog
    int m_OptionsShown = 0;
    int m_ErrorsShown = 0;
    std::string m_ListenerText;

private:
    class User : public DialogShower {
    public:
        explicit User(ExportTest& test) : m_Test(test) {}
        void Show(Window& dialog) override;

    private:
        ExportTest& m_Test;
    };
    class Listener : public CharStream {
    public:
        explicit Listener(std::string& text) : m_Text(text) {}
        void puts(const char* pText) override { m_Text += pText; }

    private:
        std::string& m_Text;
    };

    User m_User{*this};
    Listener m_Listener{m_ListenerText};
    DialogShower* m_pShowerBefore = nullptr;
    CharStream* m_pListenerBefore = nullptr;
};
