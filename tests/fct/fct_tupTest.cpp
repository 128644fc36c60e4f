#include "fct/fct_tup.h"

#include <gtest/gtest.h>

#include <climits>

#include "samples.h"

using namespace plw;

using TablePtr = std::unique_ptr<Fct_tup, decltype(&freeFct_tup)>;

static TablePtr table(int capacity, int members) {
    return {newFct_tup(capacity, members), freeFct_tup};
}

// Rows (i, 10 i) for i = 0, 1, ... n - 1.
static TablePtr rows(int n) {
    TablePtr T = table(1, 2);
    for (int i = 0; i < n; i++) appendFct_tup2(T.get(), 2, 1.0 * i, 10.0 * i);
    return T;
}

static Values member(const Fct_tup *T, int c) {
    return {T->members[c], T->members[c] + T->n};
}

TEST(FctTup, HasTwoMembersAndARowAtLeast) {
    const TablePtr T = table(-4, 1);
    EXPECT_EQ(T->m, 2);
    EXPECT_EQ(T->size, 1);
    EXPECT_EQ(rows(26)->size, 61);
}

TEST(AppendFctTup, WidensWithZerosAndNeverShortens) {
    const TablePtr T = rows(2);
    const double values[] = {7, 8, 9};
    appendFct_tup(T.get(), values, 3);
    EXPECT_EQ(member(T.get(), 2), (Values{0, 0, 9}));
    appendFct_tup(T.get(), values, 1);
    appendFct_tup2(T.get(), 2, 5.0, 6.0);
    appendFct_tup2(T.get(), 0);
    EXPECT_EQ(member(T.get(), 0), (Values{0, 1, 7, 7, 5, 0}));
    EXPECT_EQ(member(T.get(), 1), (Values{0, 10, 8, 8, 6, 0}));
    EXPECT_EQ(member(T.get(), 2), (Values{0, 0, 9, 9, 0, 0}));
}

TEST(AppendFctTup, FillsTablesWiderThanItsArguments) {
    const TablePtr T = table(1, 100);
    appendFct_tup2(T.get(), 1, 4.0);
    EXPECT_EQ(fct_tupAt(T.get(), 0, 0), 4);
    for (int c = 1; c < 100; c++) EXPECT_EQ(fct_tupAt(T.get(), 0, c), 0) << c;
}

TEST(SetFctTupByIndex, MakesMissingRowsAndMembers) {
    const TablePtr T = table(1, 2);
    setFct_tupByIndex(T.get(), 5, 0, 1);
    EXPECT_EQ(member(T.get(), 0), (Values{0, 0, 0, 0, 0, 1}));
    EXPECT_EQ(member(T.get(), 1), Values(6));
    setFct_tupByIndex(T.get(), 2, 4, 3);
    EXPECT_EQ(T->m, 5);
    EXPECT_EQ(T->n, 6);
    EXPECT_EQ(member(T.get(), 4), (Values{0, 0, 3, 0, 0, 0}));
    setFct_tupByIndex(T.get(), 2, 80, 3); // more than 64 members, but no missing row
    EXPECT_EQ(fct_tupAt(T.get(), 2, 80), 3);
}

TEST(RemoveFctTup, LimitsTheCount) {
    const struct {
        void (*remove)(Fct_tup *, int);
        int k;
        Values want;
    } cases[] = {
        {removeAtEndFct_tup, 1, {0, 10, 20}},
        {removeAtEndFct_tup, INT_MAX, {}},
        {removeAtBeginFct_tup, 1, {10, 20, 30}},
        {removeAtBeginFct_tup, INT_MAX, {}},
        {removeAtBeginFct_tup, -1, {0, 10, 20, 30}},
        {removeAtBeginFct_tup, INT_MIN, {0, 10, 20, 30}},
    };
    for (const auto &c : cases) {
        const TablePtr T = rows(4);
        T->lastIndex = 3;
        c.remove(T.get(), c.k);
        EXPECT_EQ(member(T.get(), 1), c.want) << c.k;
        EXPECT_EQ(T->lastIndex, 0);
    }
}

