#include "Shared_Tools/PVXExport/Merge/BoneCheck.h"

#include "Tests/Shared_Tools/PVXExport/Merge/MergeFixture.h"

using testing::ElementsAre;

namespace {

// A bone whose axes are the world's; the parent by its index, -1 for none.
struct RestBone {
    std::string name;
    int32_t parent;
    float x, y;
};

std::string MakeSkeletonChunk(const std::vector<RestBone>& bones) {
    PayloadBytes bytes;
    bytes.U32(static_cast<uint32_t>(bones.size()));
    for (const auto& [name, parent, x, y] : bones)
        bytes.Text(name).U32(static_cast<uint32_t>(parent)).F32({1, 0, 0, 0, 1, 0, 0, 0, 1, x, y, 0});
    return ChunkBytes::Data("SKEL", bytes.Get(), 2);
}

BoneDifferences Compare(const std::string& children) {
    const std::unique_ptr<Skeleton> pSkeleton = ModelServices::MakeBones({"hip", "knee", "foot"});
    return BoneCheck(*pSkeleton).Compare(*MakeReadStream(MakeModelFile(children)));
}

TEST(BoneCheck, NamesAreThoseOfTheFirstAnimation) {
    EXPECT_TRUE(Compare(MakeAnimChunk({"foot", "hip", "knee"})).IsEmpty());
    EXPECT_TRUE(Compare("").IsEmpty()) << "nothing gets merged";
    const BoneDifferences differences = Compare(MakeAnimChunk({"hip", "tail", "Knee"}) + MakeAnimChunk({"horn"}));
    EXPECT_THAT(differences.missingInModel, ElementsAre("tail", "Knee"));
    EXPECT_THAT(differences.missingInFile, ElementsAre("knee", "foot"));
}

TEST(BoneCheck, ParentsAndRestAreThoseOfTheFilesSkeleton) {
    const struct {
        std::vector<RestBone> bones;
        std::vector<std::string> otherParent, otherRest;
    } cases[] = {
        {{{"hip", -1, 0, 1}, {"knee", 0, 0, 2}, {"foot", 1, 0, 3}}, {}, {}},
        {{{"hip", -1, 0, 1}, {"knee", 0, 0.001f, 2}, {"foot", 1, 0, 3}}, {}, {}},        // too little to see
        {{{"hip", -1, 0, 1}, {"knee", 0, 0.1f, 2}, {"foot", 1, 0.1f, 3}}, {}, {"knee"}}, // which takes the foot along
        {{{"hip", -1, 0, 1}, {"knee", 0, 0, 2}, {"foot", 0, 0, 3}}, {"foot"}, {}},
        {{{"hip", -1, NAN, 1}}, {}, {"hip"}},
    };
    for (const auto& [bones, otherParent, otherRest] : cases) {
        const BoneDifferences differences = Compare(MakeSkeletonChunk(bones) + MakeAnimChunk({"hip", "knee", "foot"}));
        EXPECT_EQ(differences.otherParent, otherParent);
        EXPECT_EQ(differences.otherRest, otherRest);
        EXPECT_TRUE(differences.missingInFile.empty() && differences.missingInModel.empty());
    }
    const std::string turned =
        PayloadBytes().U32(1).Text("hip").U32(0xFFFFFFFF).F32({0, 1, 0, -1, 0, 0, 0, 0, 1, 0, 1, 0}).Get();
    EXPECT_THAT(Compare(ChunkBytes::Data("SKEL", turned, 2) + MakeAnimChunk({"hip"})).otherRest, ElementsAre("hip"));
}

TEST(BoneCheck, ALongListIsSeveralLines) {
    BoneDifferences differences;
    for (int i = 0; i < 100; ++i)
        differences.missingInModel.push_back("bone" + std::to_string(i));
    ReportCapture reports;
    BoneCheck::Report("run.pvx", differences);
    ASSERT_GT(reports.GetWarnings().size(), 3u);
    std::string all;
    for (const std::string& line : reports.GetWarnings()) {
        EXPECT_LT(line.size(), 300u);
        all += line + ",";
    }
    for (const std::string& name : differences.missingInModel)
        EXPECT_THAT(all, testing::HasSubstr(name + ","));
}

} // namespace
