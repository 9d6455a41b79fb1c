#include "Host/Sdk/Animatable.h"
#include "Host/Sdk/ClassIds.h"
#include "Host/Sdk/Interface.h"
#include "Host/Sdk/Listener.h"
#include "Host/Sdk/Material.h"
#include "Host/Sdk/Node.h"
#include "Host/Sdk/Object.h"
#include "Host/Sdk/Plugin.h"
#include "Host/Sdk/Skin.h"
#include "Host/Sdk/View.h"
#include "Host/Sdk/Window.h"

// The first virtual operation of each interface lives here, and with it the class's type information: host and modules
// then mean the same class.

Animatable::~Animatable() = default;
void* Animatable::GetInterface(uint32_t) { return nullptr; }
void Animatable::ReleaseInterface(uint32_t, void*) {}

Control::~Control() = default;
SClass_ID Control::SuperClassID() const { return CTRL_MATRIX3_CLASS_ID; }

Object::~Object() = default;

GeomObject::~GeomObject() = default;
SClass_ID GeomObject::SuperClassID() const { return GEOMOBJECT_CLASS_ID; }

Modifier::~Modifier() = default;
SClass_ID Modifier::SuperClassID() const { return OSM_CLASS_ID; }

IDerivedObject::~IDerivedObject() = default;
SClass_ID IDerivedObject::SuperClassID() const { return GEN_DERIVOB_CLASS_ID; }

XRefObject::~XRefObject() = default;
SClass_ID XRefObject::SuperClassID() const { return SYSTEM_CLASS_ID; }
Class_ID XRefObject::ClassID() const { return XREFOBJ_CLASS_ID; }

GenCamera::~GenCamera() = default;
SClass_ID GenCamera::SuperClassID() const { return CAMERA_CLASS_ID; }

ISkinContextData::~ISkinContextData() = default;
ISkin::~ISkin() = default;

MtlBase::~MtlBase() = default;

Mtl::~Mtl() = default;
SClass_ID Mtl::SuperClassID() const { return MATERIAL_CLASS_ID; }

StdMat::~StdMat() = default;
Class_ID StdMat::ClassID() const { return DMTL_CLASS_ID; }

UVGen::~UVGen() = default;
SClass_ID UVGen::SuperClassID() const { return UVGEN_CLASS_ID; }

StdUVGen::~StdUVGen() = default;

Texmap::~Texmap() = default;
SClass_ID Texmap::SuperClassID() const { return TEXMAP_CLASS_ID; }

BitmapTex::~BitmapTex() = default;
Class_ID BitmapTex::ClassID() const { return BMTEX_CLASS_ID; }

INode::~INode() = default;
Interface::~Interface() = default;
View::~View() = default;

ClassDesc::~ClassDesc() = default;
ClassDesc2::~ClassDesc2() = default;
ExpInterface::~ExpInterface() = default;
SceneExport::~SceneExport() = default;

CharStream::~CharStream() = default;
DialogShower::~DialogShower() = default;
