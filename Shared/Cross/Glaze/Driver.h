#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace gz {

class Device;

constexpr uint32_t s_DriverVersion = 4;
constexpr uint32_t s_DriverRevision = 32;

struct DriverDevice {
    std::string name;
    uint32_t adapter = 0;
};

// A module that draws. The tools never need one; a program that does hands its driver in before it starts a device.
class Driver {
public:
    virtual ~Driver() = default;
    virtual uint32_t GetVersion() const = 0;
    virtual uint32_t GetRevision() const = 0;
    virtual bool IsSupported() const = 0; // on this machine
    virtual const std::vector<DriverDevice>& GetDevices() const = 0;
    // Null when the device can't be made.
    virtual std::unique_ptr<Device> CreateDevice(const DriverDevice& device) = 0;
};

// False, with the reason in the log, for a driver that doesn't fit this build or has nothing to offer. Installed
// drivers are asked in the order of their installation; one must stay until it is removed or the process ends.
bool InstallDriver(Driver& driver);
void RemoveDriver(const Driver& driver);

} // namespace gz
