// server.h - the application on the session bus.
#ifndef PLOTWERK_SERVER_SERVER_H
#define PLOTWERK_SERVER_SERVER_H

#include "plotwerk/application/application.h"
#include "plotwerk/server/busObject.h"
#include "plotwerk/server/controlObject.h"

#include <chrono>
#include <memory>

namespace plotwerk {

// It has no loop of its own: whoever has one waits for what pollData says and then calls
// processPending until that is false. Messages are answered in there and nowhere else. Both throw
// std::runtime_error "the bus has gone: REASON".
class Server {
  public:
    // Publishes the control object and owns its name, with a line in the log.
    // Throws std::runtime_error: no session bus, or the name has an owner (unique name and pid).
    explicit Server(Application &application);

    // Brings back the documents that were left behind, as Application::recover does. No message
    // is to be answered meanwhile.
    void recover(const Application::GoesOn &goesOn = [] { return true; });

    // As ControlObject::perform.
    void perform(const RecordedMessage &message) { controlObject.perform(message); }

    // Hears of messages as ControlObject::listener does.
    void setListener(std::function<void(const RecordedMessage &)> listener);

    // A descriptor, the events and the time to wait for. To be asked for again before every wait:
    // events and time change. When getPollTimeout() is 0, a message has been read already and no
    // event may come for it: that counts as ready.
    sdbus::IConnection::PollData pollData() const;

    // Answers one message if there is one; clients that have sent some take turns. True: there may
    // be more that no event tells of.
    bool processPending();

  private:
    bool readMessage();
    bool readMessages();

    Application &application;
    std::unique_ptr<sdbus::IConnection> bus;
    ControlObject controlObject;
    BusObject busObject;
    std::chrono::steady_clock::time_point lastRead; // of all that had come
};

} // namespace plotwerk

#endif
