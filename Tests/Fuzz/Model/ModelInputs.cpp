#include "Tests/Fuzz/Model/ModelInputs.h"

#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/Generic/GenericFile.h"
#include "Shared/Cross/RenderAnim/Generic/MotionFile.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Tests/Fuzz/Model/ModelFuzz.h"

namespace {

class ModelFiles : public ModelFuzz {
public:
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
        AddControlsAndCamera(*pAnim);
        ra::AddAnimNode(*pModel, ra::MakeLocalNode(*pModel, std::move(pAnim)), 1);
        return pModel;
    }

    static std::unique_ptr<RenderModel> ReadIntermediate(std::string_view bytes) {
        return ra::ReadIntermediate(*MakeReadStream(bytes));
    }
    static std::unique_ptr<RenderModel> ReadGeneric(std::string_view bytes) {
        return ra::ReadGeneric(*MakeReadStream(bytes));
    }
    static std::unique_ptr<RenderModel> ReadGenericMotion(std::string_view bytes) {
        std::unique_ptr<RenderModel> pModel = MakeBare<AnimListGeneric>();
        return ra::ReadMotionFile(*MakeReadStream(bytes), *pModel) ? std::move(pModel) : nullptr;
    }
    static std::unique_ptr<RenderModel> ReadFinal(std::string_view bytes) {
        return ra::ReadFinal(*MakeReadStream(bytes));
    }
    static std::unique_ptr<RenderModel> ReadFinalMotion(std::string_view bytes) {
        std::unique_ptr<RenderModel> pModel = MakeBare<AnimList>();
        return ra::ReadFinalMotion(*MakeReadStream(bytes), *pModel) ? std::move(pModel) : nullptr;
    }

    static std::string WriteIntermediate(const RenderModel& model) {
        return WriteFile([&](ByteStream& stream) { ra::WriteIntermediate(stream, model, {}); });
    }
    static std::string WriteGeneric(const RenderModel& model) {
        return WriteFile([&](ByteStream& stream) { ra::WriteGeneric(stream, model); });
    }
    static std::string WriteGenericMotion(const RenderModel& model) {
        return WriteFile([&](ByteStream& stream) { ra::WriteMotionFile(stream, model); });
    }
    static std::string WriteFinal(const RenderModel& model) { return Write(model); }
    static std::string WriteFinalMotion(const RenderModel& model) { return WriteMotion(model); }
};

// How a kind of file comes about and is read, and how what was read of it is written and read again.
struct FileKind {
    std::unique_ptr<RenderModel> (*pMake)();
    ModelFuzz::Writer pWriteSeed;
    ModelFuzz::Reader pReadInput;
    ModelFuzz::Writer pWrite;
    ModelFuzz::Reader pRead;
};

const FileKind& KindOf(ModelFile file) {
    using F = ModelFiles;
    static constexpr FileKind s_Kinds[] = {
        {F::MakeSampled, F::WriteIntermediate, F::ReadIntermediate, F::WriteGeneric, F::ReadGeneric},
        {F::MakeModel, F::WriteGeneric, F::ReadGeneric, F::WriteGeneric, F::ReadGeneric},
        {F::MakeMoved, F::WriteGenericMotion, F::ReadGenericMotion, F::WriteGenericMotion, F::ReadGenericMotion},
        {F::MakeModel, F::WriteFinal, F::ReadFinal, F::WriteFinal, F::ReadFinal},
        {F::MakeMoved, F::WriteFinalMotion, F::ReadFinalMotion, F::WriteFinalMotion, F::ReadFinalMotion},
    };
    return s_Kinds[static_cast<size_t>(file)];
}

} // namespace

std::vector<std::vector<uint8_t>> MakeModelSeeds(ModelFile file) {
    ModelFuzz::StartServices();
    const std::string bytes = KindOf(file).pWriteSeed(*KindOf(file).pMake());
    ModelFuzz::Forget();
    return {{bytes.begin(), bytes.end()}};
}

bool FeedModelReader(ModelFile file, std::span<const uint8_t> input) {
    const FileKind& kind = KindOf(file);
    return ModelFuzz::Feed({reinterpret_cast<const char*>(input.data()), input.size()}, kind.pReadInput, kind.pWrite,
                           kind.pRead);
}
