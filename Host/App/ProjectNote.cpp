#include "Host/App/ProjectNote.h"

#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/PC/FileSystem/OSFile.h"

namespace {

constexpr const char* s_Consequence = ", so textures and external references have no names";

} // namespace

std::string FindProjectNote(const std::string& scene, const std::string& home) {
    switch (Pipeline::Initialize(nullptr)) {
    case Pipeline::Result_Ok:
        break;
    case Pipeline::Result_NoFile:
        return "there is no pipeline.ini in \"" + home + "\" or above it" + s_Consequence +
               "; --home names another folder to start from";
    default:
        return Pipeline::GetInitializeError() + s_Consequence;
    }
    std::string note;
    if (!Pipeline::Get()->FindProjectForFile(scene.c_str(), Pipeline::Kind_Source))
        note = OSFile::ToNative(scene) + ": lies in the source folder of no project of \"" +
               OSFile::ToNative(Pipeline::Get()->GetIniFile()) + "\"" + s_Consequence;
    Pipeline::Shutdown();
    return note;
}
