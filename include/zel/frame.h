// Frames of a camera.
#ifndef ZEL_FRAME_H
#define ZEL_FRAME_H

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "ZelCam/ZelCam.h"
#include "zel/acquisition.h"
#include "zel/configuration.h"
#include "zel/error.h"
#include "zel/feature.h"
#include "zel/image.h"

namespace zel {

// One part of a multi-part frame, such as its range or its confidence.
struct Part {
    uint64_t type = 0;  // GenTL PARTDATATYPE_ID: 1 is a 2D image, 9 a confidence map
    Image image;
    uint64_t sourceId = 0;  // parts of one source show the same scene
    uint64_t regionId = 0;
    uint64_t purposeId = 0;
};

// The value of a chunk: a number, a text, or both.
class Value {
  public:
    // As T: an arithmetic type or std::string. ZelCamErr_WrongParamType for a text that is no
    // number.
    template <typename T>
    T as() const {
        if constexpr (std::is_same_v<T, std::string>) {
            return text_;
        } else if constexpr (std::is_floating_point_v<T>) {
            return static_cast<T>(kind_ == Kind::Float ? float_ : static_cast<double>(number()));
        } else {
            return static_cast<T>(number());
        }
    }

    template <typename T, typename = std::enable_if_t<std::is_arithmetic_v<T> ||
                                                      std::is_same_v<T, std::string>>>
    operator T() const {
        return as<T>();
    }

    const std::string& text() const { return text_; }
    Kind kind() const { return kind_; }

    // For the layer itself.
    static Value of(ZelGenParam::Array& features, const std::string& name) {
        Value value;
        ZelCamErr code = ZelCamErr_Success;
        ZelGenParam::Param* const param = features.GetParam(name.c_str(), &code);
        detail::check(code, "reading the chunk", name);
        value.text_ = detail::textOf(features.GetValueStr(name.c_str(), &code));
        detail::check(code, "reading the chunk", name);
        value.kind_ = detail::kindOf(*param);
        if (ZelGenParam::Int* const integer = param->ToInt()) {
            value.integer_ = integer->GetValue(&code);
        } else if (ZelGenParam::Enum* const choice = param->ToEnum()) {
            value.integer_ = choice->GetValue(&code);
        } else if (ZelGenParam::Boolean* const boolean = param->ToBoolean()) {
            value.integer_ = boolean->GetValue(&code) ? 1 : 0;
        } else if (ZelGenParam::Float* const real = param->ToFloat()) {
            value.float_ = real->GetValue(&code);
        }
        detail::check(code, "reading the chunk", name);
        return value;
    }

  private:
    int64_t number() const {
        const bool isNumber =
            kind_ == Kind::Integer || kind_ == Kind::Enumeration || kind_ == Kind::Boolean;
        if (!isNumber)
            throw Error(ZelCamErr_WrongParamType, "reading a chunk as an integer", "", text_);
        return integer_;
    }

    Kind kind_ = Kind::Other;
    std::string text_;
    int64_t integer_ = 0;
    double float_ = 0;
};

namespace detail {

// The description of a frame, for one that outlives its stream.
struct FrameCopy {
    uint64_t id = 0;
    uint64_t timestamp = 0;
    bool isIncomplete = false;
    size_t imageOffset = 0;
    ImageLayout layout;
    std::vector<ZelBufferPart> parts;
    std::map<std::string, Value> chunks;
    std::shared_ptr<Block> block;
};

// Chunk features have this prefix in the SFNC, which may be left out.
inline std::string chunkName(const std::string& name) {
    return name.compare(0, 5, "Chunk") == 0 ? name : "Chunk" + name;
}

inline ImageLayout layoutOf(ZelCam::Buffer& buffer) {
    ImageLayout layout;
    layout.format = buffer.GetPixelFormat();
    layout.width = buffer.GetWidth();
    layout.height = buffer.GetHeight();
    layout.xOffset = buffer.GetXOffset();
    layout.yOffset = buffer.GetYOffset();
    layout.linePadding = buffer.GetXPadding();
    layout.deliveredHeight = buffer.GetDeliveredHeight();
    if (layout.deliveredHeight == 0) layout.deliveredHeight = layout.height;
    return layout;
}

inline std::vector<ZelBufferPart> partsOf(ZelCam::Buffer& buffer) {
    std::vector<ZelBufferPart> parts(buffer.GetNumParts());
    for (size_t i = 0; i < parts.size(); ++i)
        check(buffer.GetPart(i, &parts[i], sizeof parts[i]), "reading the parts of a frame");
    return parts;
}

}  // namespace detail

// The chunks of a frame: values that the camera sent with it.
//
//     const double exposure = frame.chunks()["ExposureTime"];
class Chunks {
  public:
    // By the name of the feature, with or without its prefix "Chunk". ZelCamErr_GenTL_NoData for a
    // frame without chunks, ZelCamErr_AccessDenied if it has no such one.
    Value operator[](const std::string& name) const {
        const std::string chunk = detail::chunkName(name);
        if (copy_) {
            const auto found = copy_->chunks.find(chunk);
            if (found == copy_->chunks.end())
                throw Error(ZelCamErr_AccessDenied, "reading the chunk", chunk);
            return found->second;
        }
        return lease_->askChunks(
            [&](ZelGenParam::Array& features) { return Value::of(features, chunk); });
    }

