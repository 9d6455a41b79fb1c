#include "Host/Scene/Scene.h"

namespace scene {

namespace {

bool HangsBelow(const Node& node, const Node& ancestor) {
    const Node* pNode = &node;
    while (pNode && pNode != &ancestor)
        pNode = pNode->GetParent();
    return pNode != nullptr;
}

} // namespace

SceneObserver::~SceneObserver() = default;

Scene::Scene() : m_Root(*this, "Scene Root") {}
Scene::~Scene() = default;

Node& Scene::AddNode(std::string name, Node* pParent) {
    Node& node = MakeNode(std::move(name));
    Attach(pParent ? *pParent : m_Root, node);
    return node;
}

Node& Scene::MakeNode(std::string name) {
    return *m_Nodes.emplace_back(std::make_unique<Node>(*this, std::move(name)));
}

bool Scene::Attach(Node& parent, Node& child) {
    // Only a child with children of its own can stand above its parent; trees that grow downward so cost nothing here.
    if (child.m_pParent || child.IsRootNode() || &parent == &child ||
        (!child.m_Children.empty() && HangsBelow(parent, child)))
        return false;
    child.m_pParent = &parent;
    parent.m_Children.push_back(&child);
    m_Evaluator.Invalidate();
    return true;
}

Node* Scene::FindNode(std::string_view name) const {
    for (const std::unique_ptr<Node>& pNode : m_Nodes)
        if (pNode->m_Name == name)
            return pNode.get();
    return nullptr;
}

void Scene::AddFileProperty(std::string name, PROPVARIANT value) {
    m_FileProperties.push_back({{.ulKind = PRSPEC_LPWSTR, .propid = 0, .name = std::move(name)}, std::move(value)});
}

void Scene::AddFileProperty(uint32_t id, PROPVARIANT value) {
    m_FileProperties.push_back({{.ulKind = PRSPEC_PROPID, .propid = id, .name = {}}, std::move(value)});
}

int Scene::GetNumProperties(int set) const {
    return set == PROPSET_USERDEFINED ? static_cast<int>(m_FileProperties.size()) : 0;
}

const PROPSPEC* Scene::GetPropertySpec(int set, int index) const {
    return index >= 0 && index < GetNumProperties(set) ? &m_FileProperties[static_cast<size_t>(index)].spec : nullptr;
}

const PROPVARIANT* Scene::GetPropertyVariant(int set, int index) const {
    return index >= 0 && index < GetNumProperties(set) ? &m_FileProperties[static_cast<size_t>(index)].value : nullptr;
}

} // namespace scene
