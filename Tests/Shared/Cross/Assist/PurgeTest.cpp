#include "Shared/Cross/Assist/Inventory.h"

#include "Tests/Shared/Cross/Assist/TestResources.h"

#include <stdexcept>

namespace {

class Purge : public InventoryFixture {
protected:
    // Each needs the next, and nobody else needs any.
    static void PutChain(const std::vector<const char*>& names) {
        Inv::Handle<Thing> next;
        for (auto it = names.rbegin(); it != names.rend(); ++it) {
            Inv::Handle<Thing> thing = Put(*it);
            thing->m_Part = next;
            next = thing;
        }
    }
};

} // namespace

TEST_F(Purge, GoesOnWhileObjectsLoseTheirLastReference) {
    const Inv::Handle<Thing> rock = Put("rock");
    // Whatever order the keys have, some links need a further pass.
    PutChain({"a", "b", "c", "d", "e", "f"});
    EXPECT_EQ(Thing::s_Alive, 7);
    Inv::PurgeUnreferenced(GetThings());
    EXPECT_EQ(GetCount(), 1u);
    EXPECT_EQ(rock->m_Contents, "made");
    EXPECT_FALSE(Find("a").IsValid());
}

TEST_F(Purge, RemovesOneRecordOfItsFrame) {
    Inv::Handle<Thing> rock = Put("rock");
    Inv::Resource* pRock = rock.GetResource();
    Inv::Remove(pRock, GetThings());
    EXPECT_EQ(GetCount(), 1u) << "still referred to";
    rock.Reset();
    Inv::PushFrame("level");
    EXPECT_THROW(Inv::Remove(pRock, GetThings()), std::runtime_error) << "of another frame";
    Inv::PopFrame();
    EXPECT_THROW(Inv::Release(*pRock, 0), std::runtime_error) << "has none to give back";
    Inv::Remove(pRock, GetThings());
    EXPECT_EQ(Thing::s_Alive, 0);
}

TEST_F(Purge, EverythingAndEveryFrameGoesAtTheEnd) {
    ReportCapture capture;
    Inv::PushFrame("level");
    PutChain({"a", "b", "c", "d", "e", "f"});
    Inv::PurgeUnreferenced();
    Put("rock");
    Inv::PurgeAll();
    EXPECT_EQ(Thing::s_Alive, 0);
    EXPECT_STREQ(Inv::GetCurrentFrameName(), "_ROOT_FRAME_");
    EXPECT_TRUE(capture.GetWarnings().empty());
    EXPECT_THROW(Inv::Initialize(), std::runtime_error) << "it is there";
    Inv::Shutdown();
    EXPECT_THROW(Inv::Shutdown(), std::runtime_error);
}

TEST_F(Purge, WhatIsStillReferredToIsLoggedAndLetGo) {
    ReportCapture capture;
    Inv::Resource* pRock = Put("rock").GetResource();
    Thing* pThing = static_cast<Thing*>(pRock->GetData());
    Inv::AddRef(*pRock);
    Inv::PurgeAll();
    EXPECT_TRUE(ReportCapture::HasWarning("Purging: Resource [Thing]-[rock] still referenced!"));
    EXPECT_TRUE(ReportCapture::HasWarning("Assertion of (m_RefCount == 0) failed."));
    EXPECT_EQ(Thing::s_Alive, 1);
    EXPECT_FALSE(pThing->IsInInventory());
    delete pThing;
}

TEST_F(Purge, OneThatGoesLaterGivesItsReferenceBackInPeace) {
    ReportCapture capture;
    // Among these pairs there are some whose part comes first in the order of keys.
    std::vector<std::pair<std::string, Thing*>> parts;
    for (int i = 0; i < 8; ++i) {
        const std::string number = std::to_string(i);
        PutChain({("holder" + number).c_str(), ("part" + number).c_str()});
        parts.emplace_back("part" + number, Find(("part" + number).c_str()).GetData());
    }
    Inv::PurgeAll();
    EXPECT_FALSE(ReportCapture::HasWarning("Assertion"));
    EXPECT_GT(Thing::s_Alive, 0);
    EXPECT_LT(Thing::s_Alive, 8);
    for (const auto& [name, pThing] : parts)
        if (ReportCapture::HasWarning("Purging: Resource [Thing]-[" + name + "] still referenced!"))
            delete pThing;
}
