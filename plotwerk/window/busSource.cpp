#include "plotwerk/window/busSource.h"

#include "plotwerk/window/guarded.h"

#include <chrono>
#include <ctime>
#include <poll.h>
#include <stdexcept>
#include <utility>

namespace plotwerk {

// GLib allocates it and knows its beginning.
struct BusSource::Source {
    GSource source;
    GPollFD waited;
    Server *server;
    std::function<void()> answered;
    std::function<void(const std::string &)> gone;
    bool more; // messages may be there that the descriptor doesn't tell of
    bool ended;
    bool suspended;
    bool letLoopRun; // while a message was answered: what it put off comes before the next one
};

namespace {

// When the bus has gone, that is told once.
template<class Source, class Work> void onBus(Source &bus, Work work) {
    guarded([&] {
        try {
            work();
        } catch (const std::runtime_error &error) {
            bus.ended = true;
            bus.gone(error.what());
        }
    });
}

template<class Source> gboolean prepare(GSource *base, gint *timeout) {
    auto &bus = *reinterpret_cast<Source *>(base);
    *timeout = -1;
    if (bus.ended || bus.suspended) return FALSE;
    if (bus.more) return TRUE;
    onBus(bus, [&] {
        const auto data = bus.server->pollData();
        bus.waited.events = static_cast<gushort>(data.events);
        *timeout = data.getPollTimeout();
    });
    return *timeout == 0;
}

template<class Source> gboolean check(GSource *base) {
    auto &bus = *reinterpret_cast<Source *>(base);
    if (bus.ended || bus.suspended) return FALSE;
    bool ready = bus.waited.revents != 0;
    if (!ready) onBus(bus, [&] { ready = bus.server->pollData().getPollTimeout() == 0; });
    return ready;
}

// Whether a message comes within the time that a client takes to send its next one.
bool messageFollows(const Server &server) {
    constexpr timespec soon{0, 200'000};
    const auto data = server.pollData();
    if (data.getPollTimeout() == 0) return true;
    pollfd waited{data.fd, data.events, 0};
    return ppoll(&waited, 1, &soon, nullptr) > 0;
}

// Coming round would cost the loop as much as answering a short message does.
template<class Source> gboolean dispatch(GSource *base, GSourceFunc, gpointer) {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds longest{2};
    auto &bus = *reinterpret_cast<Source *>(base);
    onBus(bus, [&] {
        const auto begin = Clock::now();
        bus.letLoopRun = false;
        do {
            bus.more = bus.server->processPending();
        } while (!bus.letLoopRun && Clock::now() - begin < longest &&
                 (bus.more || messageFollows(*bus.server)));
    });
    if (!bus.ended) guarded(bus.answered);
    return G_SOURCE_CONTINUE;
}

template<class Source> void finalize(GSource *base) {
    auto &bus = *reinterpret_cast<Source *>(base);
    std::destroy_at(&bus.answered);
    std::destroy_at(&bus.gone);
}

} // namespace

BusSource::BusSource(Server &server, std::function<void()> answered,
                     std::function<void(const std::string &)> gone) {
    static GSourceFuncs functions{prepare<Source>,  check<Source>, dispatch<Source>,
                                  finalize<Source>, nullptr,       nullptr};
    source = reinterpret_cast<Source *>(g_source_new(&functions, sizeof(Source)));
    source->server = &server;
    std::construct_at(&source->answered, std::move(answered));
    std::construct_at(&source->gone, std::move(gone));
    source->more = true;
    source->ended = false;
    source->suspended = false;
    source->letLoopRun = false;
    source->waited = {server.pollData().fd, 0, 0};
    g_source_set_name(&source->source, "bus");
    g_source_add_poll(&source->source, &source->waited);
    g_source_attach(&source->source, nullptr);
}

BusSource::~BusSource() {
    g_source_destroy(&source->source);
    g_source_unref(&source->source);
}

void BusSource::stayBehind(bool behind) {
    g_source_set_priority(&source->source, behind ? G_PRIORITY_LOW : G_PRIORITY_DEFAULT);
}

// Polled on, the descriptor of a message that nobody takes would keep the loop from waiting.
void BusSource::suspend() {
    source->suspended = source->letLoopRun = true;
    g_source_remove_poll(&source->source, &source->waited);
}

void BusSource::resume() {
    source->suspended = false;
    g_source_add_poll(&source->source, &source->waited);
}

} // namespace plotwerk
