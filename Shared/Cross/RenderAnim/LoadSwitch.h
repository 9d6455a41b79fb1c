#pragma once

#include <memory>

namespace ra {

// The tools load switch: on, models, shaders and textures are loaded in their generic form, otherwise in the final one.
// Process-wide; off when a process starts.
void SetGenericLoad(bool on);
bool IsGenericLoad();

// The loaders of one kind of resource. File layouts lie above the resources; the program that links them hands their
// loaders in. Without one, loads give null.
template <class T>
struct ResourceLoaders {
    using Loader = std::unique_ptr<T> (*)(const char* pName);

    Loader pGeneric = nullptr;
    Loader pFinal = nullptr;

    // By the switch.
    std::unique_ptr<T> Load(const char* pName) const {
        const Loader pLoader = IsGenericLoad() ? pGeneric : pFinal;
        return pLoader ? pLoader(pName) : nullptr;
    }
};

} // namespace ra