    // All that the frame has; empty without chunks.
    std::map<std::string, Value> all() const {
        if (copy_) return copy_->chunks;
        std::map<std::string, Value> values;
        try {
            lease_->askChunks([&](ZelGenParam::Array& features) { readAll(features, values); });
        } catch (const Error& error) {
            if (error.code() != ZelCamErr_GenTL_NoData) throw;
        }
        return values;
    }

    // For the layer itself.
    Chunks(std::shared_ptr<detail::Lease> lease, std::shared_ptr<const detail::FrameCopy> copy)
        : lease_(std::move(lease)), copy_(std::move(copy)) {}

  private:
    // Features that control chunks are writable; chunks are not.
    static void readAll(ZelGenParam::Array& features, std::map<std::string, Value>& values) {
        for (uint32_t i = 0; i < features.GetCount(); ++i) {
            ZelGenParam::Param* const param = features.GetParamByIndex(i, nullptr);
            if (param == nullptr) continue;
            const std::string name = detail::textOf(param->GetName());
            if (name.compare(0, 5, "Chunk") != 0 || param->ToCategory() != nullptr) continue;
            if (name == "ChunkModeActive" || name == "ChunkEnable" || param->IsWritable() ||
                !param->IsReadable())
                continue;
            values.emplace(name, Value::of(features, name));
        }
    }

    std::shared_ptr<detail::Lease> lease_;
    std::shared_ptr<const detail::FrameCopy> copy_;
};

// One frame in a buffer of the stream: a lease. The buffer goes back to the camera when the frame
// and all images of it are gone. So a program that keeps as many frames as there are buffers gets
// no more; copy() leaves the buffer to the camera.
//
// Once its stream has ended, a frame throws ZelCamErr_GenTL_InvalidBuffer. Images of it, which were
// made before, stay valid. Any thread may use a frame, one at a time.
class Frame {
  public:
    Frame(Frame&&) = default;
    Frame& operator=(Frame&&) = default;
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    // The number that the camera gave it. A gap means lost frames.
    uint64_t id() const {
        return copy_ ? copy_->id : ask([](ZelCam::Buffer& buffer) { return buffer.GetFrameID(); });
    }

    // The time of the camera, in its ticks.
    uint64_t timestamp() const {
        return copy_ ? copy_->timestamp
                     : ask([](ZelCam::Buffer& buffer) { return buffer.GetTimestamp(); });
    }

    // When it reached the program.
    std::chrono::steady_clock::time_point arrival() const { return arrival_; }

    // Whether all of it came.
    bool isComplete() const {
        return copy_ ? !copy_->isIncomplete
                     : !ask([](ZelCam::Buffer& buffer) { return buffer.IsIncomplete(); });
    }

    // How many frames the program did not get between the one before and this: by the gap in their
    // numbers, or, after the camera was lost, by the time that passed.
    uint64_t missed() const { return missed_; }

