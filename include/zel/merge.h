// Frames of several cameras at once.
#ifndef ZEL_MERGE_H
#define ZEL_MERGE_H

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <iterator>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "zel/frame.h"

namespace zel {

// A frame and the number of its range, from 0.
struct SourcedFrame {
    size_t source;
    Frame frame;
};

namespace detail {

// Fetches the frames of each range on a thread of its own.
class Merging {
  public:
    explicit Merging(std::vector<Frames> sources) : sources_(std::move(sources)) {
        numRunning_ = sources_.size();
        for (size_t i = 0; i < sources_.size(); ++i)
            threads_.emplace_back([this, i] { fetch(i); });
    }

    ~Merging() {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            isEnded_ = true;
        }
        changed_.notify_all();
        for (Frames& source : sources_)
            source.cancel();
        for (std::thread& thread : threads_)
            thread.join();
    }

    Merging(const Merging&) = delete;
    Merging& operator=(const Merging&) = delete;

    // Nothing after the last frame of the last range. Throws what a range threw.
    std::optional<SourcedFrame> next() {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return !waiting_.empty() || failure_ || numRunning_ == 0; });
        if (failure_) std::rethrow_exception(failure_);
        if (waiting_.empty()) return std::nullopt;
        std::optional<SourcedFrame> first = std::move(waiting_.front());
        waiting_.pop_front();
        changed_.notify_all();
        return first;
    }

    size_t numSources() const { return sources_.size(); }

  private:
    void fetch(size_t source) {
        try {
            while (std::optional<Frame> frame = sources_[source].next()) {
                std::unique_lock<std::mutex> lock(mutex_);
                // What waits is a buffer less for the camera.
                changed_.wait(lock, [&] { return isEnded_ || numWaiting(source) < 2; });
                if (isEnded_) break;
                waiting_.push_back({source, std::move(*frame)});
                changed_.notify_all();
            }
        } catch (...) {
            const std::lock_guard<std::mutex> lock(mutex_);
            if (!failure_) failure_ = std::current_exception();
        }
        const std::lock_guard<std::mutex> lock(mutex_);
        --numRunning_;
        changed_.notify_all();
    }

    std::ptrdiff_t numWaiting(size_t source) const {
        return std::count_if(waiting_.begin(), waiting_.end(),
                             [source](const SourcedFrame& one) { return one.source == source; });
    }

    std::vector<Frames> sources_;
    std::vector<std::thread> threads_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<SourcedFrame> waiting_;
    std::exception_ptr failure_;
    size_t numRunning_ = 0;
    bool isEnded_ = false;
};

// Frames of each source that were taken at the same time.
class Grouping {
  public:
    Grouping(std::unique_ptr<Merging> merging, uint64_t tolerance)
        : merging_(std::move(merging)), tolerance_(tolerance), waiting_(merging_->numSources()) {}

    std::optional<std::vector<Frame>> next() {
        while (std::optional<SourcedFrame> one = merging_->next()) {
            waiting_[one->source].push_back(std::move(one->frame));
            if (std::optional<std::vector<Frame>> group = complete()) return group;
        }
        return std::nullopt;
    }

  private:
    // Drops the oldest frame while the first ones of all sources are too far from each other.
    std::optional<std::vector<Frame>> complete() {
        const auto isEmpty = [](const auto& frames) { return frames.empty(); };
        const auto isOlder = [](const auto& one, const auto& other) {
            return one.front().timestamp() < other.front().timestamp();
        };
        while (std::none_of(waiting_.begin(), waiting_.end(), isEmpty)) {
            const auto [oldest, newest] =
                std::minmax_element(waiting_.begin(), waiting_.end(), isOlder);
            if (newest->front().timestamp() - oldest->front().timestamp() <= tolerance_) {
                std::vector<Frame> group;
                for (auto& frames : waiting_) {
                    group.push_back(std::move(frames.front()));
                    frames.pop_front();
                }
                return group;
            }
            oldest->pop_front();
        }
        return std::nullopt;
    }

    std::unique_ptr<Merging> merging_;
    const uint64_t tolerance_;
    std::vector<std::deque<Frame>> waiting_;
};

}  // namespace detail

// A range for one loop whose items come from `Source::next`.
template <typename Source, typename Item>
class MergedRange {
  public:
    class iterator {
      public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Item;
        using difference_type = std::ptrdiff_t;
        using pointer = Item*;
        using reference = Item&;

        iterator() = default;
        explicit iterator(Source* source) : source_(source) { ++*this; }

        Item& operator*() const { return **item_; }
        Item* operator->() const { return &**item_; }
        iterator& operator++() {
            if (!item_) item_ = std::make_shared<std::optional<Item>>();
            item_->reset();
            *item_ = source_->next();
            if (!*item_) source_ = nullptr;
            return *this;
        }
        void operator++(int) { ++*this; }
        bool operator==(const iterator& other) const { return source_ == other.source_; }
        bool operator!=(const iterator& other) const { return source_ != other.source_; }

      private:
        Source* source_ = nullptr;
        std::shared_ptr<std::optional<Item>> item_;
    };

    iterator begin() { return iterator(source_.get()); }
    iterator end() { return {}; }

    // The next item; nothing after the last one.
    std::optional<Item> next() { return source_->next(); }

    // For the layer itself.
    explicit MergedRange(std::unique_ptr<Source> source) : source_(std::move(source)) {}

  private:
    std::unique_ptr<Source> source_;
};

using MergedFrames = MergedRange<detail::Merging, SourcedFrame>;
using FrameGroups = MergedRange<detail::Grouping, std::vector<Frame>>;

// The frames of several ranges in the order in which they arrive; the failure of one ends all. Each
// range has a thread of its own.
//
//     for (auto& [camera, frame] : zel::merge(left.frames(), right.frames())) ...
inline MergedFrames merge(std::vector<Frames> sources) {
    return MergedFrames(std::make_unique<detail::Merging>(std::move(sources)));
}
template <typename... More>
MergedFrames merge(Frames first, More... more) {
    std::vector<Frames> sources;
    sources.push_back(std::move(first));
    (sources.push_back(std::move(more)), ...);
    return merge(std::move(sources));
}

// Groups of one frame of each range, taken at the same time: their time stamps differ by at most
// `tolerance` ticks of the cameras, whose clocks must agree (as with PTP). Frames without
// counterparts are left out.
inline FrameGroups groups(uint64_t tolerance, std::vector<Frames> sources) {
    return FrameGroups(std::make_unique<detail::Grouping>(
        std::make_unique<detail::Merging>(std::move(sources)), tolerance));
}
template <typename... More>
FrameGroups groups(uint64_t tolerance, Frames first, More... more) {
    std::vector<Frames> sources;
    sources.push_back(std::move(first));
    (sources.push_back(std::move(more)), ...);
    return groups(tolerance, std::move(sources));
}

}  // namespace zel

#endif  // ZEL_MERGE_H
