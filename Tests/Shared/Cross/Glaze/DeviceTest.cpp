#include <array>

#include <gmock/gmock.h>

#include "Shared/Cross/Glaze/Device.h"
#include "Shared/Cross/Glaze/Driver.h"
#include "Shared/Cross/Glaze/NullDevice.h"
#include "Shared/Cross/Glaze/PrimSet.h"
#include "Shared/Cross/Glaze/Shader.h"
#include "Shared/Cross/Glaze/Texture.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"

using namespace gz;
using testing::ElementsAre;

namespace {

class TestDevice : public NullDevice {
public:
    bool Open(const DeviceConfig&) override { return s_Opens; }
    void OnEvent(uint32_t event) override { s_Event = event; }
    static inline bool s_Opens = true;
    static inline uint32_t s_Event = 0;
};

class TestDriver : public Driver {
public:
    ~TestDriver() override { RemoveDriver(*this); }

    uint32_t GetVersion() const override { return m_Version; }
    uint32_t GetRevision() const override { return m_Revision; }
    bool IsSupported() const override { return m_Supported; }
    const std::vector<DriverDevice>& GetDevices() const override { return m_Devices; }
    std::unique_ptr<Device> CreateDevice(const DriverDevice& device) override {
        m_Asked = device.adapter;
        return m_Creates ? std::make_unique<TestDevice>() : nullptr;
    }

    uint32_t m_Version = 4;
    uint32_t m_Revision = 32;
    bool m_Supported = true;
    std::vector<DriverDevice> m_Devices = {{.name = "Card", .adapter = 0}, {.name = "Card", .adapter = 1}};
    bool m_Creates = true;
    uint32_t m_Asked = 0;
};

class DeviceTest : public testing::Test {
protected:
    ~DeviceTest() override { Stop(); }
    ReportCapture m_Reports;
};

TEST_F(DeviceTest, ThereIsOneAtMost) {
    for (const char* pName : {"null", "Null "})
        EXPECT_THROW(Start({.name = pName}), std::runtime_error) << pName;
    EXPECT_TRUE(Start({.name = "Null"}));
    EXPECT_TRUE(ReportCapture::HasError("GLAZE - Driver[Null] on adapter[0], version[4,32]"));
    Device* pFirst = GetDevice();
    ASSERT_NE(pFirst, nullptr);
    EXPECT_FALSE(Start({.name = "Null"}));
    EXPECT_TRUE(ReportCapture::HasWarning("Already have an active device."));
    EXPECT_EQ(GetDevice(), pFirst);
    Stop();
    EXPECT_EQ(GetDevice(), nullptr);
    EXPECT_TRUE(Start({.name = "Null"}));
}

TEST_F(DeviceTest, ADriversDeviceIsFoundByNameAndAdapter) {
    TestDriver driver;
    ASSERT_TRUE(InstallDriver(driver));
    EXPECT_TRUE(Start({.name = "Card", .adapter = 1}));
    EXPECT_EQ(driver.m_Asked, 1u);
    EXPECT_EQ(TestDevice::s_Event, 0x10000003u);
    EXPECT_EQ(GetDeviceConfig().adapter, 1u);
    Stop();
    EXPECT_THROW(Start({.name = "Card", .adapter = 2}), std::runtime_error);
    EXPECT_THROW(Start({.name = "Card", .adapter = 1, .driverFile = "card.dll"}), std::runtime_error);
    TestDevice::s_Opens = false;
    EXPECT_FALSE(Start({.name = "Card"}));
    TestDevice::s_Opens = true;
    EXPECT_TRUE(ReportCapture::HasWarning("Device didn't want to be opened."));
    driver.m_Creates = false;
    EXPECT_FALSE(Start({.name = "Card"}));
    EXPECT_TRUE(ReportCapture::HasWarning("Unable to create device."));
    EXPECT_EQ(GetDevice(), nullptr);
}

TEST_F(DeviceTest, DriversThatDontFitAreRefused) {
    const std::pair<const char*, void (*)(TestDriver&)> faults[] = {
        {"DLL with different version number.", [](TestDriver& driver) { driver.m_Version = 5; }},
        {"DLL with different revision number.", [](TestDriver& driver) { driver.m_Revision = 31; }},
        {"Unsupported Device.", [](TestDriver& driver) { driver.m_Supported = false; }},
        {"DLL with no devices.", [](TestDriver& driver) { driver.m_Devices.clear(); }}};
    for (const auto& [pReason, spoil] : faults) {
        TestDriver driver;
        spoil(driver);
        EXPECT_FALSE(InstallDriver(driver));
        EXPECT_TRUE(ReportCapture::HasWarning(pReason)) << pReason;
    }
}

TEST_F(DeviceTest, PrimitiveSetsKeepWhatTheyAreGiven) {
    NullDevice device;
    const std::unique_ptr<VertexSet> pVertices = device.MakeVertexSet();
    ASSERT_TRUE(pVertices->Create(ComponentBit(VC_Position), 8));
    const std::unique_ptr<PrimSet> pSet = device.MakePrimSet(*pVertices, device.MakeShader(), 2);
    pSet->SetUp(pVertices->AddRange(2, 3), 3, PrimKind_TriangleList);
    pSet->SetIndices(std::array<uint16_t, 3>{4, 3, 2});
    EXPECT_THROW(pSet->SetIndices(std::array<uint16_t, 4>{}), std::runtime_error);
    const std::unique_ptr<PrimSet> pCopy = device.MakePrimSet(*pVertices, nullptr, 1);
    pCopy->CopyFrom(*pSet);
    EXPECT_THAT(pCopy->GetIndices(), ElementsAre(4, 3, 2));
    EXPECT_EQ(pCopy->GetRange(), (VertexRange{.start = 2, .count = 3}));
    EXPECT_EQ(pCopy->GetRangeId(), 1u);
    EXPECT_TRUE(pSet->GetShader() && !pCopy->GetShader());
}

TEST_F(DeviceTest, TexturesTakeTheirLevels) {
    const std::shared_ptr<gz::Texture> pTexture = NullDevice().MakeTexture();
    EXPECT_FALSE(pTexture->Create(0, 4, 1, 1));
    EXPECT_FALSE(pTexture->Create(4097, 4, 1, 1));
    EXPECT_FALSE(pTexture->Create(8, 4, 1, 5));
    ASSERT_TRUE(pTexture->Create(8, 4, 1, 4));
    const std::array<std::byte, 2> pixels = {std::byte{1}, std::byte{2}};
    EXPECT_TRUE(pTexture->SetLevel(3, pixels));
    EXPECT_FALSE(pTexture->SetLevel(4, pixels));
    EXPECT_THAT(pTexture->GetLevel(3), ElementsAre(std::byte{1}, std::byte{2}));
    EXPECT_TRUE(pTexture->GetLevel(0).empty());
}

} // namespace