    // The image, or the first image of a multi-part frame. Empty if the frame has none.
    Image image() const {
        const std::vector<Part> all = parts();
        for (const Part& part : all)
            if (!part.image.empty()) return part.image;
        const auto layout = copy_ ? copy_->layout : ask(detail::layoutOf);
        const size_t offset =
            copy_ ? copy_->imageOffset
                  : ask([](ZelCam::Buffer& buffer) { return buffer.GetImageOffset(); });
        return imageAt(offset, block().size(), layout);
    }

    // The parts of a multi-part frame; empty for any other.
    std::vector<Part> parts() const {
        std::vector<Part> all;
        for (const ZelBufferPart& part : copy_ ? copy_->parts : ask(detail::partsOf))
            all.push_back(describe(part));
        return all;
    }

    Chunks chunks() const { return {lease_, copy_}; }

    // A frame with memory of its own, which needs neither the buffer nor the camera.
    Frame copy() const {
        if (copy_) return Frame(copy_, arrival_, missed_);
        auto copied = std::make_shared<detail::FrameCopy>();
        lease_->ask([&](ZelCam::Buffer& buffer) {
            copied->id = buffer.GetFrameID();
            copied->timestamp = buffer.GetTimestamp();
            copied->isIncomplete = buffer.IsIncomplete();
            copied->imageOffset = buffer.GetImageOffset();
            copied->layout = detail::layoutOf(buffer);
            copied->parts = detail::partsOf(buffer);
        });
        copied->chunks = chunks().all();
        copied->block = std::make_shared<detail::Block>(block().size(), size_t{1});
        std::memcpy(copied->block->data(), block().data(), block().size());
        for (ZelBufferPart& part : copied->parts)
            part.data = copied->block->data() + offsetOf(part);
        return Frame(std::move(copied), arrival_, missed_);
    }

    // For the layer itself.
    Frame(std::shared_ptr<detail::Lease> lease, std::chrono::steady_clock::time_point arrival)
        : lease_(std::move(lease)), arrival_(arrival) {}
    void setMissed(uint64_t missed) { missed_ = missed; }

  private:
    Frame(std::shared_ptr<const detail::FrameCopy> copy,
          std::chrono::steady_clock::time_point arrival, uint64_t missed)
        : copy_(std::move(copy)), arrival_(arrival), missed_(missed) {}

    template <typename Ask>
    std::invoke_result_t<Ask, ZelCam::Buffer&> ask(Ask what) const {
        return lease_->ask(what);
    }

    const detail::Block& block() const { return copy_ ? *copy_->block : *lease_->block(); }

    size_t offsetOf(const ZelBufferPart& part) const {
        return static_cast<size_t>(static_cast<const uint8_t*>(part.data) - block().data());
    }

    Image imageAt(size_t offset, size_t end, const ImageLayout& layout) const {
        if (offset >= end || end > block().size() || layout.height == 0) return {};
        std::shared_ptr<const void> keep = copy_;
        if (!copy_) keep = lease_;
        return {std::move(keep), block().data() + offset, end - offset, layout};
    }

    // A part without pixels, such as text, has an empty image.
    Part describe(const ZelBufferPart& part) const {
        constexpr uint64_t kPfnc = 4;  // GenTL PIXELFORMAT_NAMESPACE_PFNC_32BIT
        ImageLayout layout;
        layout.format =
            part.formatNamespace == kPfnc || part.formatNamespace == 0 ? part.format : 0;
        layout.width = part.width;
        layout.height = part.height;
        layout.xOffset = part.xOffset;
        layout.yOffset = part.yOffset;
        layout.linePadding = part.xPadding;
        layout.deliveredHeight = part.deliveredHeight != 0 ? part.deliveredHeight : part.height;
        const size_t offset = offsetOf(part);
        const size_t end = part.size > block().size() - offset ? 0 : offset + part.size;
        return {part.dataType, imageAt(offset, end, layout), part.sourceId, part.regionId,
                part.dataPurposeId};
    }

    std::shared_ptr<detail::Lease> lease_;
    std::shared_ptr<const detail::FrameCopy> copy_;
    std::chrono::steady_clock::time_point arrival_;
    uint64_t missed_ = 0;
};

// How frames are grabbed.
struct FrameOptions {
    // How many; without end if it is not set. A camera in the acquisition mode SingleFrame or
    // MultiFrame ends earlier.
    std::optional<uint64_t> count;

