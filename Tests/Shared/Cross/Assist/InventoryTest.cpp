#include "Shared/Cross/Assist/Inventory.h"

#include "Tests/Shared/Cross/Assist/TestResources.h"

#include <stdexcept>
#include <unordered_map>

#include "Shared/Cross/Util/Hash.h"

namespace {

class Inventory : public InventoryFixture {};

std::string Translate(const char* pName) {
    std::string name;
    GetThings().TranslateName(name, pName);
    return name;
}

} // namespace

TEST_F(Inventory, TranslatesNames) {
    const std::pair<const char*, const char*> names[] = {{"DATA:Art\\Foo.tga", "art/foo"},
                                                         {"art/foo", "art/foo"},
                                                         {"A:B:c.d.e", "c.d"},
                                                         {"v1.2\\Rock", "v1.2/rock"},
                                                         {"", ""},
                                                         {"only:", ""}};
    for (const auto& [pName, pExpected] : names)
        EXPECT_EQ(Translate(pName), pExpected) << pName;
}

TEST_F(Inventory, LoadsOnceUnderAnySpelling) {
    GetThings().m_Shelf = {"DATA:Art\\Foo.tga"};
    const Inv::Handle<Thing> first = Get("DATA:Art\\Foo.tga");
    ASSERT_TRUE(first.IsValid());
    EXPECT_EQ(first, Get("art/foo"));
    EXPECT_EQ(GetThings().m_Loads, std::vector<std::string>{"DATA:Art\\Foo.tga"});
    EXPECT_STREQ(first->GetName(), "art/foo");
    EXPECT_EQ(GetCount(), 1u);
    Inv::DebugToolDumpInfo dump;
    Inv::Dump(dump);
    EXPECT_EQ(dump.GetItems().at(0).frame, "_ROOT_FRAME_");
    EXPECT_EQ(dump.GetItems().at(0).refCount, 1u);
}

TEST_F(Inventory, AFailedLoadGivesTheDefaultOnce) {
    ReportCapture capture;
    EXPECT_EQ(Get("art/none")->m_Contents, "default");
    EXPECT_EQ(Get("art/none")->m_Contents, "default");
    EXPECT_EQ(ReportCapture::CountWarnings("Unable to load 'Thing' resource 'art/none', using default!"), 1u);
    EXPECT_EQ(GetThings().m_Loads.size(), 1u);
    GetThings().m_HasDefault = false;
    EXPECT_FALSE(Get("art/neither").IsValid());
    EXPECT_EQ(GetCount(), 1u);
}

TEST_F(Inventory, LoadsEnd) {
    ReportCapture capture;
    GetThings().m_Shelf = {"a", "b"};
    GetThings().m_OnLoad = [](const std::string& name) { Get(name == "a" ? "b" : "A"); };
    EXPECT_TRUE(Get("a").IsValid());
    EXPECT_TRUE(Find("b").IsValid());
    EXPECT_EQ(GetThings().m_Loads.size(), 2u);
    EXPECT_TRUE(ReportCapture::HasWarning("Thing resource 'A' refers to itself!"));
    // An exception ends a load as well.
    GetThings().m_OnLoad = [](const std::string&) { throw std::runtime_error("damaged"); };
    EXPECT_THROW(Get("c"), std::runtime_error);
    GetThings().m_OnLoad = nullptr;
    EXPECT_EQ(Get("c")->m_Contents, "default");
}

TEST_F(Inventory, FramesShadowAndSearchesGoUp) {
    const Inv::Handle<Thing> root = Put("rock");
    Inv::PushFrame("level");
    EXPECT_EQ(Find("rock"), root);
    const Inv::Handle<Thing> inner = Put("rock");
    const Inv::Handle<Thing> innerOnly = Put("inner only");
    EXPECT_EQ(Find("ROCK"), inner);
    {
        const Inv::RootFrameScope inRoot;
        EXPECT_EQ(Find("rock"), root);
    }
    EXPECT_EQ(Find("rock"), inner);
    for (int i = 0; i < 2; ++i) { // the root stays
        Inv::PopFrame();
        EXPECT_EQ(Find("rock"), root);
        EXPECT_FALSE(Find("inner only").IsValid());
        EXPECT_STREQ(Inv::GetCurrentFrameName(), "_ROOT_FRAME_");
    }
    Inv::PushFrame("LEVEL");
    EXPECT_EQ(Find("rock"), inner) << "the frame of that name is used again";
    Inv::PushFrame("level");
    EXPECT_EQ(Find("inner only"), innerOnly) << "a frame of the same name inside it is another";
    Put("deep");
    Inv::PopFrame();
    EXPECT_FALSE(Find("deep").IsValid());
}

