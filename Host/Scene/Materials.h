#pragma once

#include "Host/Scene/Track.h"
#include "Host/Sdk/Material.h"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace scene {

// A slot of a standard material. The map is borrowed from the scene.
struct MapSlot {
    Texmap* pMap = nullptr;
    bool enabled = true; // counts only with a map
    FloatTrack amount = 1.0f;
};

struct StandardSettings {
    Color diffuse{0.588f};
    Color specular{0.9f};
    FloatTrack shininess = 0.1f;
    FloatTrack specularLevel = 0.0f;
    FloatTrack opacity = 1.0f;
    FloatTrack selfIllum = 0.0f;
    std::optional<Color> selfIllumColor = {}; // set: self-illumination is given as a colour
    bool twoSided = false;
    bool supersample = false;
    bool faceMap = false;
    int transparency = TRANSP_SUBTRACTIVE;
    std::array<MapSlot, NTEXMAPS> maps = {}; // by slot id
};

class StandardMaterial : public StdMat {
public:
    explicit StandardMaterial(std::string name, StandardSettings settings = {})
        : m_Name(std::move(name)), m_Settings(std::move(settings)) {}

    StandardSettings& GetSettings() { return m_Settings; }

    void GetClassName(std::string& out) const override;
    const char* GetName() const override { return m_Name.c_str(); }
    uint32_t Requirements(int subMtl) const override;
    bool GetSelfIllumColorOn(int mtlNum, bool backFace) const override;
    bool GetTwoSided() const override { return m_Settings.twoSided; }
    bool GetSamplingOn() const override { return m_Settings.supersample; }
    float GetShininess(TimeValue t) const override { return m_Settings.shininess.Evaluate(t); }
    float GetShinStr(TimeValue t) const override { return m_Settings.specularLevel.Evaluate(t); }
    float GetSelfIllum(TimeValue t) const override { return m_Settings.selfIllum.Evaluate(t); }
    float GetOpacity(TimeValue t) const override { return m_Settings.opacity.Evaluate(t); }
    Color GetDiffuse(TimeValue) const override { return m_Settings.diffuse; }
    Color GetSpecular(TimeValue) const override { return m_Settings.specular; }
    // Black unless self-illumination is given as a colour.
    Color GetSelfIllumColor(TimeValue t) const override;
    int GetTransparencyType() const override { return m_Settings.transparency; }
    bool MapEnabled(int id) const override;
    float GetTexmapAmt(int id, TimeValue t) const override;
    Texmap* GetSubTexmap(int id) const override;
    int MapSlotType(int id) const override;

private:
    const MapSlot* FindSlot(int id) const;

    std::string m_Name;
    StandardSettings m_Settings;
};

// A material per material id of the faces. A place may be empty.
class MultiMaterial : public Mtl {
public:
    explicit MultiMaterial(std::string name, std::vector<Mtl*> subs = {})
        : m_Name(std::move(name)), m_Subs(std::move(subs)) {}

    // For materials that name each other: the places can be filled once all are there.
    void SetSubs(std::vector<Mtl*> subs) { m_Subs = std::move(subs); }

    Class_ID ClassID() const override;
    void GetClassName(std::string& out) const override;
    const char* GetName() const override { return m_Name.c_str(); }
    // Those of the sub-material, or of all of them together for -1. A multi-sub material inside counts for nothing.
    uint32_t Requirements(int subMtl) const override;
    int NumSubMtls() const override { return static_cast<int>(m_Subs.size()); }
    Mtl* GetSubMtl(int index) const override;

private:
    std::string m_Name;
    std::vector<Mtl*> m_Subs;
};

// A material that only its class name tells anything about. The class id is made from the class name, the same always.
class OtherMaterial : public Mtl {
public:
    OtherMaterial(std::string name, std::string className)
        : m_Name(std::move(name)), m_ClassName(std::move(className)) {}

    Class_ID ClassID() const override;
    void GetClassName(std::string& out) const override { out = m_ClassName; }
    const char* GetName() const override { return m_Name.c_str(); }
    uint32_t Requirements(int) const override { return 0; }

private:
    std::string m_Name;
    std::string m_ClassName;
};

// How a map lies on the surface. About the middle of the picture: first moved by minus the offset, then scaled, then
// turned.
struct UVSettings {
    FloatTrack uOffset = 0.0f;
    FloatTrack vOffset = 0.0f;
    FloatTrack uScale = 1.0f;
    FloatTrack vScale = 1.0f;
    float angle = 0.0f;                    // radians, counter-clockwise
    std::optional<Matrix3> transform = {}; // set: the matrix, in place of the one that follows from the values above
    int tiling = U_WRAP | V_WRAP;
    bool environment = false; // spherical environment mapping, which depends on the view
    int mapChannel = 1;
};

class UVPlacement : public StdUVGen {
public:
    explicit UVPlacement(UVSettings settings = {}) : m_Settings(std::move(settings)) {}

    UVSettings& GetSettings() { return m_Settings; }

    Class_ID ClassID() const override;
    void GetClassName(std::string& out) const override;
    // At time 0.
    void GetUVTransform(Matrix3& out) const override;
    int GetTextureTiling() const override { return m_Settings.tiling; }
    uint32_t Requirements(int subMtl) const override;
    float GetUOffs(TimeValue t) const override { return m_Settings.uOffset.Evaluate(t); }
    float GetVOffs(TimeValue t) const override { return m_Settings.vOffset.Evaluate(t); }
    float GetUScl(TimeValue t) const override { return m_Settings.uScale.Evaluate(t); }
    float GetVScl(TimeValue t) const override { return m_Settings.vScale.Evaluate(t); }
    int GetCoordMapping(int subMtl) const override;
    int GetMapChannel() const override { return m_Settings.mapChannel; }

private:
    UVSettings m_Settings;
};

class Bitmap : public BitmapTex {
public:
    // Without a placement the map has no StdUVGen.
    Bitmap(std::string name, std::string path, std::optional<UVSettings> uv = UVSettings{}, int filter = FILTER_PYR);

    void GetClassName(std::string& out) const override;
    const char* GetName() const override { return m_Name.c_str(); }
    uint32_t Requirements(int subMtl) const override;
    const char* GetMapName() const override { return m_Path.c_str(); }
    // The placement is the map's own, also where the map is.
    StdUVGen* GetUVGen() const override { return m_pUVGen.get(); }
    int GetFilterType() const override { return m_Filter; }

private:
    std::string m_Name;
    std::string m_Path;
    std::unique_ptr<UVPlacement> m_pUVGen;
    int m_Filter;
};

// A map of another class.
class OtherTexmap : public Texmap {
public:
    OtherTexmap(std::string name, std::string className) : m_Name(std::move(name)), m_ClassName(std::move(className)) {}

    Class_ID ClassID() const override;
    void GetClassName(std::string& out) const override { out = m_ClassName; }
    const char* GetName() const override { return m_Name.c_str(); }
    uint32_t Requirements(int) const override { return 0; }

private:
    std::string m_Name;
    std::string m_ClassName;
};

} // namespace scene