    // How many frames can be kept or wait for the program; at least what the producer needs.
    size_t buffers = 16;

    // A frame that does not come in this time is an Error (ZelCamErr_GenTL_Timeout).
    std::chrono::milliseconds timeout{5000};

    // Whether frames that waited for the program are left out for the newest one.
    bool newestOnly = false;

    // Whether to go on with a camera that was unplugged and comes back, with its settings as they
    // were. Without this, its loss is an Error (isLost()).
    bool reconnect = false;

    // How long to wait for it; without end if it is not set.
    std::optional<std::chrono::milliseconds> reconnectTime;

    // Called some times in a second while the loop waits, for a frame or for a camera to come back.
    // What it throws leaves the loop.
    std::function<void()> whileWaiting;
};

namespace detail {

// Sets a camera that came back as it was.
inline void restore(CameraState& state) {
    const auto [configuration, settings] = state.keptSettings();
    const std::shared_ptr<Opened> opened = state.opened();
    configure(opened->device(), configuration);
    ZelGenParam::Array& features = opened->features(Module::Camera);
    for (const Setting& setting : settings) {
        for (const auto& [selector, value] : setting.selectors)
            features.SetValueStr(selector.c_str(), value.c_str(), nullptr);
        features.SetValueStr(setting.name.c_str(), setting.value.c_str(), nullptr);
    }
}

// What an iterator of frames works with.
class Grabbing {
  public:
    Grabbing(std::shared_ptr<CameraState> state, FrameOptions options)
        : state_(std::move(state)), options_(std::move(options)) {
        if (options_.reconnect) state_->keepSettings(configurationOf(state_->opened()->device()));
        acquisition_ = Acquisition::begin(state_->opened(), options_.buffers);
        numLeft_ =
            std::min(options_.count.value_or(ZelCam::Infinite), acquisition_->numFramesOfMode());
    }

    ~Grabbing() { end(); }

    Grabbing(const Grabbing&) = delete;
    Grabbing& operator=(const Grabbing&) = delete;

    // Nothing after the last one.
    std::optional<Frame> next() {
        const std::lock_guard<std::recursive_mutex> use(useMutex_);
        while (numLeft_ > 0 && !isCancelled_) {
            try {
                std::shared_ptr<Lease> lease = acquisition_->next(
                    options_.timeout, options_.newestOnly, options_.whileWaiting);
                if (lease == nullptr) continue;  // cancelled
                --numLeft_;
                return count(Frame(std::move(lease), Clock::now()));
            } catch (const Error& error) {
                if (!error.isLost()) throw;
                lose(error);
                if (!options_.reconnect) throw;
                if (!comeBack()) throw;
            }
        }
        return std::nullopt;
    }

    // Thread-safe, like end(), which waits for a next() that runs.
    void cancel() {
        isCancelled_ = true;
        if (const std::shared_ptr<Acquisition> now = current()) now->wake();
    }

    void end() {
        hasEnded_ = true;
        cancel();
        const std::lock_guard<std::recursive_mutex> use(useMutex_);
        if (const std::shared_ptr<Acquisition> last = current()) last->end();
    }

    bool hasEnded() const { return hasEnded_; }

    uint64_t numUnderrun() const {
        const std::shared_ptr<Acquisition> now = current();
        return numUnderrunBefore_ + (now ? now->numUnderrun() : 0);
    }

  private:
    std::shared_ptr<Acquisition> current() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        return acquisition_;
    }

    Frame count(Frame frame) {
        const uint64_t id = frame.id();
        if (hasLost_ && interval_.count() > 0) {
            const auto gap = frame.arrival() - lastArrival_;
            frame.setMissed(static_cast<uint64_t>(std::max<int64_t>(gap / interval_ - 1, 0)));
        } else if (hasLast_ && id > lastId_) {
            frame.setMissed(id - lastId_ - 1);
        }
        if (hasLast_ && !hasLost_) interval_ = frame.arrival() - lastArrival_;
        hasLost_ = false;
        hasLast_ = true;
        lastId_ = id;
        lastArrival_ = frame.arrival();
        return frame;
    }

