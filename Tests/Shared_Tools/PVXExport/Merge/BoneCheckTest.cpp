#include "Shared_Tools/PVXExport/Merge/BoneCheck.h"

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Tests/Shared_Tools/PVXExport/Merge/MergeFixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct RestBone {
    std::string name;
    uint32_t parent; // 0xFFFFFFFF for none
    std::initializer_list<float> matrix;
};

constexpr uint32_t s_NoParent = 0xFFFFFFFF;

std::string MakeSkeletonChunk(const std::vector<RestBone>& bones) {
    PayloadBytes bytes;
    bytes.U32(static_cast<uint32_t>(bones.size()));
    for (const RestBone& bone : bones)
        bytes.Text(bone.name).U32(bone.parent).F32(bone.matrix);
    return ChunkBytes::Data("SKEL", bytes.Get(), 2);
}

BoneDifferences Compare(const std::string& file) {
    const std::unique_ptr<Skeleton> pSkeleton = ModelServices::MakeBones({"hip", "knee", "foot"});
    return BoneCheck(*pSkeleton).Compare(*MakeReadStream(file));
}

TEST(BoneCheck, TheSameBonesDifferInNothing) {
    EXPECT_TRUE(Compare(MakeAnimFile({"foot", "hip", "knee"})).IsEmpty());
    EXPECT_TRUE(Compare(MakeModelFile("")).IsEmpty()) << "nothing gets merged";
    ReportCapture reports;
    BoneCheck::Report("run.pvx", {});
    EXPECT_THAT(reports.GetWarnings(), IsEmpty());
}

TEST(BoneCheck, NamesAreThoseOfTheFirstAnimation) {
    const BoneDifferences differences =
        Compare(MakeModelFile(MakeAnimChunk({"hip", "tail", "Knee"}) + MakeAnimChunk({"horn"})));
    EXPECT_THAT(differences.missingInModel, ElementsAre("tail", "Knee"));
    EXPECT_THAT(differences.missingInFile, ElementsAre("knee", "foot"));
}

TEST(BoneCheck, ParentsAndRestAreThoseOfTheFilesSkeleton) {
    const std::string anim = MakeAnimChunk({"hip", "knee", "foot"});
    const RestBone hip{"hip", s_NoParent, {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 0}};
    const RestBone knee{"knee", 0, {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 2, 0}};
    const RestBone foot{"foot", 1, {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 3, 0}};
    const auto compare = [&](const std::vector<RestBone>& bones) {
        return Compare(MakeModelFile(MakeSkeletonChunk(bones) + anim));
    };
    EXPECT_TRUE(compare({hip, knee, foot}).IsEmpty());
    EXPECT_TRUE(compare({hip, {"knee", 0, {1, 0, 0, 0, 1, 0, 0, 0, 1, 0.001f, 2, 0}}, foot}).IsEmpty());

    // One that lies elsewhere takes those below it along, whose own rest is as it was.
    BoneDifferences differences = compare({hip,
                                           {"knee", 0, {1, 0, 0, 0, 1, 0, 0, 0, 1, 0.1f, 2, 0}},
                                           {"foot", 1, {1, 0, 0, 0, 1, 0, 0, 0, 1, 0.1f, 3, 0}}});
    EXPECT_THAT(differences.otherRest, ElementsAre("knee"));
    EXPECT_THAT(differences.otherParent, IsEmpty());

    differences = compare({hip, knee, {"foot", 0, {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 3, 0}}});
    EXPECT_THAT(differences.otherParent, ElementsAre("foot"));
    EXPECT_THAT(differences.otherRest, IsEmpty());

    differences = compare({{"hip", s_NoParent, {0, 1, 0, -1, 0, 0, 0, 0, 1, 0, 1, 0}}});
    EXPECT_THAT(differences.otherRest, ElementsAre("hip"));
    differences = compare({{"hip", s_NoParent, {NAN, 0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 0}}});
    EXPECT_THAT(differences.otherRest, ElementsAre("hip"));
}

TEST(BoneCheck, ALongListIsSeveralLines) {
    BoneDifferences differences;
    for (int i = 0; i < 100; ++i)
        differences.missingInModel.push_back("bone" + std::to_string(i));
    ReportCapture reports;
    BoneCheck::Report("run.pvx", differences);
    ASSERT_GT(reports.GetWarnings().size(), 3u);
    EXPECT_THAT(reports.GetWarnings()[0], testing::HasSubstr("bones: 0 of the model's"));
    std::string all;
    for (const std::string& line : reports.GetWarnings()) {
        EXPECT_LT(line.size(), 300u);
        all += line + ",";
    }
    for (const std::string& name : differences.missingInModel)
        EXPECT_THAT(all, testing::HasSubstr(name + ","));
}

TEST(BoneCheck, DamagedFilesThrow) {
    const std::string file = MakeAnimFile({"hip", "knee"});
    EXPECT_THROW(Compare(file.substr(0, file.size() - 60)), Chunky::Exception);
    EXPECT_THROW(Compare(MakeModelFile(ChunkBytes::Data("SKEL", "????", 2))), Chunky::Exception);
}

} // namespace
