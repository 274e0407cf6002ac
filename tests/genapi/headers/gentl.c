// The GenTL interface is for C programs too, with and without a version in the name of the header.
#include <GenTL/GenTL.h>
#include <GenTL/GenTL_v1_1.h>
#include <GenTL/GenTL_v1_2.h>
#include <GenTL/GenTL_v1_3.h>
#include <GenTL/GenTL_v1_4.h>
#include <GenTL/GenTL_v1_5.h>
#include <GenTL/GenTL_v1_6.h>

// An array of a negative size where a condition does not hold.
#define HOLDS(name, condition) typedef char name[(condition) ? 1 : -1]

HOLDS(OneByte, sizeof(bool8_t) == 1);
HOLDS(EnumerationsOf32Bits, sizeof(enum GC_ERROR_LIST) == 4 && sizeof(GC_ERROR) == 4);
HOLDS(PackedStructures, sizeof(SINGLE_CHUNK_DATA) == sizeof(uint64_t) + 2 * sizeof(size_t) &&
                            sizeof(DS_BUFFER_INFO_STACKED) == 12 + sizeof(void*) + sizeof(size_t));

// A function and the type of pointers to it; the compiler compares them.
const PTLUpdateInterfaceList kUpdate = TLUpdateInterfaceList;

GC_API_P(PFetch)(EVENT_HANDLE hEvent, void* pBuffer, size_t* piSize, uint64_t iTimeout);
const PFetch kFetch = EventGetData;

GC_API GCCloseLib(void) {
    return GC_ERR_NOT_INITIALIZED;
}
