#include "fct/fct_tup.h"

#include "tests/fct/samples.h"
#include "util/arrays/sort.h"

#include <climits>

using namespace plw;

using TablePtr = Owner<Fct_tup, freeFct_tup>;

// Rows (i, 10 i) for i = 0, 1, ... n - 1.
static TablePtr rows(int n) {
    TablePtr T = newFct_tup(1, 2);
    for (int i = 0; i < n; ++i) appendFct_tup2(T, 2, 1.0 * i, 10.0 * i);
    return T;
}

static Values member(const Fct_tup *T, int c) {
    return {T->members[c], T->members[c] + T->n};
}

TEST(AppendFctTup, WidensWithZerosAndNeverShortens) {
    const TablePtr smallest = newFct_tup(-4, 1);
    EXPECT_EQ(smallest->m, 2);
    EXPECT_EQ(smallest->size, 1);
    EXPECT_EQ(rows(26)->size, 61);

    const TablePtr T = rows(2);
    const double values[] = {7, 8, 9};
    appendFct_tup(T, values, 3);
    appendFct_tup(T, values, 1);
    appendFct_tup2(T, 2, 5.0, 6.0);
    appendFct_tup2(T, 0);
    appendFct_tup2(T, 4, 1.0, 2.0, 3.0, 4.0);
    const Values want[] = {{0, 1, 7, 7, 5, 0, 1},
                           {0, 10, 8, 8, 6, 0, 2},
                           {0, 0, 9, 9, 0, 0, 3},
                           {0, 0, 0, 0, 0, 0, 4}};
    ASSERT_EQ(T->m, 4);
    for (int c = 0; c < 4; ++c) EXPECT_EQ(member(T, c), want[c]) << c;

    const TablePtr wide = newFct_tup(1, 100);
    appendFct_tup2(wide, 1, 4.0);
    for (int c = 0; c < 100; ++c) EXPECT_EQ(fct_tupAt(wide, 0, c), c == 0 ? 4 : 0) << c;
}

TEST(SetFctTupByIndex, MakesMissingRowsAndMembers) {
    const TablePtr full = newFct_tup(1, 64); // as wide as rows can be given
    [&]<int... c>(std::integer_sequence<int, c...>) {
        appendFct_tup2(full, 64, double(c)...);
    }
    (std::make_integer_sequence<int, 64>());
    setFct_tupByIndex(full, 1, 63, 1);
    for (int c = 0; c < 64; ++c) EXPECT_EQ(member(full, c), (Values{double(c), double(c == 63)}));
    const TablePtr T = newFct_tup(1, 2);
    setFct_tupByIndex(T, 5, 0, 1);
    setFct_tupByIndex(T, 2, 2, 7); // the first row and the first member that are missing
    EXPECT_EQ(T->m, 3);
    setFct_tupByIndex(T, 6, 4, 3);
    EXPECT_EQ(T->m, 5);
    const Values want[] = {
        {0, 0, 0, 0, 0, 1, 0}, Values(7), {0, 0, 7, 0, 0, 0, 0}, Values(7), {0, 0, 0, 0, 0, 0, 3}};
    for (int c = 0; c < 5; ++c) EXPECT_EQ(member(T, c), want[c]) << c;
    setFct_tupByIndex(T, 2, 80, 3); // more than 64 members, but no missing row
    EXPECT_EQ(fct_tupAt(T, 2, 80), 3);
}

TEST(RemoveFctTup, LimitsTheCount) {
    const std::tuple<void (*)(Fct_tup *, int), int, Values> cases[] = {
        {removeAtEndFct_tup, 1, {0, 10, 20}},
        {removeAtEndFct_tup, INT_MAX, {}},
        {removeAtBeginFct_tup, 1, {10, 20, 30}},
        {removeAtBeginFct_tup, INT_MAX, {}},
        {removeAtBeginFct_tup, INT_MIN, {0, 10, 20, 30}}};
    for (const auto &[remove, k, want] : cases) {
        const TablePtr T = rows(4);
        T->lastIndex = 3;
        remove(T, k);
        EXPECT_EQ(member(T, 1), want) << k;
        EXPECT_EQ(T->lastIndex, 0);
    }
}

