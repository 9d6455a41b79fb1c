#pragma once

#include <memory>

namespace gz {

// The base of all device objects. They are identities: neither copied nor moved.
class Object {
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;
};

// A device object with several holders, which lives until the last of them lets go.
class Core : public Object, public std::enable_shared_from_this<Core> {
public:
    // One more hold on this object. Only for an object that is already held by a shared pointer, as every one is that
    // a device makes.
    std::shared_ptr<Core> Reference() { return shared_from_this(); }
};

} // namespace gz
