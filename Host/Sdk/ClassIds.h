#pragma once

#include "Host/Sdk/Types.h"

// The class identifiers of the host that modules compare.

inline constexpr SClass_ID GEN_DERIVOB_CLASS_ID = 0x2;
inline constexpr SClass_ID GEOMOBJECT_CLASS_ID = 0x10;
inline constexpr SClass_ID CAMERA_CLASS_ID = 0x20;
inline constexpr SClass_ID LIGHT_CLASS_ID = 0x30;
inline constexpr SClass_ID HELPER_CLASS_ID = 0x50;
inline constexpr SClass_ID SYSTEM_CLASS_ID = 0x60;
inline constexpr SClass_ID OSM_CLASS_ID = 0x810;
inline constexpr SClass_ID SCENE_EXPORT_CLASS_ID = 0xa20;
inline constexpr SClass_ID MATERIAL_CLASS_ID = 0xc00;
inline constexpr SClass_ID TEXMAP_CLASS_ID = 0xc10;
inline constexpr SClass_ID UVGEN_CLASS_ID = 0xc20;
inline constexpr SClass_ID CTRL_MATRIX3_CLASS_ID = 0x9008;

// Geometry. A mesh is "evaluated" at the end of its modifier stack, and in "edit form" at its base.
inline constexpr Class_ID TRIOBJ_CLASS_ID(9, 0);
inline constexpr Class_ID EDITTRIOBJ_CLASS_ID(0xe44f10b3, 0);
inline constexpr Class_ID PATCHOBJ_CLASS_ID(0x1030, 0);
inline constexpr Class_ID BONE_OBJ_CLASS_ID(0x8a63c0, 0);
inline constexpr Class_ID BOXOBJ_CLASS_ID(0x10, 0);

// Helpers.
inline constexpr Class_ID DUMMY_CLASS_ID(0x876234, 0);
inline constexpr Class_ID POINTHELP_CLASS_ID(0x2013, 0);

// Cameras: free and with a target.
inline constexpr Class_ID SIMPLE_CAM_CLASS_ID(0x1001, 0);
inline constexpr Class_ID LOOKAT_CAM_CLASS_ID(0x1002, 0);

// Lights.
inline constexpr Class_ID OMNI_LIGHT_CLASS_ID(0x1011, 0);
inline constexpr Class_ID SPOT_LIGHT_CLASS_ID(0x1012, 0);
inline constexpr Class_ID DIR_LIGHT_CLASS_ID(0x1013, 0);
inline constexpr Class_ID FSPOT_LIGHT_CLASS_ID(0x1014, 0);
inline constexpr Class_ID TDIR_LIGHT_CLASS_ID(0x1015, 0);

// Controllers.
inline constexpr Class_ID BIPSLAVE_CONTROL_CLASS_ID(0x9154, 0);
inline constexpr Class_ID BIPBODY_CONTROL_CLASS_ID(0x9156, 0);
inline constexpr Class_ID PRS_CONTROL_CLASS_ID(0x2005, 0);

// An object that lies in another scene file; its super class is SYSTEM_CLASS_ID.
inline constexpr Class_ID XREFOBJ_CLASS_ID(0x92aab38c, 0);

inline constexpr Class_ID SKIN_CLASSID(0x95c723, 0x15666);

// Materials and maps.
inline constexpr Class_ID DMTL_CLASS_ID(2, 0);
inline constexpr Class_ID MULTI_CLASS_ID(0x200, 0);
inline constexpr Class_ID BMTEX_CLASS_ID(0x240, 0);

// The id under which the Skin modifier hands out its ISkin.
inline constexpr uint32_t I_SKIN = 0x10000;
