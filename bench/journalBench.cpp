// journalBench: what a message costs with its journal, beside a plotwerkd --no-journal.
//
// Each work is done on both in turn, now one first and now the other, on documents of their own.
// What is printed is the time that the sender of a message waits, the ratio, and that of the
// processor's time in plotwerkd; all are medians over the pairs.
#include "protocol/PlotwerkControlNames.h"
#include "protocol/PlotwerkControlProxy.h"
#include "tests/support/privateBus.h"
#include "tests/support/temporaryFolder.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

// A plotwerkd on a bus of its own.
class Plotwerk final : public sdbus::ProxyInterfaces<org::plotwerk::PlotwerkControl_proxy> {
  public:
    explicit Plotwerk(sdbus::IConnection &bus)
        : ProxyInterfaces(bus, INTERFACE_NAME, plotwerkControl::objectPath) {
        registerProxy();
    }
    ~Plotwerk() { unregisterProxy(); }
};

struct Side {
    explicit Side(const std::vector<std::string> &command) : program(command) {
        bus.waitForOwner(Plotwerk::INTERFACE_NAME);
        connection = sdbus::createSessionBusConnection();
        plotwerk = std::make_unique<Plotwerk>(*connection);
    }
    PrivateBus bus;
    ChildProcess program;
    std::unique_ptr<sdbus::IConnection> connection;
    std::unique_ptr<Plotwerk> plotwerk;

    // Of the processor, in seconds.
    double timeUsed() const {
        clockid_t clock;
        timespec time{};
        clock_getcpuclockid(program.pid(), &clock);
        clock_gettime(clock, &time);
        return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    }
};

struct Times {
    double wall, processor;
};

struct Work {
    const char *what;
    int pairs, messages;
    std::function<void(Plotwerk &)> prepare, work;
};

} // namespace

static constexpr const char *document = "doc";

static std::string rowsOfData(int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += std::to_string(i) + ".25\t" + std::to_string(count - i) + ".123456\n";
    return text;
}

static Times timesOf(const Work &work, const Side &side) {
    Plotwerk &plotwerk = *side.plotwerk;
    plotwerk.newDocumentWithName_(document);
    work.prepare(plotwerk);
    const auto begin = std::chrono::steady_clock::now();
    const double used = side.timeUsed();
    work.work(plotwerk);
    const double usedMeanwhile = side.timeUsed() - used;
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    plotwerk.closeDocument_askForSave_(document, false);
    return {time.count(), usedMeanwhile};
}

static double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

int main() {
    const TemporaryFolder folder;
    const std::filesystem::path &state = folder.path;
    setenv("XDG_STATE_HOME", state.c_str(), 1);

    const std::string rows = rowsOfData(1000), manyRows = rowsOfData(100'000);
    const auto append = [](Plotwerk &plotwerk, const std::string &text) {
        plotwerk.readDataformText_of_source_doRangeOverAll_appendToExistingData_(text, document, "",
                                                                                 true, true);
    };
    const auto nothing = [](Plotwerk &) {};
    const auto large = [&](Plotwerk &plotwerk) {
        append(plotwerk, manyRows);
        plotwerk.selectCurvesOf_indexFirst_indexLast_appendSelection_(document, 0, 0, false);
        plotwerk.setFormulaOf_formulaText_(document, "y+x");
    };
    const Work works[] = {
        {"readData -a, 100 times 1,000 rows", 61, 100, nothing,
         [&](Plotwerk &plotwerk) {
             for (int i = 0; i < 100; ++i) append(plotwerk, rows);
         }},
        {"readData -a, 1,000 times one row", 61, 1000, nothing,
         [&](Plotwerk &plotwerk) {
             for (int i = 0; i < 1000; ++i) append(plotwerk, "1.25 2.5\n");
         }},
        {"readData, 1e5 rows, 5 times", 31, 5, nothing,
         [&](Plotwerk &plotwerk) {
             for (int i = 0; i < 5; ++i)
                 plotwerk.replaceDataformText_of_source_doRangeOverAll_(manyRows, document, "",
                                                                        false);
         }},
        {"setYi, 1,000 of 1e5 rows", 61, 1000, large,
         [&](Plotwerk &plotwerk) {
             for (int i = 0; i < 1000; ++i)
                 plotwerk.setValueOfDoc_atIndex_indexSerie_toValue_(document, i, 0, 0.5 * i);
         }},
        {"modifyData of 1e5 rows, 50 times", 31, 50, large,
         [&](Plotwerk &plotwerk) {
             for (int i = 0; i < 50; ++i) plotwerk.modifyDataOf_Ydata_(document, true);
         }},
        {"setXRange, 1,000 times", 61, 1000, nothing,
         [&](Plotwerk &plotwerk) {
             for (int i = 0; i < 1000; ++i) plotwerk.setXRangeOf_xmin_xmax_(document, 0, i + 1);
         }},
        {"first change after a save, 1e5 rows", 31, 1,
         [&](Plotwerk &plotwerk) {
             large(plotwerk);
             plotwerk.saveDocument_as_binary_(document, state / "saved", true);
         },
         [](Plotwerk &plotwerk) { plotwerk.setXRangeOf_xmin_xmax_(document, 0, 1); }},
    };
    {
        Side with({PLOTWERKD, "--log-level=error"}),
            without({PLOTWERKD, "--log-level=error", "--no-journal"});
        for (const Work &work : works) {
            std::vector<double> ours, peers, walls, processors;
            for (int i = 0; i < work.pairs; ++i) {
                Times our{}, peer{};
                if (i % 2 == 0) our = timesOf(work, with);
                peer = timesOf(work, without);
                if (i % 2 == 1) our = timesOf(work, with);
                ours.push_back(our.wall);
                peers.push_back(peer.wall);
                walls.push_back(our.wall / peer.wall);
                processors.push_back(our.processor / peer.processor);
            }
            std::printf(
                "%-36s journal %9.1f us   none %9.1f us   ratio %.3f   of processor's time %.3f\n",
                work.what, median(ours) / work.messages * 1e6, median(peers) / work.messages * 1e6,
                median(walls), median(processors));
            std::fflush(stdout);
        }
    }
    return EXIT_SUCCESS;
}
