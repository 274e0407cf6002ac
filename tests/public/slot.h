// Virtual tables as the Itanium C++ ABI lays them out.
#ifndef TESTS_PUBLIC_SLOT_H
#define TESTS_PUBLIC_SLOT_H

#include <cstddef>
#include <cstdint>
#include <cstring>

// Number of a virtual operation in its table, from 1 on; 0 for one that is not virtual or stands in
// a table that is not the object's first.
template <typename Operation>
size_t SlotOf(Operation operation) {
    struct {
        uintptr_t pointer;
        ptrdiff_t adjustment;
    } raw{};
    static_assert(sizeof raw == sizeof operation, "not the Itanium C++ ABI");
    std::memcpy(&raw, &operation, sizeof raw);
#if defined(__aarch64__) || defined(__arm__)
    if (raw.adjustment != 1) return 0;  // the virtual flag alone
    return raw.pointer / sizeof(void*) + 1;
#else
    if (raw.pointer % 2 == 0 || raw.adjustment != 0) return 0;
    return (raw.pointer - 1) / sizeof(void*) + 1;
#endif
}

// Calls the operation in a slot of an object's table, as a caller compiled elsewhere would.
template <typename Result, typename Object>
Result CallSlot(Object* object, size_t slot) {
    void** table = nullptr;
    std::memcpy(&table, reinterpret_cast<const char*>(object), sizeof table);
    return reinterpret_cast<Result (*)(const Object*)>(table[slot - 1])(object);
}

#endif  // TESTS_PUBLIC_SLOT_H
