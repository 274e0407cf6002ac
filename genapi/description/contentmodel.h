// What may stand inside an element: which elements, in which order and how often.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "genapi/description/tags.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// A regular expression over elements, as an automaton. The expressions are deterministic: at most
// one word of the expression accepts the next element. The state is therefore the set of words that
// may come next.
class ContentModel {
  public:
    // One bit for each word of the expression that may come next; kEnd if the content may end here.
    using State = uint64_t;
    static constexpr State kEnd = State{1} << 63;

    ContentModel() = default;

    // Names of elements; '?' after one means at most one, '*' any number, '+' at least one, nothing
    // exactly one. '|' separates alternatives, brackets make a group.
    explicit ContentModel(std::string_view expression);

    State Start() const { return start_; }

    // The state after the element; 0 if the element is not allowed here.
    State After(State state, Key key) const {
        const State place = state & places_[key];
        return place == 0 ? 0 : next_[static_cast<size_t>(__builtin_ctzll(place))];
    }

  private:
    class Builder;

    State start_ = kEnd;
    std::array<State, kNoKey + 1> places_{};  // by key: the words that accept it
    std::array<State, 63> next_{};            // by word: the words that may follow it
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
