#include "Tests/Fuzz/Model/ModelInputs.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/Generic/GenericFile.h"
#include "Shared/Cross/RenderAnim/Generic/MotionFile.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Tests/Shared/Cross/RenderAnim/Final/FinalModel.h"

namespace {

using Reader = std::unique_ptr<RenderModel> (*)(std::string_view bytes);
using Writer = std::string (*)(const RenderModel& model);

// The fixture's verbs without a test.
class ToolsFiles : public FinalModelFixture {
public:
    using FinalModelFixture::Forget;
    using FinalModelFixture::MakeModel;
    using FinalModelFixture::MakeShader;

    static std::unique_ptr<RenderModel> MakeMoved() {
        std::unique_ptr<RenderModel> pModel = MakeModel();
        pModel->GetAnimList()->GetNode(1)->SetXRefModel(ra::Name("art/other"));
        MotionSide side;
        side.AddSamples();
        const ra::MotionParts parts = pModel->GetMotionParts();
        parts.events = std::move(side.events);
        parts.clauses = std::move(side.clauses);
        parts.conditions = std::move(side.conditions);
        parts.modifiers = std::move(side.modifiers);
        parts.motions = std::move(side.motions);
        parts.actions = std::move(side.actions);
        return pModel;
    }
    // With its animation as the exporter samples it.
    static std::unique_ptr<RenderModel> MakeSampled() {
        std::unique_ptr<RenderModel> pModel = MakeModel();
        pModel->SetAnimList(std::make_unique<AnimListGeneric>(*pModel));
        auto pAnim = std::make_unique<AnimInterm>();
        pAnim->SetName("walk");
        pAnim->SetBoneCount(2);
        for (const int32_t bone : {0, 1}) {
            pAnim->SetBoneName(bone, ra::Name(bone == 0 ? "hip" : "knee"));
            pAnim->SetBoneAnimated(bone, true);
            const std::span<MatrixKey> keys = pAnim->MakeMatrixStream(bone, 2);
            keys[0] = {0, glm::mat4x3(1.0f)};
            keys[1] = {1, {{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}, {4, 5, 6}}};
        }
        pAnim->SetControlStream(pAnim->AddControl(ra::Name("Clay"), {.channel = 4, .property = 2}),
                                MakeStream<float>(0.25f, 0.5f));
        pAnim->SetControlStream(pAnim->AddControl(ra::Name("Body"), {.type = ControlTarget_Mesh}),
                                MakeStream<float>(0, 1));
        pAnim->SetCameraStreams(pAnim->AddCamera(ra::Name("Front")), MakeStream<glm::vec3>({7, 8, 9}, {0, 0, 0}),
                                nullptr);
        ra::AddAnimNode(*pModel, ra::MakeLocalNode(*pModel, std::move(pAnim)), 1);
        return pModel;
    }
    // The model that motion files are read into: of two animations the file's own one is missing.
    static std::unique_ptr<RenderModel> MakeBare() {
        std::unique_ptr<RenderModel> pModel = MakeModel();
        pModel->SetAnimList(std::make_unique<AnimListGeneric>(*pModel));
        AddAnim(*pModel, "walk");
        return pModel;
    }

private:
    void TestBody() override {}
};

// What models stand on, for the whole program.
void StartServices() {
    static const bool s_started = [] {
        dbSetThrowOnAssert(true);
        gz::Start({.name = "Null"});
        Inv::Initialize();
        // Never let go: what the file of a shared shader would bring.
        static const ShaderRef& s_Shared = *new ShaderRef(ToolsFiles::MakeShader("art/shared"));
        return s_Shared.IsValid();
    }();
    if (!s_started)
        std::abort();
}

[[noreturn]] void Stop(const char* pReason) {
    std::fprintf(stderr, "%s\n", pReason);
    std::abort();
}

std::unique_ptr<RenderModel> ReadIntermediate(std::string_view bytes) {
    return ra::ReadIntermediate(*MakeReadStream(bytes));
}

std::unique_ptr<RenderModel> ReadGeneric(std::string_view bytes) { return ra::ReadGeneric(*MakeReadStream(bytes)); }

std::unique_ptr<RenderModel> ReadMotion(std::string_view bytes) {
    std::unique_ptr<RenderModel> pModel = ToolsFiles::MakeBare();
    return ra::ReadMotionFile(*MakeReadStream(bytes), *pModel) ? std::move(pModel) : nullptr;
}

std::string WriteIntermediate(const RenderModel& model) {
    const auto pStream = MakeWriteStream();
    ra::WriteIntermediate(*pStream, model, {});
    return BytesOf(*pStream);
}

std::string WriteGeneric(const RenderModel& model) {
    const auto pStream = MakeWriteStream();
    ra::WriteGeneric(*pStream, model);
    return BytesOf(*pStream);
}

std::string WriteMotion(const RenderModel& model) {
    const auto pStream = MakeWriteStream();
    ra::WriteMotionFile(*pStream, model);
    return BytesOf(*pStream);
}

// Null for a file that is refused.
std::unique_ptr<RenderModel> Read(Reader pReader, std::string_view bytes) {
    try {
        return pReader(bytes);
    } catch (const Chunky::Exception&) {
        return nullptr;
    } catch (const ByteStream::Exception&) {
        return nullptr;
    } catch (const std::exception& exception) {
        Stop(exception.what());
    }
}

void CheckNothingIsLeft() {
    ToolsFiles::Forget();
    if (Inv::GetCount(Anim::GetTypeInfo()) + Inv::GetCount(ra::Mesh::GetTypeInfo()) +
            Inv::GetCount(Texture::GetTypeInfo()) !=
        0)
        Stop("something of a model that is gone is held");
}

std::unique_ptr<RenderModel> ReadAgain(std::unique_ptr<RenderModel> pModel, Writer pWriter, Reader pReader) {
    const std::string bytes = pWriter(*pModel);
    pModel.reset();
    CheckNothingIsLeft();
    pModel = Read(pReader, bytes);
    if (!pModel)
        Stop("a model that was read and written is refused");
    return pModel;
}

// The third generation: what a reader leaves out or mends, and what only an intermediate model holds, is settled then.
void CheckStaysTheSame(std::unique_ptr<RenderModel> pModel, Writer pWriter, Reader pReader) {
    pModel = ReadAgain(std::move(pModel), pWriter, pReader);
    const std::string bytes = pWriter(*pModel);
    pModel = ReadAgain(std::move(pModel), pWriter, pReader);
    if (pWriter(*pModel) != bytes)
        Stop("a model that was read changed when it was written and read again");
}

} // namespace

