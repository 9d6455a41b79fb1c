#pragma once

#include "Host/Sdk/Animatable.h"
#include "Host/Sdk/Matrix3.h"

class Texmap;

// The map slots of a standard material.
inline constexpr int ID_DI = 1; // diffuse
inline constexpr int ID_SP = 2; // specular
inline constexpr int ID_SS = 4; // specular level
inline constexpr int ID_SI = 5; // self-illumination
inline constexpr int ID_OP = 6; // opacity
inline constexpr int ID_RL = 9; // reflection
inline constexpr int NTEXMAPS = 12;

// Bits of Requirements.
inline constexpr uint32_t MTLREQ_FACEMAP = 0x20;
inline constexpr uint32_t MTLREQ_UV = 0x40;
inline constexpr uint32_t MTLREQ_VIEW_DEP = 0x8000;

// Materials and maps have a name and say what they need of the mesh.
class MtlBase : public Animatable {
public:
    ~MtlBase() override;

    // Never null.
    virtual const char* GetName() const = 0;
    // The MTLREQ_ bits of one sub-material; -1 asks for all.
    virtual uint32_t Requirements(int subMtl) const = 0;
};

class Mtl : public MtlBase {
public:
    ~Mtl() override;
    SClass_ID SuperClassID() const override;

    // 0 for all but a multi-sub material.
    virtual int NumSubMtls() const { return 0; }
    // Null for an empty place and outside 0..NumSubMtls()-1.
    virtual Mtl* GetSubMtl(int /*index*/) const { return nullptr; }
};

inline constexpr int TRANSP_SUBTRACTIVE = 0;
inline constexpr int TRANSP_ADDITIVE = 1;
inline constexpr int TRANSP_FILTER = 2;

inline constexpr int MAPSLOT_TEXTURE = 0;

// A material of the class DMTL_CLASS_ID. Floats and colour components are in 0..1.
class StdMat : public Mtl {
public:
    ~StdMat() override;
    Class_ID ClassID() const override;

    virtual bool GetSelfIllumColorOn(int mtlNum = 0, bool backFace = false) const = 0;
    virtual bool GetTwoSided() const = 0;
    virtual bool GetSamplingOn() const = 0;

    virtual float GetShininess(TimeValue t) const = 0;
    virtual float GetShinStr(TimeValue t) const = 0;
    virtual float GetSelfIllum(TimeValue t) const = 0;
    virtual float GetOpacity(TimeValue t) const = 0;
    virtual Color GetDiffuse(TimeValue t) const = 0;
    virtual Color GetSpecular(TimeValue t) const = 0;
    virtual Color GetSelfIllumColor(TimeValue t) const = 0;

    // One of the TRANSP_ values.
    virtual int GetTransparencyType() const = 0;

    // The map slots, by the ids above. A slot that doesn't exist is off, without a map and of amount 0.
    virtual bool MapEnabled(int id) const = 0;
    virtual float GetTexmapAmt(int id, TimeValue t) const = 0;
    virtual Texmap* GetSubTexmap(int id) const = 0;
    virtual int MapSlotType(int id) const = 0;
};

inline constexpr int U_WRAP = 1;
inline constexpr int V_WRAP = 2;
inline constexpr int U_MIRROR = 4;
inline constexpr int V_MIRROR = 8;

inline constexpr int UVMAP_EXPLICIT = 0;
inline constexpr int UVMAP_SPHERE_ENV = 1;

// Where a map lies on the surface.
class UVGen : public Animatable {
public:
    ~UVGen() override;
    SClass_ID SuperClassID() const override;

    virtual void GetUVTransform(Matrix3& out) const = 0;
    // Bits of U_WRAP, V_WRAP, U_MIRROR, V_MIRROR.
    virtual int GetTextureTiling() const = 0;
    // MTLREQ_VIEW_DEP for a mapping that depends on the view; 0 for none.
    virtual uint32_t Requirements(int subMtl) const = 0;
};

class StdUVGen : public UVGen {
public:
    ~StdUVGen() override;

    virtual float GetUOffs(TimeValue t) const = 0;
    virtual float GetVOffs(TimeValue t) const = 0;
    virtual float GetUScl(TimeValue t) const = 0;
    virtual float GetVScl(TimeValue t) const = 0;
    // UVMAP_SPHERE_ENV is spherical environment mapping.
    virtual int GetCoordMapping(int subMtl) const = 0;
    // From 1.
    virtual int GetMapChannel() const = 0;
};

class Texmap : public MtlBase {
public:
    ~Texmap() override;
    SClass_ID SuperClassID() const override;
};

inline constexpr int FILTER_PYR = 0;
inline constexpr int FILTER_SAT = 1;
inline constexpr int FILTER_NADA = 2;

// A map of the class BMTEX_CLASS_ID: an image file.
class BitmapTex : public Texmap {
public:
    ~BitmapTex() override;
    Class_ID ClassID() const override;

    // The image's file path, never null.
    virtual const char* GetMapName() const = 0;
    // Null when the map has none.
    virtual StdUVGen* GetUVGen() const = 0;
    // One of the FILTER_ values.
    virtual int GetFilterType() const = 0;
};
