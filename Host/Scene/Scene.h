#pragma once

#include "Host/Scene/Evaluator.h"
#include "Host/Scene/Node.h"
#include "Host/Sdk/Interface.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace scene {

// Is told what the scene is asked for, so that the host can show how far the work has come.
class SceneObserver {
public:
    virtual ~SceneObserver();
    // A mesh is about to be made.
    virtual void OnMesh(const Node& node) = 0;
    // The moving nodes are about to be evaluated.
    virtual void OnTick(TimeValue t) = 0;
};

// The stand-alone scene: owner of nodes, objects, materials and maps, and the main object that modules see.
class Scene : public Interface {
public:
    Scene();
    ~Scene() override;
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    Node& GetRoot() { return m_Root; }

    // A new node at the end of the parent's children; null stands for the root.
    Node& AddNode(std::string name, Node* pParent = nullptr);
    // A new node outside the tree, and its way in: the end of the parent's children. Attach answers false, and changes
    // nothing, when the child is in the tree of another node already, or when the parent hangs below the child.
    // Attaching from the root downward is cheap; a child that brings children of its own costs a walk up from its
    // parent.
    Node& MakeNode(std::string name);
    bool Attach(Node& parent, Node& child);

    // In the order in which they were made, without the root.
    const std::vector<std::unique_ptr<Node>>& GetNodes() const { return m_Nodes; }
    // The first of that name, compared exactly; null when there is none. Looks at all of them.
    Node* FindNode(std::string_view name) const;

    // Makes an object, modifier, material or map that lives as long as the scene.
    template <class T, class... Arguments>
    T& Make(Arguments&&... arguments) {
        auto pOwned = std::make_unique<T>(std::forward<Arguments>(arguments)...);
        T& made = *pOwned;
        m_Owned.push_back(std::move(pOwned));
        return made;
    }

    void SetAnimRange(Interval range) { m_AnimRange = range; }
    // Borrowed; null for none.
    void SetMainWindow(HWND hWindow) { m_hMainWindow = hWindow; }
    void SetObserver(SceneObserver* pObserver) { m_pObserver = pObserver; }
    SceneObserver* GetObserver() const { return m_pObserver; }

    // User-defined file properties, in the order of their adding; the other sets are empty.
    void AddFileProperty(std::string name, PROPVARIANT value);
    void AddFileProperty(uint32_t id, PROPVARIANT value);

    // After a change of a node's local transformation or controller, by anyone but the node's own operations.
    void InvalidateTransforms() { m_Evaluator.Invalidate(); }
    Evaluator& GetEvaluator() { return m_Evaluator; }

    INode* GetRootNode() override { return &m_Root; }
    Interval GetAnimRange() const override { return m_AnimRange; }
    HWND GetMAXHWnd() const override { return m_hMainWindow; }
    int GetNumProperties(int set) const override;
    const PROPSPEC* GetPropertySpec(int set, int index) const override;
    const PROPVARIANT* GetPropertyVariant(int set, int index) const override;

private:
    struct FileProperty {
        PROPSPEC spec;
        PROPVARIANT value;
    };

    Node m_Root;
    std::vector<std::unique_ptr<Node>> m_Nodes;
    std::vector<std::unique_ptr<Animatable>> m_Owned;
    std::vector<FileProperty> m_FileProperties;
    Evaluator m_Evaluator;
    Interval m_AnimRange{0, 0};
    HWND m_hMainWindow = nullptr;
    SceneObserver* m_pObserver = nullptr;
};

} // namespace scene
