#include "Host/Sdk/ClassIds.h"
#include "Host/Sdk/Dialog.h"
#include "Host/Sdk/Listener.h"
#include "Host/Sdk/Plugin.h"
#include "Host/Sdk/Primitive.h"
#include "Shared/PC/FileSystem/DiskFileReplacement.h"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

// An exporter that does what the environment's TEST_MODULE says, and a few script commands.

namespace {

std::string Behaviour() {
    const char* pText = std::getenv("TEST_MODULE");
    return pText ? pText : "";
}

// The output in the machine's form: the tests use no other drive and no other case.
std::string Native(std::string_view name) {
    std::string native(name.substr(2));
    for (char& c : native)
        c = c == '\\' ? '/' : c;
    return native;
}

class TestExport : public SceneExport {
public:
    int ExtCount() const override { return 1; }
    const char* Ext(int) const override { return "PVX"; }
    const char* LongDesc() const override { return "Test"; }
    const char* ShortDesc() const override { return "Test"; }
    const char* AuthorName() const override { return "Test"; }
    const char* CopyrightMessage() const override { return ""; }
    const char* OtherMessage1() const override { return ""; }
    const char* OtherMessage2() const override { return ""; }
    unsigned Version() const override { return 2; }
    void ShowAbout(HWND) override {}

    int DoExport(const char* pName, ExpInterface*, Interface*, bool, uint32_t) override {
        const std::string behaviour = Behaviour();
        if (behaviour == "throw before writing")
            throw std::runtime_error("the exporter is out of order");
        if (behaviour == "interrupt beside") {
            const std::unique_ptr<FileReplacement> pFile = ReplaceFile(pName, false);
            pFile->GetStream().WriteText("a file that was begun", false);
            pFile->GetStream().Flush();
            std::raise(SIGINT);
        }
        std::ofstream(Native(pName), std::ios::binary) << "a file that was begun" << std::flush;
        if (behaviour == "interrupt while writing")
            std::raise(SIGINT);
        if (behaviour == "throw while writing")
            throw std::runtime_error("the exporter is out of order");
        return 1;
    }
};

class TestClassDesc : public ClassDesc2 {
public:
    bool IsPublic() const override { return true; }
    void* Create(bool) override { return static_cast<SceneExport*>(new TestExport); }
    const char* ClassName() const override { return "Test"; }
    SClass_ID SuperClassID() const override { return SCENE_EXPORT_CLASS_ID; }
    Class_ID ClassID() const override { return Class_ID(1, 2); }
    const char* Category() const override { return "Test"; }
};

TestClassDesc s_ClassDesc;

// Gives its arguments back as an array.
const Primitive s_Echo("test_echo", [](const Value* pArguments, int count) {
    return Value(Value::Array(pArguments, pArguments + count));
});
const Primitive s_Say("test_say", [](const Value* pArguments, int count) {
    CheckArgCount("test_say", 1, count);
    PutListenerText(pArguments[0].ToText().c_str());
    return Value(true);
});
const Primitive s_Refuse("test_refuse", [](const Value*, int) { return Value(false); });
const Primitive s_Throw("test_throw", [](const Value*, int) -> Value { throw std::runtime_error("out of order"); });

} // namespace

extern "C" {
bool DllMain(HINSTANCE, uint32_t, void*) { return true; }
const char* LibDescription() { return "Test module"; }
int LibNumberClasses() { return Behaviour() == "no classes" ? 0 : 1; }
ClassDesc* LibClassDesc(int index) { return index == 0 ? &s_ClassDesc : nullptr; }
uint32_t LibVersion() { return Behaviour() == "other version" ? 0x12345678 : SdkVersionWord; }
}
