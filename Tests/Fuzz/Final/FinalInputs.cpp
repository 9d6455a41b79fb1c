#include "Tests/Fuzz/Final/FinalInputs.h"

#include "Tests/Fuzz/ModelFuzz.h"

namespace {

class FinalFiles : public ModelFuzz {
public:
    static std::unique_ptr<RenderModel> ReadModel(std::string_view bytes) {
        return ra::ReadFinal(*MakeReadStream(bytes));
    }
    static std::unique_ptr<RenderModel> ReadMotionSide(std::string_view bytes) {
        std::unique_ptr<RenderModel> pModel = MakeBare<AnimList>();
        return ra::ReadFinalMotion(*MakeReadStream(bytes), *pModel) ? std::move(pModel) : nullptr;
    }
    static std::string WriteModel(const RenderModel& model) { return Write(model); }
    using FinalModelFixture::WriteMotion;
};

} // namespace

std::vector<std::vector<uint8_t>> MakeFinalSeeds(FuzzedFile file) {
    ModelFuzz::StartServices();
    const std::string bytes = file == FuzzedFile::Model ? FinalFiles::WriteModel(*ModelFuzz::MakeModel())
                                                        : FinalFiles::WriteMotion(*ModelFuzz::MakeMoved());
    ModelFuzz::Forget();
    return {{bytes.begin(), bytes.end()}};
}

bool FeedFinalReader(FuzzedFile file, std::span<const uint8_t> input) {
    const bool isModel = file == FuzzedFile::Model;
    const ModelFuzz::Reader pReader = isModel ? FinalFiles::ReadModel : FinalFiles::ReadMotionSide;
    const ModelFuzz::Writer pWriter = isModel ? FinalFiles::WriteModel : FinalFiles::WriteMotion;
    return ModelFuzz::Feed({reinterpret_cast<const char*>(input.data()), input.size()}, pReader, pWriter, pReader);
}
