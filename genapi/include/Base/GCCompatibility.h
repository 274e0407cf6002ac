// The printf length modifier of int64_t, which is a long where that has 64 bits.
#ifndef GCBASE_GCCOMPATIBILITY_H
#define GCBASE_GCCOMPATIBILITY_H

#ifdef __LP64__
#define FMT_I64 "l"
#else
#define FMT_I64 "ll"
#endif

#endif  // GCBASE_GCCOMPATIBILITY_H