std::vector<std::vector<uint8_t>> MakeToolsSeeds(ToolsFile file) {
    StartServices();
    const std::string bytes = file == ToolsFile::Intermediate ? WriteIntermediate(*ToolsFiles::MakeSampled())
                              : file == ToolsFile::Generic    ? WriteGeneric(*ToolsFiles::MakeModel())
                                                              : WriteMotion(*ToolsFiles::MakeMoved());
    ToolsFiles::Forget();
    return {{bytes.begin(), bytes.end()}};
}

bool FeedToolsReader(ToolsFile file, std::span<const uint8_t> input) {
    StartServices();
    // A failed assertion costs a stack walk each time; stepped over they must do no harm.
    const dbNoThrowScope stepOver;
    const bool isMotion = file == ToolsFile::Motion;
    const Reader pFirstReader = file == ToolsFile::Intermediate ? ReadIntermediate
                                : isMotion                      ? ReadMotion
                                                                : ReadGeneric;
    std::unique_ptr<RenderModel> pModel =
        Read(pFirstReader, {reinterpret_cast<const char*>(input.data()), input.size()});
    const bool taken = pModel != nullptr;
    if (taken)
        CheckStaysTheSame(std::move(pModel), isMotion ? WriteMotion : WriteGeneric,
                          isMotion ? ReadMotion : ReadGeneric);
    CheckNothingIsLeft();
    return taken;
}
