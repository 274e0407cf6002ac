#include "genapi/description/contentmodel.h"

#include <cassert>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Reads the expression from left to right. Of each part it must be known with which words it may
// begin and end; where one part follows another, the latter's first words may come behind the
// former's last ones.
class ContentModel::Builder {
  public:
    Builder(ContentModel& model, std::string_view expression) : model_(model), left_(expression) {}

    void build() {
        const Part whole = choice();
        assert(left_.empty());
        follow(whole.last, kEnd);
        model_.begin_ = whole.first | (whole.mayBeEmpty ? kEnd : 0);
    }

  private:
    struct Part {
        State first = 0, last = 0;
        bool mayBeEmpty = true;
    };

    Part choice() {
        Part all = sequence();
        while (take('|')) {
            const Part other = sequence();
            all = {all.first | other.first, all.last | other.last,
                   all.mayBeEmpty || other.mayBeEmpty};
        }
        return all;
    }

    Part sequence() {
        Part all;
        for (skipBlanks(); !left_.empty() && left_[0] != '|' && left_[0] != ')'; skipBlanks()) {
            const Part part = counted();
            follow(all.last, part.first);
            all = {all.first | (all.mayBeEmpty ? part.first : 0),
                   part.last | (part.mayBeEmpty ? all.last : 0), all.mayBeEmpty && part.mayBeEmpty};
        }
        return all;
    }

    Part counted() {
        Part part = take('(') ? group() : word();
        if (take('?')) {
            part.mayBeEmpty = true;
        } else if (take('*')) {
            follow(part.last, part.first);
            part.mayBeEmpty = true;
        } else if (take('+')) {
            follow(part.last, part.first);
        }
        return part;
    }

    Part group() {
        const Part part = choice();
        take(')');
        return part;
    }

    Part word() {
        const std::size_t end = left_.find_first_of("?*+|() ");
        const Tag* tag = findTag(left_.substr(0, end));
        assert(tag && tag->key != kNoKey && count_ < 63);
        left_.remove_prefix(end < left_.size() ? end : left_.size());
        const State place = State{1} << count_++;
        model_.places_[tag->key] |= place;
        return {place, place, false};
    }

    void follow(State words, State next) {
        for (std::size_t i = 0; i < count_; ++i)
            if (words >> i & 1) model_.next_[i] |= next;
    }

    void skipBlanks() {
        while (!left_.empty() && left_[0] == ' ')
            left_.remove_prefix(1);
    }

    bool take(char sign) {
        skipBlanks();
        if (left_.empty() || left_[0] != sign) return false;
        left_.remove_prefix(1);
        return true;
    }

    ContentModel& model_;
    std::string_view left_;
    std::size_t count_ = 0;
};

ContentModel::ContentModel(std::string_view expression) {
    Builder(*this, expression).build();
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