TEST(SortFctTup, MovesWholeRowsAndComparesByTheSortMember) {
    const TablePtr T = table(1, 2);
    std::mt19937 random(5);
    for (int i = 0; i < 50; i++)
        appendFct_tup2(T.get(), 3, 1.0 * i, static_cast<double>(random() % 10), 2.0 * i);
    sortFct_tup(T.get(), 1);
    EXPECT_EQ(T->sortMember, 1);
    for (int i = 0; i < 50; i++) {
        EXPECT_EQ(T->members[2][i], 2 * T->members[0][i]);
        if (i > 0) {
            EXPECT_LE(T->members[1][i - 1], T->members[1][i]);
        }
    }

    const TablePtr R = table(1, 2);
    for (double v : {1.0, 2.0, 2.0, NaN}) appendFct_tup2(R.get(), 1, v);
    EXPECT_EQ(cmp_sortFct_tup(0, 1, R.get()), -1);
    EXPECT_EQ(cmp_sortFct_tup(1, 0, R.get()), 1);
    EXPECT_EQ(cmp_sortFct_tup(1, 2, R.get()), 0);
    EXPECT_EQ(cmp_sortFct_tup(3, 3, R.get()), 1);
    EXPECT_EQ(cmp_sortFct_tup(0, 3, R.get()), 1);
    sortFct_tup(table(1, 2).get(), 0);
}

TEST(MemberFctTup, IsAViewForPrintingOrACopyForAll) {
    const TablePtr T = rows(3);
    const FctPtr view = own(memberFct_tup(T.get(), 1));
    EXPECT_EQ(positions(view.get()), (Values{0, 1, 2}));
    negFct(view.get());
    EXPECT_EQ(member(T.get(), 1), (Values{0, -10, -20}));

    const FctPtr copy = own(copyMemberFct_tup(T.get(), 1));
    EXPECT_EQ(copy->size, 3);
    EXPECT_EQ(evalFct(copy.get(), 0.5), -5);
    appendFct(copy.get(), 3, 4);
    EXPECT_EQ(T->n, 3);

    double t = -7, y;
    int i = -7;
    maximumFct(own(memberFct_tup(table(1, 2).get(), 0)).get(), &t, &y, &i);
    EXPECT_EQ(y, -1e300);
}

TEST(FctTupDeathTest, ChecksIndexesLengthsAndCounts) {
    const TablePtr T = rows(3);
    const TablePtr full = rows(1);
    full->fixedLen = 1;
    const double values[] = {1, 2};
    const auto failed = testing::ExitedWithCode(1);
    EXPECT_EXIT(fct_tupAt(T.get(), 3, 0), failed,
                "^ERROR in fct_tupAt: index out of range \\(3\\)\n$");
    EXPECT_EXIT(fct_tupAt(T.get(), 0, 2), failed, "fct_tupAt: index out of range \\(2\\)\n$");
    EXPECT_EXIT(fct_tupAt(T.get(), -1, 0), failed, "fct_tupAt: index out of range \\(-1\\)\n$");
    EXPECT_EXIT(sortFct_tup(T.get(), 2), failed,
                "^ERROR in sortFct_tup: index out of range \\(2\\)\n$");
    EXPECT_EXIT(cmp_sortFct_tup(0, 3, T.get()), failed,
                "^ERROR in cmp_sortFct_tup: index out of range \\(3\\)\n$");
    EXPECT_EXIT(swap_sortFct_tup(4, 0, T.get()), failed,
                "^ERROR in swap_sortFct_tup: index out of range \\(4\\)\n$");
    EXPECT_EXIT(memberFct_tup(T.get(), -1), failed,
                "^ERROR in memberFct_tup: index out of range \\(-1\\)\n$");
    EXPECT_EXIT(copyMemberFct_tup(T.get(), 2), failed,
                "^ERROR in memberFct_tup: index out of range \\(2\\)\n$");
    EXPECT_EXIT(evalFct(own(memberFct_tup(T.get(), 1)).get(), 0), failed,
                "^ERROR in evalFct: function incomplete \\(3\\)\n$");
    EXPECT_EXIT(appendFct_tup(full.get(), values, 2), failed,
                "^ERROR in appendFct_tup: function with fixed length full \\(1\\)\n$");
    EXPECT_EXIT(setFct_tupByIndex(full.get(), 1, 0, 1), failed,
                "^ERROR in appendFct_tup: function with fixed length full \\(1\\)\n$");
    EXPECT_EXIT(removeAtEndFct_tup(full.get(), 0), failed,
                "^ERROR in removeAtEndFct_tup: function with fixed length full \\(1\\)\n$");
    EXPECT_EXIT(removeAtBeginFct_tup(full.get(), 0), failed,
                "^ERROR in removeAtBeginFct_tup: function with fixed length full \\(1\\)\n$");
    EXPECT_EXIT(appendFct_tup2(T.get(), 65), failed,
                "^ERROR: implementation missing in 'appendFct_tup2' \\(65\\)\n$");
    EXPECT_EXIT(setFct_tupByIndex(table(1, 65).get(), 0, 0, 1), failed,
                "^ERROR: implementation missing in 'setFct_tupByIndex' \\(65\\)\n$");
}
