// What all handles have in common, and the environment, which has no more.
#pragma once

#include <mutex>

#include "odbc_driver/diagnostics.h"

namespace NOdbcDriver {

// Each call locks the handle's mutex. All that belongs to one connection shares the connection's: several
// threads may use it, one after the other, and different connections do not wait for one another.
class Handle {
  public:
    explicit Handle(std::mutex& mutex) : mutex_(mutex) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    [[nodiscard]] std::mutex& Mutex() const { return mutex_; }

    Diagnostics diagnostics;

  private:
    std::mutex& mutex_;
};

class Environment : public Handle {
  public:
    Environment() : Handle(ownMutex_) {}

    SQLINTEGER odbcVersion = SQL_OV_ODBC3;

  private:
    std::mutex ownMutex_;
};

}  // namespace NOdbcDriver
