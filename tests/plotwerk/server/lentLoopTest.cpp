// The server in a process whose loop is somebody else's, as a window's is.
#include "plotwerk/server/server.h"
#include "tests/plotwerk/server/serverTest.h"

#include <csignal>
#include <future>
#include <poll.h>

using plotwerk::Application;
using plotwerk::Server;

static bool isBlocked(int signal) {
    sigset_t blocked;
    sigprocmask(SIG_BLOCK, nullptr, &blocked);
    return sigismember(&blocked, signal) == 1;
}

TEST(LentLoop, AnswersAllMessagesFromItsDescriptorAndLeavesSignalsAlone) {
    const PrivateBus bus;
    Application application;
    application.add({});
    Server server(application);

    // Ten messages are on their way before the first is answered: they are read together.
    const auto connection = sdbus::createSessionBusConnection();
    Plotwerk client(*connection);
    const auto control = sdbus::createProxy(*connection, busName, objectPath);
    for (int i = 0; i < 10; ++i) {
        sdbus::MethodCall call = control->createMethodCall(busName, "newDocumentWithName_");
        call << std::to_string(i);
        call.dontExpectReply();
        control->callMethod(call);
    }
    auto front = std::async(std::launch::async, [&] { return client.documentNameOfFrontWindow(); });
    waitUntil("the answer", [&] {
        const auto data = server.pollData();
        pollfd waited{data.fd, data.events, 0};
        if (poll(&waited, 1, 10) == 1 || data.getPollTimeout() == 0)
            while (server.processPending()) {
            }
        return front.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    });
    for (const int signal : {SIGTERM, SIGINT, SIGCHLD}) EXPECT_FALSE(isBlocked(signal)) << signal;
    EXPECT_EQ(front.get(), "9");
}
