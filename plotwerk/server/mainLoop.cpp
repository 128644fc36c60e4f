#include "plotwerk/server/mainLoop.h"

#include "plotwerk/base/programs.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <sys/signalfd.h>
#include <unistd.h>

namespace plotwerk {

// SIGTERM and SIGINT end the server, SIGCHLD tells of programs that it has started.
static sigset_t heldSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGTERM, SIGINT, SIGCHLD}) sigaddset(&signals, signal);
    return signals;
}

void holdSignals() {
    const sigset_t signals = heldSignals();
    sigprocmask(SIG_BLOCK, &signals, nullptr);
}

namespace {

// The held signals as they arrive.
class SignalQueue {
  public:
    SignalQueue() {
        const sigset_t signals = heldSignals();
        descriptor = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
        if (descriptor < 0)
            throw std::runtime_error(std::string("signalfd: ") + std::strerror(errno));
    }
    ~SignalQueue() { close(descriptor); }
    SignalQueue(const SignalQueue &) = delete;
    SignalQueue &operator=(const SignalQueue &) = delete;

    pollfd pollData() const { return {descriptor, POLLIN, 0}; }

    // Takes those that have arrived. True when the server is to end.
    bool endIsSignalled() const {
        bool end = false;
        for (signalfd_siginfo info; read(descriptor, &info, sizeof info) == sizeof info;) {
            if (info.ssi_signo == SIGCHLD)
                reapChildren();
            else
                end = true;
        }
        return end;
    }

  private:
    int descriptor;
};

} // namespace

void runUntilSignal(Server &server) {
    const SignalQueue signals;
    // The signals are looked at between any two messages, however fast these come.
    pollfd waited[2] = {signals.pollData(), {}};
    do {
        const bool more = server.processPending();
        const auto bus = server.pollData();
        waited[1] = {bus.fd, bus.events, 0};
        poll(waited, 2, more ? 0 : bus.getPollTimeout());
    } while (!(waited[0].revents & POLLIN) || !signals.endIsSignalled());
}

} // namespace plotwerk
