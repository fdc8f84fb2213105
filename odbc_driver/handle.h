// What all handles have in common, and the environment, which has no more.
#pragma once

#include <cstdint>
#include <mutex>

#include "odbc_driver/diagnostics.h"

namespace NOdbcDriver {

// Rare numbers: a driver manager may mix up its own handles and those of a driver.
enum class HandleKind : std::uint32_t {
    Environment = 0x584C'0E56,
    Connection = 0x584C'0DBC,
    Statement = 0x584C'0573,
    Descriptor = 0x584C'0DE5,
};

// Each call locks the handle's mutex. All that belongs to one connection shares the connection's: several
// threads may use it, one after the other, and different connections do not wait for one another.
class Handle {
  public:
    Handle(HandleKind itsKind, std::mutex& mutex) : kind(itsKind), mutex_(mutex) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    [[nodiscard]] std::mutex& Mutex() const { return mutex_; }

    const HandleKind kind;  // first: nothing else is read of a handle that may be someone else's
    Diagnostics diagnostics;

  private:
    std::mutex& mutex_;
};

// The object of a handle that a program gives; NULL for no handle and for one of another kind.
template <typename Object>
Object* FindObject(void* handle) {
    auto* const object = static_cast<Object*>(handle);
    return object != nullptr && object->kind == Object::kKind ? object : nullptr;
}

class Environment : public Handle {
  public:
    static constexpr HandleKind kKind = HandleKind::Environment;

    Environment() : Handle(kKind, ownMutex_) {}

    SQLINTEGER odbcVersion = SQL_OV_ODBC3;

  private:
    std::mutex ownMutex_;
};

}  // namespace NOdbcDriver
