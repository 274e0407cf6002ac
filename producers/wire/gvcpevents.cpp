#include "producers/wire/gvcpevents.h"

namespace ZelCti::Gvcp {

namespace {

// Of the entry with which the bytes begin. What an entry says is not checked here.
size_t EntrySize(ByteView rest, EventLayout layout) {
    if (!layout.withData) return layout.FixedSize();
    const size_t stated = layout.extendedIds ? rest.U16(0) : 0;
    return stated != 0 ? stated : rest.size;
}

size_t PutEvent(ByteSpan entry, EventLayout layout, const Event& event) {
    const size_t fixed = layout.FixedSize();
    const size_t size = fixed + (layout.withData ? event.data.size : 0);
    entry.PutU16(0, layout.withData && layout.extendedIds ? size : 0);
    entry.PutU16(2, event.id);
    entry.PutU16(4, event.streamChannel);
    entry.PutU16(6, layout.extendedIds ? 0 : event.blockId);
    if (layout.extendedIds) entry.PutU64(8, event.blockId);
    entry.PutU64(fixed - sizeof(uint64_t), event.timestamp);
    if (layout.withData) entry.PutBytes(fixed, event.data);
    return size;
}

size_t EncodeEvents(ByteSpan out, Request request, EventLayout layout, const Event* events,
                    size_t count) {
    size_t end = kHeaderSize;
    for (size_t i = 0; i < count; ++i)
        end += PutEvent(out.From(end), layout, events[i]);
    if (layout.extendedIds) request.flags |= Flag::kExtendedIds;
    return PutCommandHeader(out, layout.withData ? Code::EventDataCmd : Code::EventCmd, request,
                            end - kHeaderSize);
}

}  // namespace

Event Events::Iterator::operator*() const {
    const size_t fixed = layout_.FixedSize();
    const ByteView entry = rest_.Sub(0, EntrySize(rest_, layout_));
    return {entry.U16(2), entry.U16(4), layout_.extendedIds ? entry.U64(8) : entry.U16(6),
            entry.U64(fixed - sizeof(uint64_t)), entry.From(fixed)};
}

Events::Iterator& Events::Iterator::operator++() {
    rest_ = rest_.From(EntrySize(rest_, layout_));
    return *this;
}

Result<Events> DecodeEvents(const Command& command) {
    const EventLayout layout{command.Has(Flag::kExtendedIds), command.code == Code::EventDataCmd};
    ByteView rest = command.payload;
    do {
        if (rest.size < layout.FixedSize()) return Fault::TooShort;
        const size_t size = EntrySize(rest, layout);
        if (size < layout.FixedSize() || size > rest.size) return Fault::WrongEntrySize;
        rest = rest.From(size);
    } while (rest.size != 0);
    return Events(command.payload, layout);
}

size_t EncodeEventCmd(ByteSpan out, Request request, bool extendedIds, const Event* events,
                      size_t count) {
    return EncodeEvents(out, request, {extendedIds, false}, events, count);
}

size_t EncodeEventDataCmd(ByteSpan out, Request request, bool extendedIds, const Event* events,
                          size_t count) {
    assert(extendedIds || count == 1);
    return EncodeEvents(out, request, {extendedIds, true}, events, count);
}

}  // namespace ZelCti::Gvcp
