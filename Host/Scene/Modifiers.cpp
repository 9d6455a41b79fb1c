#include "Host/Scene/Modifiers.h"

#include "Host/Scene/Objects.h"
#include "Host/Sdk/Mesh.h"

namespace scene {

// What a derived object evaluates to: the surface underneath, changed by the modifiers from the lowest up.
class DerivedObject::Result : public GeomObject {
public:
    Result(GeomObject& base, const std::vector<MeshModifier*>& modifiers) : m_Base(base), m_Modifiers(modifiers) {}

    Class_ID ClassID() const override { return TRIOBJ_CLASS_ID; }
    void GetClassName(std::string& out) const override { out = "Mesh"; }

    Mesh* GetRenderMesh(TimeValue t, INode* pNode, View& view, bool& needDelete) override {
        bool owned = false;
        Mesh* pBase = m_Base.GetRenderMesh(t, pNode, view, owned);
        needDelete = pBase != nullptr;
        if (!pBase)
            return nullptr;
        std::unique_ptr<Mesh> pMesh(owned ? pBase : new Mesh(*pBase));
        for (MeshModifier* pModifier : m_Modifiers)
            pModifier->Deform(*pMesh, t, pNode);
        return pMesh.release();
    }

private:
    GeomObject& m_Base;
    const std::vector<MeshModifier*>& m_Modifiers;
};

DerivedObject::DerivedObject(Object* pBase) : m_pBase(pBase) {
    Object* pEvaluated = EvaluateObject(pBase);
    if (pEvaluated && pEvaluated->SuperClassID() == GEOMOBJECT_CLASS_ID)
        m_pResult = std::make_unique<Result>(static_cast<GeomObject&>(*pEvaluated), m_Modifiers);
}

DerivedObject::~DerivedObject() = default;

void DerivedObject::AddModifier(MeshModifier& modifier) { m_Modifiers.push_back(&modifier); }

Class_ID DerivedObject::ClassID() const { return Class_ID(GEN_DERIVOB_CLASS_ID, 0); }
void DerivedObject::GetClassName(std::string& out) const { out = "Derived Object"; }

Modifier* DerivedObject::GetModifier(int index) const {
    if (index < 0 || index >= NumModifiers())
        return nullptr;
    return m_Modifiers[m_Modifiers.size() - 1 - static_cast<size_t>(index)];
}

Object* DerivedObject::GetEvaluated() const {
    if (m_pResult)
        return m_pResult.get();
    return EvaluateObject(m_pBase);
}

Object* EvaluateObject(Object* pObject) {
    while (pObject) {
        if (pObject->SuperClassID() == GEN_DERIVOB_CLASS_ID)
            return static_cast<DerivedObject*>(pObject)->GetEvaluated();
        if (pObject->ClassID() != XREFOBJ_CLASS_ID)
            break;
        pObject = static_cast<XRef*>(pObject)->GetObject();
    }
    return pObject;
}

} // namespace scene
