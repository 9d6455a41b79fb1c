#include "Shared/Cross/RenderAnim/LoadingModel.h"

#include <utility>

#include "Shared/Cross/RenderAnim/RenderModel.h"

namespace ra {

namespace {

constinit const LoadingModel* s_pInnermost = nullptr;

std::string Translate(const char* pName) {
    std::string name;
    RenderModel::GetTypeInfo().TranslateName(name, pName);
    return name;
}

} // namespace

LoadingModel::LoadingModel(const char* pName, const RenderModel& model)
    : m_Name(Translate(pName)), m_Model(model), m_pOuter(std::exchange(s_pInnermost, this)) {}

LoadingModel::~LoadingModel() { s_pInnermost = m_pOuter; }

const RenderModel* LoadingModel::Find(const char* pName) {
    const std::string name = Translate(pName);
    const LoadingModel* pLoading = s_pInnermost;
    while (pLoading && pLoading->m_Name != name)
        pLoading = pLoading->m_pOuter;
    return pLoading ? &pLoading->m_Model : nullptr;
}

} // namespace ra
