// What may stand inside an element: which elements, in which order and how often.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "genapi/description/tags.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// A regular expression over elements as an automaton. It is deterministic: where an element may
// come, one word of the expression takes it. So the words that may come next are all its state.
class ContentModel {
  public:
    // A bit for each word of the expression that may come next; kEnd where nothing need come.
    using State = uint64_t;
    static constexpr State kEnd = State{1} << 63;

    ContentModel() = default;

    // Names of elements, each one followed by '?' (at most one), '*' (any number) or '+' (at least
    // one) where it is not exactly one; '|' is a choice, brackets make a group.
    explicit ContentModel(std::string_view expression);

    State Start() const { return start_; }

    // The state after the element; 0 where it has no place.
    State After(State state, Key key) const {
        const State place = state & places_[key];
        return place == 0 ? 0 : next_[static_cast<size_t>(__builtin_ctzll(place))];
    }

  private:
    class Builder;

    State start_ = kEnd;
    std::array<State, kNoKey + 1> places_{};  // by key: the words that take it
    std::array<State, 63> next_{};            // by word: what may come behind it
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
