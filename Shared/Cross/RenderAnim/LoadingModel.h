#pragma once

#include <string>

class RenderModel;

namespace ra {

// A model whose tree stands and whose motion file is being read. Models may take animations from each other in a ring:
// the one that closes it finds them here, while the inventory hasn't got the model yet.
class LoadingModel {
public:
    // The model has to outlive this.
    LoadingModel(const char* pName, const RenderModel& model);
    ~LoadingModel();
    LoadingModel(const LoadingModel&) = delete;
    LoadingModel& operator=(const LoadingModel&) = delete;

    // By the name that the inventory knows models by; null when no such model is being loaded.
    static const RenderModel* Find(const char* pName);

private:
    std::string m_Name;
    const RenderModel& m_Model;
    const LoadingModel* m_pOuter; // the one that waits for this
};

} // namespace ra
