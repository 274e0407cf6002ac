#include "producers/simulator/gige/control/answerstore.h"

#include <algorithm>
#include <cstring>

namespace ZelSim {

using ZelCti::ByteView;
using ZelCti::Endpoint;

AnswerStore::Entry* AnswerStore::EntryOf(const Endpoint& from) {
    for (Entry& entry : entries_)
        if (entry.used != 0 && entry.from == from) return &entry;
    return nullptr;
}

const AnswerStore::Entry* AnswerStore::Find(const Endpoint& from, ByteView command) {
    Entry* const entry = EntryOf(from);
    if (entry == nullptr || entry->command.size != command.size ||
        std::memcmp(entry->command.bytes.data(), command.data, command.size) != 0)
        return nullptr;
    entry->used = ++uses_;
    return entry;
}

void AnswerStore::Keep(const Endpoint& from, ByteView command, const Answer& answer,
                       Clock::time_point due) {
    Entry* entry = EntryOf(from);
    if (entry == nullptr) {
        entry = std::min_element(
            entries_.begin(), entries_.end(),
            [](const Entry& one, const Entry& other) { return one.used < other.used; });
    }
    entry->from = from;
    entry->command.size = std::min(command.size, entry->command.bytes.size());
    std::memcpy(entry->command.bytes.data(), command.data, entry->command.size);
    entry->answer = answer;
    entry->due = due;
    entry->used = ++uses_;
}

void AnswerStore::Forget(const Endpoint& from) {
    if (Entry* const entry = EntryOf(from)) entry->used = 0;
}

}  // namespace ZelSim
