#include "genapi/description/contentmodel.h"

#include <cassert>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Reads the expression from left to right, and computes for each part the words with which it may
// begin and end. When one part follows another, the first words of the second may follow the last
// words of the first.
class ContentModel::Builder {
  public:
    Builder(ContentModel& model, std::string_view expression) : model_(model), left_(expression) {}

    void Build() {
        const Part whole = Choice();
        assert(left_.empty());
        Follow(whole.last, kEnd);
        model_.start_ = whole.first | (whole.mayBeEmpty ? kEnd : 0);
    }

  private:
    struct Part {
        State first = 0, last = 0;
        bool mayBeEmpty = true;
    };

    Part Choice() {
        Part all = Sequence();
        while (Take('|')) {
            const Part other = Sequence();
            all = {all.first | other.first, all.last | other.last,
                   all.mayBeEmpty || other.mayBeEmpty};
        }
        return all;
    }

    Part Sequence() {
        Part all;
        for (SkipBlanks(); !left_.empty() && left_[0] != '|' && left_[0] != ')'; SkipBlanks()) {
            const Part part = Counted();
            Follow(all.last, part.first);
            all = {all.first | (all.mayBeEmpty ? part.first : 0),
                   part.last | (part.mayBeEmpty ? all.last : 0), all.mayBeEmpty && part.mayBeEmpty};
        }
        return all;
    }

    Part Counted() {
        Part part = Take('(') ? Group() : Word();
        if (Take('?')) {
            part.mayBeEmpty = true;
        } else if (Take('*')) {
            Follow(part.last, part.first);
            part.mayBeEmpty = true;
        } else if (Take('+')) {
            Follow(part.last, part.first);
        }
        return part;
    }

    Part Group() {
        const Part part = Choice();
        Take(')');
        return part;
    }

    Part Word() {
        const size_t end = left_.find_first_of("?*+|() ");
        const Tag* tag = FindTag(left_.substr(0, end));
        assert(tag && tag->key != kNoKey && count_ < 63);
        left_.remove_prefix(end < left_.size() ? end : left_.size());
        const State place = State{1} << count_++;
        model_.places_[tag->key] |= place;
        return {place, place, false};
    }

    void Follow(State words, State next) {
        for (size_t i = 0; i < count_; ++i)
            if (words >> i & 1) model_.next_[i] |= next;
    }

    void SkipBlanks() {
        while (!left_.empty() && left_[0] == ' ')
            left_.remove_prefix(1);
    }

    bool Take(char sign) {
        SkipBlanks();
        if (left_.empty() || left_[0] != sign) return false;
        left_.remove_prefix(1);
        return true;
    }

    ContentModel& model_;
    std::string_view left_;
    size_t count_ = 0;
};

ContentModel::ContentModel(std::string_view expression) {
    Builder(*this, expression).Build();
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
