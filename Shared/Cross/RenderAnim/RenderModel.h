#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <glm/mat4x3.hpp>

#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/RenderAnim/BoundVolume.h"
#include "Shared/Cross/RenderAnim/Marker.h"
#include "Shared/Cross/RenderAnim/Motion/MotionParts.h"
#include "Shared/Cross/RenderAnim/ReferencePose.h"
#include "Shared/Cross/RenderAnim/RenderAnimName.h"
#include "Shared/Cross/RenderAnim/ResourceRefs.h"

class AnimList;
class Skeleton;

namespace ra {
class MeshGroup;
}

// How a model is picked in the game.
struct SelectionInfo {
    int32_t mode = 1;
    float extentX = 0.0f;
    float extentZ = 0.0f;
    float centreX = 0.0f;
    float centreZ = 0.0f;
    OrientedBox box;
};

// A model, everywhere in the pipeline: the exporter fills one, the merge adds animations to it, the burner writes it in
// its run-time form. It owns its parts and answers look-ups across them. What it is saved as and loaded from lies in
// Intermediate, Generic and Final. Shaders and meshes are shared with the inventory, which has to outlive the model.
class RenderModel : public Inv::NamedResource {
public:
    static constexpr int32_t InvalidIndex = -1;

    static Inv::ResourceTypeInfo& GetTypeInfo();

    RenderModel();
    ~RenderModel() override;

    // Null only as long as a model is being built.
    ra::MeshGroup* GetMeshGroup() const { return m_pMeshGroup.get(); }
    // Also takes the selection data from the group's bound volume.
    void SetMeshGroup(std::unique_ptr<ra::MeshGroup> pMeshGroup);
    // Null for a model without bones.
    Skeleton* GetSkeleton() const { return m_pSkeleton.get(); }
    void SetSkeleton(std::unique_ptr<Skeleton> pSkeleton);
    // May be null. The tools' loads make it an AnimListGeneric.
    AnimList* GetAnimList() const { return m_pAnimList.get(); }
    void SetAnimList(std::unique_ptr<AnimList> pAnimList);

    // The model's own markers. To all who look for a place on the model its bones are markers too, behind these; see
    // the four operations below.
    const std::vector<Marker>& GetOwnMarkers() const { return m_cMarkers; }
    void SetOwnMarkerCount(uint32_t count) { m_cMarkers.resize(count); }
    // Looks the parent bone up by its name. One that is missing is no mistake: the marker then hangs on nothing.
    void SetMarker(uint32_t index, const Marker& marker);
    void AddMarker(const Marker& marker);

    // Markers and bones together.
    int32_t GetMarkerCount() const;
    // Among markers and bones; -1 without one. "root" is the first bone, or 0 without a skeleton; "random" any of all.
    int32_t FindMarker(const ra::Name& name) const;
    // In the world, with the model at rest.
    glm::mat4x3 GetMarkerTransform(int32_t index) const;

    uint32_t GetCameraCount() const { return static_cast<uint32_t>(m_cCameras.size()); }
    const std::vector<CameraDef>& GetCameras() const { return m_cCameras; }
    void SetCameraCount(uint32_t count) { m_cCameras.resize(count); }
    void SetCamera(uint32_t index, const CameraDef& camera);
    void AddCamera(const CameraDef& camera) { m_cCameras.push_back(camera); }
    int32_t FindCamera(const ra::Name& name) const; // -1 without one

    // The motion side: what the game plays, when, and what happens meanwhile.
    ra::MotionParts GetMotionParts();
    ra::ConstMotionParts GetMotionParts() const;

    const SelectionInfo& GetSelectionInfo() const { return m_SelectionInfo; }
    void SetSelectionInfo(const SelectionInfo& info) { m_SelectionInfo = info; }

    // Once: a model that has a pose keeps it. Mesh group and skeleton are there by then.
    void BuildReferencePose();
    const ReferencePose* GetReferencePose() const { return m_pReferencePose.get(); } // null before

private:
    void BindMarker(Marker& marker) const;

    // The last one goes first.
    std::vector<CameraDef> m_cCameras;
    std::vector<Marker> m_cMarkers;
    SelectionInfo m_SelectionInfo;
    ra::ModifierList m_ModifierList;
    ra::EventList m_EventList;
    ra::ConditionList m_ConditionList;
    ra::ClauseList m_ClauseList;
    std::unique_ptr<ReferencePose> m_pReferencePose;
    std::unique_ptr<AnimList> m_pAnimList;
    std::unique_ptr<ra::MotionList> m_pMotionList; // never null
    ra::ActionTree m_ActionTree;
    std::unique_ptr<Skeleton> m_pSkeleton;
    std::unique_ptr<ra::MeshGroup> m_pMeshGroup;
};
