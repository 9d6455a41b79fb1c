#include "Tests/Fuzz/Model/ModelInputs.h"

#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/Generic/GenericFile.h"
#include "Shared/Cross/RenderAnim/Generic/MotionFile.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Tests/Fuzz/ModelFuzz.h"

namespace {

class ToolsFiles : public ModelFuzz {
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
        pAnim->SetControlStream(pAnim->AddControl(ra::Name("Clay"), {.channel = 4, .property = 2}),
                                MakeStream<float>(0.25f, 0.5f));
        pAnim->SetControlStream(pAnim->AddControl(ra::Name("Body"), {.type = ControlTarget_Mesh}),
                                MakeStream<float>(0, 1));
        pAnim->SetCameraStreams(pAnim->AddCamera(ra::Name("Front")), MakeStream<glm::vec3>({7, 8, 9}, {0, 0, 0}),
                                nullptr);
        ra::AddAnimNode(*pModel, ra::MakeLocalNode(*pModel, std::move(pAnim)), 1);
        return pModel;
    }

    static std::unique_ptr<RenderModel> ReadIntermediate(std::string_view bytes) {
        return ra::ReadIntermediate(*MakeReadStream(bytes));
    }
    static std::unique_ptr<RenderModel> ReadGeneric(std::string_view bytes) {
        return ra::ReadGeneric(*MakeReadStream(bytes));
    }
    static std::unique_ptr<RenderModel> ReadMotion(std::string_view bytes) {
        std::unique_ptr<RenderModel> pModel = MakeBare<AnimListGeneric>();
        return ra::ReadMotionFile(*MakeReadStream(bytes), *pModel) ? std::move(pModel) : nullptr;
    }

    static std::string WriteIntermediate(const RenderModel& model) {
        const auto pStream = MakeWriteStream();
        ra::WriteIntermediate(*pStream, model, {});
        return BytesOf(*pStream);
    }
    static std::string WriteGeneric(const RenderModel& model) {
        const auto pStream = MakeWriteStream();
        ra::WriteGeneric(*pStream, model);
        return BytesOf(*pStream);
    }
    static std::string WriteMotion(const RenderModel& model) {
        const auto pStream = MakeWriteStream();
        ra::WriteMotionFile(*pStream, model);
        return BytesOf(*pStream);
    }
};

std::string MakeSeed(ToolsFile file) {
    switch (file) {
    case ToolsFile::Intermediate:
        return ToolsFiles::WriteIntermediate(*ToolsFiles::MakeSampled());
    case ToolsFile::Generic:
        return ToolsFiles::WriteGeneric(*ModelFuzz::MakeModel());
    default:
        return ToolsFiles::WriteMotion(*ModelFuzz::MakeMoved());
    }
}

} // namespace

std::vector<std::vector<uint8_t>> MakeToolsSeeds(ToolsFile file) {
    ModelFuzz::StartServices();
    const std::string bytes = MakeSeed(file);
    ModelFuzz::Forget();
    return {{bytes.begin(), bytes.end()}};
}

bool FeedToolsReader(ToolsFile file, std::span<const uint8_t> input) {
    const std::string_view bytes(reinterpret_cast<const char*>(input.data()), input.size());
    if (file == ToolsFile::Motion)
        return ModelFuzz::Feed(bytes, ToolsFiles::ReadMotion, ToolsFiles::WriteMotion, ToolsFiles::ReadMotion);
    return ModelFuzz::Feed(bytes, file == ToolsFile::Generic ? ToolsFiles::ReadGeneric : ToolsFiles::ReadIntermediate,
                           ToolsFiles::WriteGeneric, ToolsFiles::ReadGeneric);
}
