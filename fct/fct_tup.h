// fct_tup.h - a table of samples with several quantities: m members of n rows.
//
// Member 0 is the sample position, the others are sampled at it. Rows are appended as samples are
// to an Fct; members come when they are first written to, with zeros in the rows so far.
#ifndef PLW_FCT_FCT_TUP_H
#define PLW_FCT_FCT_TUP_H

#include "fct/fct.h"

namespace plw {

struct Fct_tup {
    double **members; // one array of `size` values for each member
    int m;            // members, at least 2
    int n;            // rows in use
    int size;         // rows allocated
    int lastIndex;    // search index; 0 after rows are removed
    int sortMember;   // what sortFct_tup compares by
    char fixedLen;    // 1: rows are neither added beyond size nor removed
    char linked;      // 1: the member arrays belong to another record
};

// Empty table with room for `capacity` rows, at least 1, of memberCount members, at least 2. The
// caller frees it with freeFct_tup.
Fct_tup *newFct_tup(int capacity, int memberCount);

// Releases the table, and the member arrays unless it is linked.
void freeFct_tup(Fct_tup *T);

// Adds a row. k values widen the table to k members if it has fewer, but never shorten the row:
// `values` holds one value for every member. A full table grows to (size + 16) * 1.5 rows.
// Ends the process: "ERROR in appendFct_tup: function with fixed length full".
void appendFct_tup(Fct_tup *T, const double *values, int k);

// Adds the row of the k doubles that follow (at most 64; 1.0, not 1); members beyond them get 0.0.
// Ends the process: "ERROR: implementation missing in 'appendFct_tup2'" and k, and as
// appendFct_tup.
void appendFct_tup2(Fct_tup *T, int k, ...);

// Stores a value at row i, member c (neither negative). Missing members and rows are made, all 0.0.
// Ends the process if rows are missing from a table of more than 64 members: "ERROR: implementation
// missing in 'setFct_tupByIndex'" and the number of members; and as appendFct_tup.
void setFct_tupByIndex(Fct_tup *T, int i, int c, double value);

// The value at row i, member c.
// Ends the process: "ERROR in fct_tupAt: index out of range" and the index that is.
double fct_tupAt(const Fct_tup *T, int i, int c);

// Drops the last or the first k rows, as removeAtEndFct and removeAtBeginFct do.
// Ends the process for a table of fixed length: "ERROR in removeAtEndFct_tup: function with fixed
// length full", "ERROR in removeAtBeginFct_tup: function with fixed length full".
void removeAtEndFct_tup(Fct_tup *T, int k);
void removeAtBeginFct_tup(Fct_tup *T, int k);

// Sorts the rows by member c, ascending, with qsortFlex: equal rows may change places, and rows
// with a NaN in c may end up anywhere and keep others from being sorted. Time: n log n at most for
// values that are all different or ascend already; otherwise that of qsortFlex. Ends the
// process: "ERROR in sortFct_tup: index out of range" and c.
void sortFct_tup(Fct_tup *T, int c);

// What sortFct_tup gives qsortFlex; `table` is the Fct_tup. The comparison of rows a and b by
// member sortMember is 0 for equal values, -1 for a less, and otherwise, also with NaN, 1. End the
// process if a row is n or more: "ERROR in cmp_sortFct_tup: index out of range", "ERROR in
// swap_sortFct_tup: index out of range".
int cmp_sortFct_tup(int a, int b, void *table);
void swap_sortFct_tup(int a, int b, void *table);

// Member c over member 0 as a new record on the table's arrays, valid until the table changes;
// freeFct leaves the arrays alone. It is of fixed length with size 0, so it counts as incomplete
// unless the table is empty: for printing and negating, not for searching or evaluating.
// Ends the process: "ERROR in memberFct_tup: index out of range" and c.
Fct *memberFct_tup(const Fct_tup *T, int c);

// The same as a function with arrays of its own, which can be evaluated and can grow.
// Ends the process with the message of memberFct_tup.
Fct *copyMemberFct_tup(const Fct_tup *T, int c);

} // namespace plw

#endif
