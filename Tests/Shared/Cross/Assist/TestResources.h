#pragma once

#include "Shared/Cross/Assist/DebugToolDumpInfo.h"
#include "Shared/Cross/Assist/Inventory.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

// A kind of resource that tests can have fail. What can be loaded is what a test puts on the shelf.
class Thing : public Inv::NamedResource {
public:
    explicit Thing(std::string contents = {}) : m_Contents(std::move(contents)) { ++s_Alive; }
    ~Thing() override { --s_Alive; }

    static Inv::ResourceTypeInfo& GetTypeInfo();

    std::string m_Contents;
    Inv::Handle<Thing> m_Part; // another thing that this one needs

    static inline int s_Alive = 0;
};

class ThingTypeInfo : public Inv::ResourceTypeInfo {
public:
    const char* GetTypeName() const override { return "Thing"; }
    bool SupportsReload() const override { return m_SupportsReload; }
    std::unique_ptr<Inv::NamedResource> CreateDefault(const char*) override {
        return m_HasDefault ? std::make_unique<Thing>("default") : nullptr;
    }
    std::unique_ptr<Inv::NamedResource> Load(const char* pName) override {
        m_Loads.push_back(pName);
        if (m_OnLoad)
            m_OnLoad(pName);
        return m_Shelf.contains(pName) ? std::make_unique<Thing>("loaded " + std::to_string(m_Loads.size())) : nullptr;
    }
    void Report(Inv::DebugToolDumpInfo& sink, const Inv::Resource&, const char* pName, const char* pFrameName,
                uint32_t refCount) const override {
        sink.Add({Inv::DebugToolDumpInfo::ItemType::Other, GetTypeName(), pName, pFrameName, refCount});
    }

    std::set<std::string> m_Shelf;
    std::vector<std::string> m_Loads;
    std::function<void(const std::string&)> m_OnLoad;
    bool m_HasDefault = true;
    bool m_SupportsReload = true;
};

inline ThingTypeInfo& GetThings() {
    static ThingTypeInfo s_Info;
    return s_Info;
}

inline Inv::ResourceTypeInfo& Thing::GetTypeInfo() { return GetThings(); }

// A warehouse for each test, with nothing left of it afterwards.
class InventoryFixture : public testing::Test {
protected:
    InventoryFixture() {
        GetThings() = ThingTypeInfo();
        Inv::Initialize();
    }
    ~InventoryFixture() override {
        if (Inv::IsInitialized())
            Inv::Shutdown();
        EXPECT_EQ(Thing::s_Alive, 0);
    }

    static Inv::Handle<Thing> Get(const char* pName) {
        Inv::Handle<Thing> handle;
        handle.Get(pName);
        return handle;
    }
    static Inv::Handle<Thing> Find(const char* pName) {
        Inv::Handle<Thing> handle;
        handle.Find(pName);
        return handle;
    }
    static Inv::Handle<Thing> Put(const char* pName) {
        auto pThing = std::make_unique<Thing>("made");
        pThing->SetName(pName);
        Inv::Handle<Thing> handle;
        handle.Set(std::move(pThing));
        return handle;
    }
    static uint32_t GetCount() { return Inv::GetCount(GetThings()); }
};
