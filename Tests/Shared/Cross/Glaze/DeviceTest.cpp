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
    explicit TestDevice(bool opens) : m_Opens(opens) {}
    bool Open(const DeviceConfig&) override { return m_Opens; }
    void OnEvent(uint32_t event) override { s_Event = event; }
    static inline uint32_t s_Event = 0;

private:
    bool m_Opens;
};

class TestDriver : public Driver {
public:
    TestDriver() = default;
    TestDriver(uint32_t version, uint32_t revision, bool supported, std::vector<DriverDevice> devices)
        : m_Version(version), m_Revision(revision), m_Supported(supported), m_Devices(std::move(devices)) {}
    ~TestDriver() override { RemoveDriver(*this); }

    uint32_t GetVersion() const override { return m_Version; }
    uint32_t GetRevision() const override { return m_Revision; }
    bool IsSupported() const override { return m_Supported; }
    const std::vector<DriverDevice>& GetDevices() const override { return m_Devices; }
    std::unique_ptr<Device> CreateDevice(const DriverDevice& device) override {
        m_Asked = device.adapter;
        return m_Creates ? std::make_unique<TestDevice>(m_Opens) : nullptr;
    }

    bool m_Creates = true;
    bool m_Opens = true;
    uint32_t m_Asked = 0;

private:
    uint32_t m_Version = 4;
    uint32_t m_Revision = 32;
    bool m_Supported = true;
    std::vector<DriverDevice> m_Devices = {{.name = "Card", .adapter = 0}, {.name = "Card", .adapter = 1}};
};

class DeviceTest : public testing::Test {
protected:
    ~DeviceTest() override { Stop(); }
    ReportCapture m_Reports;
};

TEST_F(DeviceTest, ThereIsOneAtMost) {
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

TEST_F(DeviceTest, NamesAreComparedExactly) {
    for (const char* pName : {"null", "NULL", "Null ", ""})
        EXPECT_THROW(Start({.name = pName}), std::runtime_error) << pName;
    EXPECT_EQ(GetDevice(), nullptr);
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
}

TEST_F(DeviceTest, ADriverMayFail) {
    TestDriver driver;
    ASSERT_TRUE(InstallDriver(driver));
    driver.m_Opens = false;
    EXPECT_FALSE(Start({.name = "Card"}));
    EXPECT_TRUE(ReportCapture::HasWarning("Device didn't want to be opened."));
    driver.m_Creates = false;
    EXPECT_FALSE(Start({.name = "Card"}));
    EXPECT_TRUE(ReportCapture::HasWarning("Unable to create device."));
    EXPECT_EQ(GetDevice(), nullptr);
}

TEST_F(DeviceTest, DriversThatDontFitAreRefused) {
    struct Case {
        TestDriver driver;
        const char* pReason;
    } cases[] = {{{5, 32, true, {{"Card", 0}}}, "DLL with different version number."},
                 {{4, 31, true, {{"Card", 0}}}, "DLL with different revision number."},
                 {{4, 32, false, {{"Card", 0}}}, "Unsupported Device."},
                 {{4, 32, true, {}}, "DLL with no devices."}};
    for (Case& wrong : cases) {
        EXPECT_FALSE(InstallDriver(wrong.driver));
        EXPECT_TRUE(ReportCapture::HasWarning(wrong.pReason)) << wrong.pReason;
    }
}

TEST_F(DeviceTest, TheNullDeviceTellsWhatItIs) {
    const DeviceInfo info = NullDevice().GetInfo();
    EXPECT_STREQ(info.pDriver, "glaze NULL driver");
    EXPECT_STREQ(info.pDescription, "Dummy Device structure");
    EXPECT_STREQ(info.pName, "null");
}

TEST_F(DeviceTest, PrimitiveSetsKeepWhatTheyAreGiven) {
    NullDevice device;
    const std::unique_ptr<VertexSet> pVertices = device.MakeVertexSet();
    ASSERT_TRUE(pVertices->Create(ComponentBit(VC_Position), 8));
    const std::shared_ptr<gz::Shader> pShader = device.MakeShader();
    const std::unique_ptr<PrimSet> pSet = device.MakePrimSet(*pVertices, pShader, 2);
    pSet->SetUp(pVertices->AddRange(2, 3), 3, PrimKind_TriangleList);
    pSet->SetIndices(std::array<uint16_t, 3>{4, 3, 2});

    const std::unique_ptr<PrimSet> pCopy = device.MakePrimSet(*pVertices, nullptr, 1);
    pCopy->CopyFrom(*pSet);
    EXPECT_THAT(pCopy->GetIndices(), ElementsAre(4, 3, 2));
    EXPECT_EQ(pCopy->GetRange(), (VertexRange{.start = 2, .count = 3}));
    EXPECT_EQ(pCopy->GetRangeId(), 1u);
    EXPECT_EQ(pCopy->GetShader(), nullptr);
    EXPECT_EQ(pSet->GetShader(), pShader.get());
    EXPECT_THROW(pSet->SetIndices(std::array<uint16_t, 4>{}), std::runtime_error);
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
