#include "Host/Gltf/Loader.h"

#include "Host/Gltf/Messages.h"
#include "Host/Gltf/SceneBuilder.h"
#include "Host/Gltf/SceneFile.h"
#include "Host/Scene/Scene.h"
#include "Host/Sdk/HostSetup.h"

#include <algorithm>
#include <array>

namespace gltf {

namespace {

constexpr std::string_view s_MaterialExtensions = "KHR_materials_";
constexpr std::array<std::string_view, 3> s_KnownExtensions = {"KHR_texture_transform", "KHR_lights_punctual",
                                                               "KHR_mesh_quantization"};

void CheckExtensions(const SceneFile& file, const Messages& messages) {
    const auto forEach = [&](std::string_view list, const auto& visit) {
        if (const Json* pNames = FindArray({}, file.GetRoot(), list))
            for (const Json& name : pNames->GetArray())
                visit(ToString(name).value_or(""));
    };
    forEach("extensionsRequired", [](std::string_view name) {
        if (!name.starts_with(s_MaterialExtensions) && !std::ranges::count(s_KnownExtensions, name))
            Fail({}, "it requires the extension " + Quoted(name) + ", which this host does not know",
                 "export the scene without it");
    });
    forEach("extensionsUsed", [&](std::string_view name) {
        if (name.starts_with(s_MaterialExtensions))
            messages.Warn({}, "its materials use " + Quoted(name) + ", which is only approximated",
                          "set up what matters with the base colour");
    });
}

} // namespace

std::unique_ptr<scene::Scene> Load(const std::string& path, const LoadOptions& options, const WarningSink& warn) {
    if (path.empty())
        throw LoadError("the scene's path is none that the system has; take backslashes and colons out of the names of "
                        "the file and its folders");
    const Messages messages(NameOf(path), warn);
    try {
        if (!SetFrameRate(options.fps))
            Fail({}, std::to_string(options.fps) + " frames a second are out of range",
                 "give --fps a number in 1.." + std::to_string(TicksPerSecond));
        const SceneFile file(path);
        CheckExtensions(file, messages);
        auto pScene = std::make_unique<scene::Scene>();
        SceneBuilder(file, path, options, messages, *pScene).Build();
        return pScene;
    } catch (const Fault& fault) {
        throw LoadError(messages.GetLine(fault.what()));
    }
}

} // namespace gltf
