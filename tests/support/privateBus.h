// privateBus.h - a message bus of the test's own, so that no test meets another or the user's
// session.
#ifndef PLW_TESTS_SUPPORT_PRIVATEBUS_H
#define PLW_TESTS_SUPPORT_PRIVATEBUS_H

#include "tests/support/process.h"

#include <memory>
#include <string>

namespace sdbus {
class IConnection;
}

// A dbus-daemon that starts no services. While it lives it is the session bus of this process and
// of its children (DBUS_SESSION_BUS_ADDRESS); afterwards there is none.
class PrivateBus {
  public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    bool hasOwner(const std::string &name) const;

    // Return when somebody, or nobody, owns the name; std::runtime_error at the deadline.
    void waitForOwner(const std::string &name) const;
    void waitForNoOwner(const std::string &name) const;

    // Ends the bus under its clients' feet.
    void stop();

  private:
    ChildProcess daemon;
    std::unique_ptr<sdbus::IConnection> observer;
};

#endif
