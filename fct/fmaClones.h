// fmaClones.h - std::fma as one instruction where the machine has it.
#ifndef PLW_FCT_FMACLONES_H
#define PLW_FCT_FMACLONES_H

// Before a function that calls std::fma: compiles it twice, with the instruction and with the C
// library's fma, and picks one when the program is loaded. Both round once: results are the same.
// Nothing where the compiler may use the instruction anyway, and for clang, whose version 14 leaves
// only the one with the instruction of a function that a header has declared. Defined by the build
// where one compilation is wanted.
#ifdef PLW_FMA_CLONES
#elif defined(__x86_64__) && !defined(__FMA__) && defined(__GNUC__) && !defined(__clang__)
#define PLW_FMA_CLONES __attribute__((target_clones("fma", "default")))
#else
#define PLW_FMA_CLONES
#endif

// For what such a function calls: only inlined code is compiled twice with it.
#define PLW_ALWAYS_INLINE inline __attribute__((always_inline))

#endif
