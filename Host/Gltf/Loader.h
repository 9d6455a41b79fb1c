#pragma once

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

namespace scene {
class Scene;
}

namespace gltf {

struct LoadOptions {
    // The animation that is the scene's timeline, by name or index; "none" leaves the rest pose, nothing takes the
    // first animation of the file.
    std::string clip;
    // Frames a second, 1..4800. A frame has 4800 / fps ticks.
    int fps = 30;
    // Keep the four heaviest influences of a skinned vertex instead of all of them.
    bool limitInfluences = false;
};

// Why a scene can't be loaded, as one line for the user: `scene.glb: node "Arm_L": what is wrong; what to do`.
class LoadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Gets a line about each thing that the scene holds and the host shows otherwise or not at all, in the same form as
// the text of a LoadError. May be empty.
using WarningSink = std::function<void(const std::string& line)>;

// Loads a glTF 2.0 scene, text or binary by its content. `path` is in the system's form, and empty if that can't
// express it; buffers that lie in files of their own are looked for beside the scene. The meshes stay in the file's own
// layout, which the scene keeps in memory, and take the host's form only while somebody holds one. Throws a LoadError
// and nothing else but std::bad_alloc.
std::unique_ptr<scene::Scene> Load(const std::string& path, const LoadOptions& options, const WarningSink& warn);

} // namespace gltf
