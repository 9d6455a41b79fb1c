#pragma once

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>
#include <string_view>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Anim.h"
#include "Tests/Shared/Cross/RenderAnim/Final/FinalModel.h"

// What the fuzz tests of model files have in common: the fixture's verbs without a test, and what has to hold whatever
// a file was made of. Whatever doesn't stops the program.
class ModelFuzz : public FinalModelFixture {
public:
    using Reader = std::unique_ptr<RenderModel> (*)(std::string_view bytes);
    using Writer = std::string (*)(const RenderModel& model);

    using FinalModelFixture::Forget;
    using FinalModelFixture::MakeModel;
    using FinalModelFixture::MakeMoved;

    // What models stand on, for the whole program.
    static void StartServices() {
        static const bool s_started = [] {
            dbSetThrowOnAssert(true);
            gz::Start({.name = "Null"});
            Inv::Initialize();
            // Never let go: what the file of a shared shader would bring.
            static const ShaderRef& s_Shared = *new ShaderRef(MakeShader("art/shared"));
            return s_Shared.IsValid();
        }();
        if (!s_started)
            std::abort();
    }

    // The model that motion files are read into: of two animations the file's own one is missing.
    template <class List>
    static std::unique_ptr<RenderModel> MakeBare() {
        std::unique_ptr<RenderModel> pModel = MakeModel();
        pModel->SetAnimList(std::make_unique<List>(*pModel));
        AddAnim(*pModel, "walk");
        return pModel;
    }

    // Null for a file that is refused.
    static std::unique_ptr<RenderModel> Read(Reader pReader, std::string_view bytes) {
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

    static void CheckNothingIsLeft() {
        Forget();
        if (Inv::GetCount(Anim::GetTypeInfo()) + Inv::GetCount(ra::Mesh::GetTypeInfo()) +
                Inv::GetCount(Texture::GetTypeInfo()) !=
            0)
            Stop("something of a model that is gone is held");
    }

    // What a reader leaves out or mends is settled in the second generation, and what only an intermediate model holds.
    static void CheckStaysTheSame(std::unique_ptr<RenderModel> pModel, Writer pWriter, Reader pReader) {
        pModel = ReadAgain(std::move(pModel), pWriter, pReader);
        const std::string bytes = pWriter(*pModel);
        pModel = ReadAgain(std::move(pModel), pWriter, pReader);
        if (pWriter(*pModel) != bytes)
            Stop("a model that was read changed when it was written and read again");
    }

    // True when a model came out of it.
    static bool Feed(std::string_view bytes, Reader pFirstReader, Writer pWriter, Reader pReader) {
        StartServices();
        // A failed assertion costs a stack walk each time; stepped over they must do no harm.
        const dbNoThrowScope stepOver;
        std::unique_ptr<RenderModel> pModel = Read(pFirstReader, bytes);
        const bool taken = pModel != nullptr;
        if (taken)
            CheckStaysTheSame(std::move(pModel), pWriter, pReader);
        CheckNothingIsLeft();
        return taken;
    }

private:
    [[noreturn]] static void Stop(const char* pReason) {
        std::fprintf(stderr, "%s\n", pReason);
        std::abort();
    }

    static std::unique_ptr<RenderModel> ReadAgain(std::unique_ptr<RenderModel> pModel, Writer pWriter, Reader pReader) {
        const std::string bytes = pWriter(*pModel);
        pModel.reset();
        CheckNothingIsLeft();
        pModel = Read(pReader, bytes);
        if (!pModel)
            Stop("a model that was read and written is refused");
        return pModel;
    }

    void TestBody() override {}
};
