#include "Shared/Cross/Glaze/Device.h"

#include <algorithm>
#include <utility>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Glaze/Driver.h"
#include "Shared/Cross/Glaze/NullDevice.h"

namespace gz {

namespace {

struct State {
    std::unique_ptr<Device> pDevice;
    DeviceConfig config;
    std::vector<Driver*> drivers; // borrowed, in the order of their installation
};

State& GetState() {
    static State s_state;
    return s_state;
}

struct Found {
    Driver* pDriver = nullptr;
    DriverDevice device;
};

Found FindDriverDevice(const DeviceConfig& config) {
    for (Driver* pDriver : GetState().drivers)
        for (const DriverDevice& device : pDriver->GetDevices())
            if (device.adapter == config.adapter && device.name == config.name)
                return {.pDriver = pDriver, .device = device};
    return {};
}

const char* GetRefusal(const Driver& driver) {
    if (driver.GetVersion() != s_DriverVersion)
        return "DLL with different version number.";
    if (driver.GetRevision() != s_DriverRevision)
        return "DLL with different revision number.";
    if (!driver.IsSupported())
        return "Unsupported Device.";
    if (driver.GetDevices().empty())
        return "DLL with no devices.";
    return nullptr;
}

} // namespace

bool Start(const DeviceConfig& config) {
    State& state = GetState();
    if (state.pDevice) {
        dbWarningf("Already have an active device.");
        return false;
    }
    std::unique_ptr<Device> pDevice;
    if (config.name == "Null")
        pDevice = std::make_unique<NullDevice>();
    else if (config.driverFile.empty())
        if (const Found found = FindDriverDevice(config); found.pDriver) {
            pDevice = found.pDriver->CreateDevice(found.device);
            if (!pDevice) {
                dbWarningf("Unable to create device.");
                return false;
            }
            pDevice->OnEvent(s_DeviceCreatedEvent);
        }
    // Who asks for a device that nobody offers has started the wrong program.
    dbAssert(pDevice);
    if (!pDevice || !pDevice->Open(config)) {
        dbWarningf("Device didn't want to be opened.");
        return false;
    }
    state.pDevice = std::move(pDevice);
    state.config = config;
    dbPrintf("GLAZE - Driver[%s] on adapter[%d], version[%d,%d]", config.name.c_str(), static_cast<int>(config.adapter),
             static_cast<int>(s_DriverVersion), static_cast<int>(s_DriverRevision));
    return true;
}

void Stop() { GetState().pDevice.reset(); }

Device* GetDevice() { return GetState().pDevice.get(); }

const DeviceConfig& GetDeviceConfig() { return GetState().config; }

bool InstallDriver(Driver& driver) {
    if (const char* pRefusal = GetRefusal(driver)) {
        dbWarningf("%s", pRefusal);
        return false;
    }
    GetState().drivers.push_back(&driver);
    return true;
}

void RemoveDriver(const Driver& driver) { std::erase(GetState().drivers, &driver); }

} // namespace gz
