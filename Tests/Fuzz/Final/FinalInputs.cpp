#include "Tests/Fuzz/Final/FinalInputs.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Anim.h"
#include "Tests/Shared/Cross/RenderAnim/Final/FinalModel.h"

namespace {

// The fixture's verbs without a test.
class FinalFiles : public FinalModelFixture {
public:
    using FinalModelFixture::Forget;
    using FinalModelFixture::MakeShader;
    using FinalModelFixture::Write;
    using FinalModelFixture::WriteMotion;

    static std::unique_ptr<RenderModel> MakeSample(FuzzedFile file) {
        std::unique_ptr<RenderModel> pModel = MakeModel();
        if (file == FuzzedFile::Motion)
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
    // The model that motion files are read into: of two animations the file's own one is missing.
    static std::unique_ptr<RenderModel> MakeBare() {
        std::unique_ptr<RenderModel> pModel = MakeModel();
        pModel->SetAnimList(std::make_unique<AnimList>(*pModel));
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
        static const ShaderRef& s_Shared = *new ShaderRef(FinalFiles::MakeShader("art/shared"));
        return s_Shared.IsValid();
    }();
    if (!s_started)
        std::abort();
}

[[noreturn]] void Stop(const char* pReason) {
    std::fprintf(stderr, "%s\n", pReason);
    std::abort();
}

std::string Write(FuzzedFile file, const RenderModel& model) {
    return file == FuzzedFile::Model ? FinalFiles::Write(model) : FinalFiles::WriteMotion(model);
}

// Null for a file that is refused.
std::unique_ptr<RenderModel> Read(FuzzedFile file, std::string_view bytes) {
    try {
        const auto pStream = MakeReadStream(bytes);
        if (file == FuzzedFile::Model)
            return ra::ReadFinal(*pStream);
        std::unique_ptr<RenderModel> pModel = FinalFiles::MakeBare();
        return ra::ReadFinalMotion(*pStream, *pModel) ? std::move(pModel) : nullptr;
    } catch (const Chunky::Exception&) {
        return nullptr;
    } catch (const ByteStream::Exception&) {
        return nullptr;
    } catch (const std::exception& exception) {
        Stop(exception.what());
    }
}

void CheckNothingIsLeft() {
    FinalFiles::Forget();
    if (Inv::GetCount(Anim::GetTypeInfo()) + Inv::GetCount(ra::Mesh::GetTypeInfo()) +
            Inv::GetCount(Texture::GetTypeInfo()) !=
        0)
        Stop("something of a model that is gone is held");
}

// The second generation: what a reader leaves out or mends is settled in the first.
void CheckStaysTheSame(FuzzedFile file, std::unique_ptr<RenderModel> pModel) {
    const std::string first = Write(file, *pModel);
    pModel.reset();
    CheckNothingIsLeft();
    pModel = Read(file, first);
    if (!pModel)
        Stop("a model that was read and written is refused");
    if (Write(file, *pModel) != first)
        Stop("a model that was read changed when it was written and read again");
}

} // namespace

std::vector<std::vector<uint8_t>> MakeFinalSeeds(FuzzedFile file) {
    StartServices();
    const std::string bytes = Write(file, *FinalFiles::MakeSample(file));
    FinalFiles::Forget();
    return {{bytes.begin(), bytes.end()}};
}

bool FeedFinalReader(FuzzedFile file, std::span<const uint8_t> input) {
    StartServices();
    // A failed assertion costs a stack walk each time; stepped over they must do no harm.
    const dbNoThrowScope stepOver;
    std::unique_ptr<RenderModel> pModel = Read(file, {reinterpret_cast<const char*>(input.data()), input.size()});
    const bool taken = pModel != nullptr;
    if (taken)
        CheckStaysTheSame(file, std::move(pModel));
    CheckNothingIsLeft();
    return taken;
}
