#include "Host/App/ProjectNote.h"

#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <algorithm>
#include <functional>

namespace {

constexpr const char* s_Consequence = ", so textures and external references have no names";

bool IsInProject(const std::string& path) {
    return Pipeline::Get()->FindProjectForFile(path.c_str(), Pipeline::Kind_Source) != nullptr;
}

std::string LiesInNone(const std::string& path) {
    return OSFile::ToNative(path) + ": lies in the source folder of no project of \"" +
           OSFile::ToNative(Pipeline::Get()->GetIniFile()) + "\"";
}

// The first one by name; the others have the same reason.
std::string FindPictureNote(std::span<const std::string> pictures) {
    const auto first = std::ranges::find_if_not(pictures, IsInProject);
    if (first == pictures.end())
        return {};
    const auto others = std::count_if(first + 1, pictures.end(), std::not_fn(IsInProject));
    std::string note = LiesInNone(*first) + ", so the model has no name for it and doesn't hold it";
    if (others > 0)
        note += "; the same goes for " + std::to_string(others) + " more";
    return note;
}

} // namespace

std::string FindProjectNote(const std::string& scene, std::span<const std::string> pictures, const std::string& home) {
    switch (Pipeline::Initialize(nullptr)) {
    case Pipeline::Result_Ok:
        break;
    case Pipeline::Result_NoFile:
        return "there is no pipeline.ini in \"" + home + "\" or above it" + s_Consequence +
               "; --home names another folder to start from";
    default:
        return Pipeline::GetInitializeError() + s_Consequence;
    }
    std::string note = IsInProject(scene) ? FindPictureNote(pictures) : LiesInNone(scene) + s_Consequence;
    Pipeline::Shutdown();
    return note;
}
