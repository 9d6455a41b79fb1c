#pragma once

#include <memory>

#include "Host/Sdk/Plugin.h"
#include "Shared_Tools/PVXExport/ExportScene.h"

struct ExportContext;
class RenderModel;

// The exporter: brings up the services that a model needs, has the scene converted and saved, shows the artist what was
// wrong, and takes everything down again, so that the next export starts from nothing.
class PVXExport : public SceneExport {
public:
    int ExtCount() const override { return 1; }
    const char* Ext(int n) const override { return n == 0 ? "PVX" : ""; }
    const char* LongDesc() const override;
    const char* ShortDesc() const override;
    const char* AuthorName() const override;
    const char* CopyrightMessage() const override;
    const char* OtherMessage1() const override { return ""; }
    const char* OtherMessage2() const override { return ""; }
    unsigned Version() const override { return 2; }
    void ShowAbout(HWND hWnd) override;

    // The log goes beside the output. 1 when no error was reported, and when the user cancelled; then the log stays
    // open. Otherwise 0, with what a failed service threw on the script listener. A file that can't be written is in
    // the log alone.
    int DoExport(const char* pName, ExpInterface* pExp, Interface* pInterface, bool suppressPrompts = false,
                 uint32_t options = 0) override;

private:
    // False when the user cancelled.
    bool Start(ExportContext& context, const char* pName, Interface* pInterface, bool suppressPrompts);
    void ReadFileProperties(ExportContext& context) const;
    bool ChooseOptions(ExportContext& context, const char* pName, bool suppressPrompts) const;
    void StartServices() const;
    // False when an error was reported.
    bool Run(ExportContext& context);
    // Null when the model couldn't be built.
    std::unique_ptr<RenderModel> BuildRenderModel(ExportContext& context);
    void Save(RenderModel& model, const ExportContext& context) const;
    void TearDown();

    HINSTANCE m_hInstance = nullptr;
    Interface* m_Interface = nullptr; // the host's, of the running export
    ExportScene m_Scene;
};