TEST_F(Inventory, EqualNamesAndEqualKeysAreReportedAndAllGoIn) {
    std::unordered_map<uint32_t, std::string> known;
    std::string first, second;
    for (int i = 0; first.empty(); ++i) {
        second = "rock" + std::to_string(i);
        const auto [it, isNew] = known.emplace(HashNoCase(second), second);
        if (!isNew)
            first = it->second;
    }
    ReportCapture capture;
    const Inv::Handle<Thing> a = Put(first.c_str()), b = Put(second.c_str());
    EXPECT_TRUE(ReportCapture::HasWarning("Frame '_ROOT_FRAME_': '" + second + "' Key collision with '" + first +
                                          "' added to inventory."));
    EXPECT_EQ(Find(second.c_str()), b);
    EXPECT_NE(Put(first.c_str()), a);
    EXPECT_EQ(Find(first.c_str()), a) << "the first one";
    EXPECT_EQ(GetCount(), 3u);
    EXPECT_TRUE(ReportCapture::HasWarning("Frame '_ROOT_FRAME_': Duplicate Thing resource '" + first +
                                          "' added to inventory - please check the resource!"));
}

TEST_F(Inventory, MistakesOfAdding) {
    ReportCapture capture;
    Inv::Handle<Thing> rock = Put("rock");
    EXPECT_THROW(Inv::Add(std::unique_ptr<Inv::Resource>(rock.GetResource()), GetThings()), std::runtime_error);
    EXPECT_TRUE(ReportCapture::HasWarning("Inventory -- 'rock': Attempted addition of duplicate resource pointer!"));
    EXPECT_EQ(rock->m_Contents, "made");
    Inv::Handle<Thing> other;
    EXPECT_THROW(other.Set(std::make_unique<Thing>()), std::runtime_error);
    EXPECT_THROW(other.Set(nullptr), std::runtime_error);
    EXPECT_EQ(GetCount(), 1u);
}

TEST_F(Inventory, HandlesCountReferences) {
    Inv::Handle<Thing> rock = Put("rock");
    EXPECT_THROW(rock->SetName("stone"), std::runtime_error);
    const Inv::Resource* pResource = rock.GetResource();
    EXPECT_EQ(pResource->GetRefCount(), 1u);
    {
        Inv::Handle<Thing> copy = rock;
        Inv::Handle<Thing> moved = std::move(copy);
        EXPECT_EQ(pResource->GetRefCount(), 2u);
        moved = rock;
        EXPECT_EQ(pResource->GetRefCount(), 2u);
    }
    rock.Reset();
    EXPECT_EQ(pResource->GetRefCount(), 0u);
    EXPECT_THROW(rock.operator->(), std::runtime_error);
}

TEST_F(Inventory, ReloadsUnderEveryHolder) {
    ReportCapture capture;
    GetThings().m_Shelf = {"rock"};
    const Inv::Handle<Thing> rock = Get("rock");
    Inv::Reload("rock", GetThings());
    Inv::ReloadAll(GetThings());
    EXPECT_EQ(rock->m_Contents, "loaded 3");
    EXPECT_STREQ(rock->GetName(), "rock");
    EXPECT_TRUE(rock->IsInInventory());
    EXPECT_EQ(Find("rock"), rock);
    EXPECT_EQ(Thing::s_Alive, 1);
    GetThings().m_Shelf.clear();
    Inv::Reload("rock", GetThings());
    EXPECT_EQ(rock->m_Contents, "loaded 3");
    EXPECT_TRUE(ReportCapture::HasWarning("Unable to reload resource rock, using original copy!"));
    Inv::Reload("stone", GetThings());
    EXPECT_TRUE(ReportCapture::HasWarning("Unable to find resource stone -- cannot reload!"));
    GetThings().m_SupportsReload = false;
    Inv::Reload("rock", GetThings());
    EXPECT_TRUE(ReportCapture::HasWarning("Resource group Thing does not support reloads!"));
}

TEST_F(Inventory, PreloadsFallBackOnTheDefault) {
    ReportCapture capture;
    const Inv::Handle<Thing> rock = Put("rock"), stone = Put("stone");
    GetThings().m_Shelf = {"stone"};
    Inv::PreloadAll(GetThings());
    EXPECT_EQ(rock->m_Contents, "default");
    EXPECT_TRUE(stone->m_Contents.starts_with("loaded"));
    EXPECT_TRUE(ReportCapture::HasWarning("Unable to preload resource rock, using default!"));
    Inv::Preload("none", GetThings());
    EXPECT_TRUE(ReportCapture::HasWarning("Unable to find resource none -- cannot preload!"));
    GetThings().m_HasDefault = false;
    EXPECT_THROW(Inv::Preload("rock", GetThings()), std::runtime_error);
    EXPECT_EQ(rock->m_Contents, "default");
}
