#pragma once

#include "Host/Sdk/Types.h"

class Interface;

// What a module is to the host: five functions found by name, descriptors of its classes, and the exporter class.

// Describes one class of a module. The module owns it; it lives as long as the module is loaded.
class ClassDesc {
public:
    virtual ~ClassDesc();

    // True when users may pick the class.
    virtual bool IsPublic() const = 0;
    // A new object of the class, which the caller owns and deletes as what SuperClassID says: SCENE_EXPORT_CLASS_ID
    // makes a SceneExport. `loading`: the object is about to be filled from a file.
    virtual void* Create(bool loading = false) = 0;
    virtual const char* ClassName() const = 0;
    virtual SClass_ID SuperClassID() const = 0;
    virtual Class_ID ClassID() const = 0;
    virtual const char* Category() const = 0;
};

class ClassDesc2 : public ClassDesc {
public:
    ~ClassDesc2() override;

    // A fixed name for scripts.
    virtual const char* InternalName() const { return nullptr; }
    virtual HINSTANCE HInstance() const { return nullptr; }
};

// The part of the host that exporters of old walked the scene with. Nothing is asked of it.
class ExpInterface {
public:
    virtual ~ExpInterface();
};

// An exporter of whole scenes to one kind of file.
class SceneExport {
public:
    virtual ~SceneExport();

    // The file extensions, without a point; the empty text past the end.
    virtual int ExtCount() const = 0;
    virtual const char* Ext(int n) const = 0;

    // Texts for the user.
    virtual const char* LongDesc() const = 0;
    virtual const char* ShortDesc() const = 0;
    virtual const char* AuthorName() const = 0;
    virtual const char* CopyrightMessage() const = 0;
    virtual const char* OtherMessage1() const = 0;
    virtual const char* OtherMessage2() const = 0;

    // Times 100: 2 is version 0.02.
    virtual unsigned Version() const = 0;
    virtual void ShowAbout(HWND hWnd) = 0;

    // Exports the open scene to the file `pName`. Returns 1 for success and cancel, 0 for failure.
    virtual int DoExport(const char* pName, ExpInterface* pExp, Interface* pInterface, bool suppressPrompts = false,
                         uint32_t options = 0) = 0;

    virtual int SupportsOptions(int /*ext*/, uint32_t /*options*/) const { return 0; }
};

// The reasons for a call of DllMain.
inline constexpr uint32_t DLL_PROCESS_DETACH = 0;
inline constexpr uint32_t DLL_PROCESS_ATTACH = 1;

// The module's functions, of plain C linkage. The host calls DllMain with DLL_PROCESS_ATTACH before anything else, and
// with DLL_PROCESS_DETACH before it lets go of the module.
using DllMainFunction = bool (*)(HINSTANCE handle, uint32_t reason, void* pReserved);
using LibDescriptionFunction = const char* (*)();
using LibNumberClassesFunction = int (*)();
using LibClassDescFunction = ClassDesc* (*)(int index);
using LibVersionFunction = uint32_t (*)();

// The version word that this host asks of a module.
inline constexpr uint32_t SdkVersionWord = 0x23281500;