    void lose(const Error& error) {
        numUnderrunBefore_ += acquisition_->numUnderrun();
        acquisition_->end();
        state_->lose();
        hasLost_ = hasLast_;
        if (const auto call = state_->onLost()) (*call)(error);
    }

    // False if it does not come back in time.
    bool comeBack() {
        const Clock::time_point begin = Clock::now();
        while (!isCancelled_) {
            if (options_.reconnectTime && Clock::now() - begin > *options_.reconnectTime)
                return false;
            if (tryAgain()) return true;
            if (options_.whileWaiting) options_.whileWaiting();
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        return true;
    }

    bool tryAgain() {
        try {
            if (!state_->find()) return false;
            state_->open();
            restore(*state_);
            std::shared_ptr<Acquisition> next =
                Acquisition::begin(state_->opened(), options_.buffers);
            const std::lock_guard<std::mutex> lock(mutex_);
            acquisition_ = std::move(next);
            return true;
        } catch (const Error&) {
            // It is listed before it can be opened, and may go away again.
            state_->lose();
            return false;
        }
    }

    const std::shared_ptr<CameraState> state_;
    const FrameOptions options_;
    std::recursive_mutex useMutex_;
    mutable std::mutex mutex_;
    std::shared_ptr<Acquisition> acquisition_;
    std::atomic<bool> isCancelled_{false};
    std::atomic<bool> hasEnded_{false};
    uint64_t numLeft_ = 0;
    uint64_t numUnderrunBefore_ = 0;
    bool hasLast_ = false;
    bool hasLost_ = false;  // since the last frame
    uint64_t lastId_ = 0;
    Clock::time_point lastArrival_;
    Clock::duration interval_{0};
};

}  // namespace detail

// Frames as they come: a range for one loop. It starts the camera, and stops it when it ends.
//
//     for (const zel::Frame& frame : camera.frames(100)) ...
class Frames {
  public:
    // The frame belongs to the iterator until the next one; move it out to keep it.
    class iterator {
      public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Frame;
        using difference_type = std::ptrdiff_t;
        using pointer = Frame*;
        using reference = Frame&;

        iterator() = default;
        explicit iterator(detail::Grabbing* grabbing) : grabbing_(grabbing) { ++*this; }

        Frame& operator*() const { return **frame_; }
        Frame* operator->() const { return &**frame_; }

        iterator& operator++() {
            if (!frame_) frame_ = std::make_shared<std::optional<Frame>>();
            frame_->reset();  // its buffer may be filled again
            *frame_ = grabbing_->next();
            if (!*frame_) {
                grabbing_->end();
                grabbing_ = nullptr;
            }
            return *this;
        }
        void operator++(int) { ++*this; }

        bool operator==(const iterator& other) const { return grabbing_ == other.grabbing_; }
        bool operator!=(const iterator& other) const { return grabbing_ != other.grabbing_; }

      private:
        detail::Grabbing* grabbing_ = nullptr;
        std::shared_ptr<std::optional<Frame>> frame_;
    };

    iterator begin() { return iterator(grabbing_.get()); }
    iterator end() { return {}; }

    // The next frame; nothing after the last one or after cancel(). For who has no loop.
    std::optional<Frame> next() { return grabbing_->next(); }

    // Ends the loop, also while it waits. Thread-safe.
    void cancel() { grabbing_->cancel(); }

    // Stops the camera now.
    void stop() { grabbing_->end(); }

    // Frames that were lost because the program had all buffers.
    uint64_t numUnderrun() const { return grabbing_->numUnderrun(); }

    // For the layer itself.
    explicit Frames(std::shared_ptr<detail::Grabbing> grabbing) : grabbing_(std::move(grabbing)) {}

    Frames(Frames&&) = default;
    Frames& operator=(Frames&&) = default;
    Frames(const Frames&) = delete;
    Frames& operator=(const Frames&) = delete;
    ~Frames() = default;

  private:
    std::shared_ptr<detail::Grabbing> grabbing_;
};

}  // namespace zel

#endif  // ZEL_FRAME_H
