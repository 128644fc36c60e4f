#include "plotwerk/base/bounds.h"

#include "plotwerk/base/child.h"
#include "plotwerk/base/ending.h"
#include "plotwerk/base/memoryReserve.h"
#include "plotwerk/base/refusal.h"
#include "tests/plotwerk/base/askedToEnd.h"
#include "tests/plotwerk/base/refusalOf.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <new>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

using namespace plotwerk;

TEST(Bounds, AreSetByNameAndRefuseWhatGoesBeyond) {
    for (const char *wrong : {"", "seconds", "seconds=", "=1", "second=20", "seconds=0", "memory=9",
                              "memory=1e9", "answer=121", "seconds=nan", "seconds=1s"})
        EXPECT_NE(refusalOf([&] { setBound(wrong); }), "") << wrong;
    EXPECT_EQ(refusalOf([] { requireTime(10e9); }), "");
    EXPECT_EQ(refusalOf([] { requireTime(10.01e9); }), "would take too long (limit seconds)");
    EXPECT_EQ(refusalOf([] { requireMemory(1.01e9); }),
              "would take too much memory (limit memory)");
    EXPECT_NE(refusalOf([] { requireMemory(std::numeric_limits<double>::quiet_NaN()); }), "");
    setBound("memory=2000");
    EXPECT_EQ(refusalOf([] { requireMemory(1.99e9); }), "");
    setBound("memory=1000");
}

TEST(InChild, KeepsWhatTheWorkWroteAndNothingElse) {
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(std::tmpfile(), &std::fclose);
    int value = 1;
    setBound("seconds=1");
    inChild([&] {
        value = 2;
        for (int i = 0; i < 12; ++i) usleep(100'000); // while nothing is heard of it
        std::fputs("written", file.get());
        std::fflush(file.get());
    });
    setBound("seconds=10");
    EXPECT_EQ(value, 1);
    std::rewind(file.get());
    char text[20] = "";
    EXPECT_STREQ(std::fgets(text, sizeof text, file.get()), "written");
}

TEST(InChildDeathTest, DoesTheWorkHereWhenItIsNotToFork) {
    const auto work = [] { std::exit(7); };
    EXPECT_EXIT((forkNoChildren(), inChild(work)), testing::ExitedWithCode(7), "");
}

static void workForever() {
    for (volatile int forever = 1; forever;) {
    }
}

TEST(InChild, TurnsEveryBadEndIntoARefusal) {
    setBound("seconds=1");
    const rlimit longer{1000, 1000};
    setrlimit(RLIMIT_CPU, &longer);
    const std::pair<const char *, std::function<void()>> cases[] = {
        {"no curve", [] { throw Refusal("no curve"); }},
        {"takes too much memory (limit memory)", [] { throw std::bad_alloc(); }},
        {"takes too much memory (limit memory)", [] { std::abort(); }},
        {"takes too long (limit seconds)", workForever},
        {"takes too long (limit seconds)", [] { pause(); }},
        {"can't be done: its process was ended by signal 11", [] {
             std::signal(SIGSEGV, SIG_DFL);
             std::raise(SIGSEGV);
         }}};
    for (const auto &[want, work] : cases)
        EXPECT_EQ(refusalOf([&, &done = work] { inChild(done); }), want);
    setBound("seconds=2000");
    const auto own = [] { _exit(std::system("test $(ulimit -t) = 1000") != 0); };
    EXPECT_EQ(refusalOf([&] { inChild(own); }), "") << "not more than this process has";
    setBound("seconds=10");
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__clang__)
static void takeMegabytes(std::size_t count) {
    std::vector<char>(count << 20, 'x');
}

TEST(InChild, HasItsShareOfMemoryAndNoMore) {
    setBound("memory=100");
    const std::vector<char> own(150 << 20); // is not the child's
    EXPECT_EQ(refusalOf([] { inChild([] { takeMegabytes(60); }); }), "");
    EXPECT_EQ(refusalOf([] { inChild([] { takeMegabytes(200); }); }),
              "takes too much memory (limit memory)");
    setBound("memory=1000");
}

// So much address space, in MB, beside what there is.
static void limitMemoryTo(rlim_t more) {
    std::ifstream statm("/proc/self/statm");
    rlim_t pages = 0;
    statm >> pages;
    const rlimit limit{pages * 4096 + (more << 20), RLIM_INFINITY};
    setrlimit(RLIMIT_AS, &limit);
}

static char lastOfStack() {
    volatile char taken[900'000];
    taken[0] = 1;
    return taken[0];
}

TEST(MemoryReserveDeathTest, IsOneAndForAllButWhatDoesWithout) {
    const auto work = [] {
        setReserveAside();
        limitMemoryTo(0);
        EXPECT_EQ(lastOfStack(), 1) << "which has its memory";
        limitMemoryTo(400);
        setReserveAside();
        const auto without = [](std::size_t megabytes) {
            const WithoutReserve withoutReserve;
            takeMegabytes(megabytes);
        };
        without(300);
        EXPECT_THROW(without(500), std::bad_alloc);
        takeMegabytes(500);
        EXPECT_FALSE(giveReserveUp());
        limitMemoryTo(400);
        setReserveAside();
        makeRoomFor(1 << 20);
        EXPECT_TRUE(giveReserveUp()) << "that has room";
        std::exit(testing::Test::HasFailure());
    };
    EXPECT_EXIT(work(), testing::ExitedWithCode(0), "");
}
#endif

TEST(EndingDeathTest, ComesInTheMiddleOfWork) {
    const auto work = [] {
        endInTheMiddleOfWork();
        const AskedToEnd asked;
        workForever();
    };
    EXPECT_EXIT(work(), testing::ExitedWithCode(0), "ended in the middle of a message");
}

TEST(InChild, IsGivenUpWhenTheProgramIsToEnd) {
    const AskedToEnd asked(false);
    const auto work = [] {
        usleep(250'000);
        kill(getppid(), SIGTERM);
        pause();
    };
    EXPECT_EQ(refusalOf([&] { inChild(work); }), "given up, since the program is to end");
}
