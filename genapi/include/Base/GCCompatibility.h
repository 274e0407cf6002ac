// The printf length modifier of int64_t, which is long on 64-bit Linux.
#ifndef GCBASE_GCCOMPATIBILITY_H
#define GCBASE_GCCOMPATIBILITY_H

#ifdef __LP64__
#define FMT_I64 "l"
#else
#define FMT_I64 "ll"
#endif

#endif  // GCBASE_GCCOMPATIBILITY_H