TEST(SortFctTup, LeavesEqualKeysAndGapsWhereQsortFlexDoes) {
    RandomFunctions functions;
    for (int round = 0; round < 2000; ++round) {
        const int n = functions.upTo(round % 20 ? 60 : 600), kind = functions.upTo(5);
        const TablePtr got = newFct_tup(1, 3), want = newFct_tup(1, 3);
        for (int i = 0; i < n; ++i) {
            const double any = functions.real(0, 1), few = functions.upTo(9) - 4.0;
            const Values keys = {few, any, 1.0 * i, i * 3 / 10 + 0.0, -1.0 * i, fabs(i - 0.4 * n)};
            const double key = functions.rarely(0.02 * (round % 2)) ? NaN : keys[kind];
            for (Fct_tup *T : {got.get(), want.get()}) appendFct_tup2(T, 3, 1.0 * i, key, -1.0 * i);
        }
        want->sortMember = 1;
        qsortFlex(0, n - 1, want, cmp_sortFct_tup, swap_sortFct_tup);
        sortFct_tup(got, 1);
        EXPECT_EQ(got->sortMember, 1);
        for (int c = 0; c < 3; ++c)
            ASSERT_TRUE(same(member(got, c), member(want, c))) << "kind " << kind << ", n " << n;
    }
}

TEST(SortFctTup, SortsWhatIsSortedOrDistinct) {
    constexpr int n = 500'000; // this would not end if it took the square of that
    const TablePtr T = newFct_tup(n, 2);
    for (int i = 0; i < n; ++i) appendFct_tup2(T, 2, -1.0 * i, std::floor(i / 3.0));
    for (const int c : {1, 0}) {
        sortFct_tup(T, c);
        EXPECT_TRUE(std::is_sorted(T->members[c], T->members[c] + n)) << c;
    }
}

TEST(SortFctTup, ComparesByTheSortMemberAndNaNAsGreater) {
    const TablePtr R = newFct_tup(1, 2);
    for (double v : {1.0, 2.0, 2.0, NaN}) appendFct_tup2(R, 1, v);
    for (const auto &[i, j, want] : {std::tuple{0, 1, -1}, {1, 0, 1}, {1, 2, 0}, {3, 3, 1}})
        EXPECT_EQ(cmp_sortFct_tup(i, j, R), want) << i << ", " << j;
}

TEST(MemberFctTup, IsAViewForPrintingOrACopyForAll) {
    const TablePtr T = rows(3);
    const FctPtr view = memberFct_tup(T, 1), copy = copyMemberFct_tup(T, 1);
    negFct(view);
    EXPECT_EQ(positions(view), (Values{0, 1, 2}));
    EXPECT_EQ(member(T, 1), (Values{0, -10, -20})) << "seen through the view";

    EXPECT_EQ(copy->size, 3);
    EXPECT_EQ(evalFct(copy, 0.5), 5);
    appendFct(copy, 3, 4);
    EXPECT_EQ(T->n, 3);
}

TEST(FctTupDeathTest, ChecksIndexesLengthsAndCounts) {
    const TablePtr T = rows(3), full = rows(1), wide = newFct_tup(1, 65);
    const FctPtr view = memberFct_tup(T, 1);
    full->fixedLen = 1;
    const double values[] = {1, 2};
    const std::string isFull = ": function with fixed length full (1)";
    const std::pair<std::string, std::function<void()>> cases[] = {
        {" in fct_tupAt: index out of range (3)", [&] { fct_tupAt(T, 3, 0); }},
        {" in fct_tupAt: index out of range (2)", [&] { fct_tupAt(T, 0, 2); }},
        {" in fct_tupAt: index out of range (-1)", [&] { fct_tupAt(T, -1, 0); }},
        {" in sortFct_tup: index out of range (2)", [&] { sortFct_tup(T, 2); }},
        {" in cmp_sortFct_tup: index out of range (3)", [&] { cmp_sortFct_tup(0, 3, T); }},
        {" in swap_sortFct_tup: index out of range (4)", [&] { swap_sortFct_tup(4, 0, T); }},
        {" in memberFct_tup: index out of range (-1)", [&] { memberFct_tup(T, -1); }},
        {" in memberFct_tup: index out of range (2)", [&] { copyMemberFct_tup(T, 2); }},
        {" in evalFct: function incomplete (3)", [&] { evalFct(view, 0); }},
        {" in appendFct_tup" + isFull, [&] { appendFct_tup(full, values, 2); }},
        {" in appendFct_tup" + isFull, [&] { setFct_tupByIndex(full, 1, 0, 1); }},
        {" in removeAtEndFct_tup" + isFull, [&] { removeAtEndFct_tup(full, 0); }},
        {" in removeAtBeginFct_tup" + isFull, [&] { removeAtBeginFct_tup(full, 0); }},
        {": implementation missing in 'appendFct_tup2' (65)", [&] { appendFct_tup2(T, 65); }},
        {": implementation missing in 'setFct_tupByIndex' (65)",
         [&] { setFct_tupByIndex(wide, 0, 0, 1); }}};
    for (const auto &[message, call] : cases) expectFatal(call, "ERROR" + message);
}
