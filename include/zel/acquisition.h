// An acquisition: its buffers, its start and its stop.
#ifndef ZEL_ACQUISITION_H
#define ZEL_ACQUISITION_H

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <mutex>
#include <new>
#include <shared_mutex>
#include <string>
#include <sys/mman.h>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "ZelCam/ZelCam.h"
#include "zel/error.h"
#include "zel/state.h"

namespace zel::detail {

using Clock = std::chrono::steady_clock;

// Memory of one frame. Frames outlive the stream in it.
class Block {
  public:
    Block(size_t size, size_t alignment) : size_(size) {
        // Large pages spare a frame of some megabytes many faults and misses.
        constexpr size_t kLargePage = size_t{2} << 20;
        const size_t unit = std::max(size >= kLargePage ? kLargePage : size_t{4096}, alignment);
        void* memory = nullptr;
        if (posix_memalign(&memory, unit, (size + unit - 1) / unit * unit) != 0)
            throw std::bad_alloc();
        data_.reset(static_cast<uint8_t*>(memory));
        if (size >= kLargePage) madvise(memory, size, MADV_HUGEPAGE);
    }

    uint8_t* data() const { return data_.get(); }
    size_t size() const { return size_; }

  private:
    struct Freer {
        void operator()(uint8_t* memory) const { std::free(memory); }
    };
    std::unique_ptr<uint8_t, Freer> data_;
    size_t size_;
};

// Keeps other threads from the features meanwhile.
class FeatureLock {
  public:
    explicit FeatureLock(ZelGenParam::Array& features) : features_(features) { features_.Lock(); }
    ~FeatureLock() { features_.Unlock(); }
    FeatureLock(const FeatureLock&) = delete;
    FeatureLock& operator=(const FeatureLock&) = delete;

  private:
    ZelGenParam::Array& features_;
};

class Acquisition;

// A delivered buffer, which goes back to the producer when nobody has it any more.
class Lease {
  public:
    Lease(std::shared_ptr<Acquisition> acquisition, ZelCam::Buffer* buffer,
          std::shared_ptr<Block> block)
        : acquisition_(std::move(acquisition)), buffer_(buffer), block_(std::move(block)) {}
    ~Lease();

    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;

    const std::shared_ptr<Block>& block() const { return block_; }

    // What `what` returns of the buffer. Throws once the stream has ended.
    template <typename Ask>
    std::invoke_result_t<Ask, ZelCam::Buffer&> ask(Ask what) const;

    // The same with the chunks of the frame attached, for a `what` of the camera's features.
    template <typename Ask>
    std::invoke_result_t<Ask, ZelGenParam::Array&> askChunks(Ask what) const;

  private:
    const std::shared_ptr<Acquisition> acquisition_;
    ZelCam::Buffer* const buffer_;
    const std::shared_ptr<Block> block_;
};

// Begins with the constructor and ends with end(), in the order of ZelCam/Stream.h. next() and
// end() are for one thread at a time; leases come back from any.
class Acquisition : public std::enable_shared_from_this<Acquisition> {
  public:
    static std::shared_ptr<Acquisition> begin(const std::shared_ptr<Opened>& opened,
                                              size_t numBuffers) {
        std::shared_ptr<Acquisition> acquisition(new Acquisition(opened));
        try {
            acquisition->start(numBuffers);
        } catch (...) {
            acquisition->end();
            throw;
        }
        return acquisition;
    }

    // The next frame; null after wake(). Throws ZelCamErr_GenTL_Timeout if none came in time, or
    // the producer's code. `newestOnly` gives back what came before the newest. Calls
    // `whileWaiting`, which may be empty, every kLongestWait.
    std::shared_ptr<Lease> next(std::chrono::milliseconds timeout, bool newestOnly,
                                const std::function<void()>& whileWaiting) {
        const Clock::time_point end = Clock::now() + timeout;
        for (;;) {
            if (stream_ == nullptr || isWoken_.exchange(false)) return nullptr;
            ZelCamErr code = ZelCamErr_Success;
            ZelCam::Buffer* buffer = wait(end, &code);
            for (ZelCam::Buffer* newer = buffer; newestOnly && newer != nullptr;) {
                newer = wait(Clock::now(), &code);
                if (newer != nullptr) giveBack(*std::exchange(buffer, newer));
            }
            if (buffer != nullptr) return leaseOf(*buffer);
            const bool goesOn = code == ZelCamErr_GenTL_Abort || code == ZelCamErr_GenTL_Timeout;
            if (!goesOn) throw Error(code, "waiting for a frame");
            if (whileWaiting && code == ZelCamErr_GenTL_Timeout) whileWaiting();
            if (Clock::now() >= end && !isWoken_)
                throw Error(ZelCamErr_GenTL_Timeout, "waiting for a frame", "", whyNothingCame());
        }
    }

    // Ends a next() that waits, or else the next one. Thread-safe.
    void wake() {
        isWoken_ = true;
        const std::shared_lock<std::shared_mutex> lock(aliveMutex_);
        if (stream_ != nullptr) stream_->CancelBuffer();
    }

    // Stops the camera and the producer and takes the buffers back. Each step is done whatever came
    // of those before: the next program wants a camera that is idle and not locked.
    void end() {
        if (stream_ == nullptr) return;
        stopCamera();
        stream_->StopAcquisition(ZelCam::StopFlag_Kill);
        numUnderrun_ = stream_->GetNumUnderrun() - numUnderrunBefore_;
        ZelCam::Stream* stream = nullptr;
        {
            // Whoever uses a frame ends first.
            const std::unique_lock<std::shared_mutex> alive(aliveMutex_);
            stream = std::exchange(stream_, nullptr);
            returned_.clear();
        }
        stream->FlushBuffers(ZelCam::FlushOperation::AllDiscard);
        for (const auto& [buffer, block] : buffers_)
            stream->RevokeBuffer(buffer);
        if (stream->GetNumAnnounced() != 0)
            for (const auto& [buffer, block] : buffers_)
                opened_->keep(block);
        buffers_.clear();
        if (isLocked_) features_->SetIntegerValue("TLParamsLocked", 0);
        features_ = nullptr;
        opened_.reset();
    }

    // Frames that were lost because the program had all buffers.
    uint64_t numUnderrun() const {
        const std::shared_lock<std::shared_mutex> lock(aliveMutex_);
        return stream_ != nullptr ? stream_->GetNumUnderrun() - numUnderrunBefore_ : numUnderrun_;
    }

    // The frames that the camera sends by itself in its acquisition mode.
    uint64_t numFramesOfMode() const { return numFramesOfMode_; }

  private:
    friend class Lease;

    // A lease that comes back in the moment before a wait may not wake it.
    static constexpr std::chrono::milliseconds kLongestWait{200};

    explicit Acquisition(std::shared_ptr<Opened> opened) : opened_(std::move(opened)) {}

    void start(size_t numBuffers) {
        stream_ = &opened_->stream();
        features_ = &opened_->features(Module::Camera);
        isLocked_ = true;
        tryCamera(features_->SetIntegerValue("TLParamsLocked", 1), "locking the settings");
        numFramesOfMode_ = framesOfMode();
        announce(std::max(numBuffers, stream_->GetMinNumBuffers()));
        numUnderrunBefore_ = stream_->GetNumUnderrun();
        check(stream_->StartAcquisition(ZelCam::Infinite, ZelCam::StartFlag_Default),
              "starting the stream");
        isSending_ = true;
        tryCamera(features_->ExecuteCommand("AcquisitionStart"), "starting the camera");
    }

    // Cameras need not have the features that start and stop them, and who may only read them
    // watches what another program started.
    static void tryCamera(ZelCamErr code, const char* operation) {
        if (code != ZelCamErr_ParamNotFound && code != ZelCamErr_AccessDenied)
            check(code, operation);
    }

    uint64_t framesOfMode() const {
        ZelCamErr code = ZelCamErr_Success;
        const std::string mode = textOf(features_->GetEnumValueStr("AcquisitionMode", &code));
        if (mode == "SingleFrame") return 1;
        if (mode != "MultiFrame") return ZelCam::Infinite;
        const int64_t count = features_->GetIntegerValue("AcquisitionFrameCount", &code);
        return code == ZelCamErr_Success ? static_cast<uint64_t>(count) : ZelCam::Infinite;
    }

    void announce(size_t count) {
        size_t size = stream_->GetBufferSize();
        if (size == 0)
            size = static_cast<size_t>(features_->GetIntegerValue("PayloadSize", nullptr));
        if (size == 0)
            throw Error(ZelCamErr_GenTL_NotAvailable, "asking for the size of a frame", "",
                        "neither the stream nor the camera reports it");
        for (size_t i = 0; i < count; ++i) {
            auto block = std::make_shared<Block>(size, stream_->GetBufferAlignment());
            ZelCamErr code = ZelCamErr_Success;
            ZelCam::Buffer* const buffer = stream_->SetBuffer(block->data(), size, nullptr, &code);
            check(buffer != nullptr ? ZelCamErr_Success : code, "announcing a buffer");
            buffers_.emplace_back(buffer, std::move(block));
        }
        numQueued_ = count;
    }

    // The next buffer, or null with the producer's code.
    ZelCam::Buffer* wait(Clock::time_point end, ZelCamErr* code) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        const auto time = std::clamp(left, std::chrono::milliseconds(0), kLongestWait);
        {
            const std::lock_guard<std::mutex> lock(streamMutex_);
            queueReturned();
            isWaiting_ = true;
        }
        ZelCam::Buffer* const buffer =
            stream_->GetBuffer(static_cast<uint64_t>(time.count()), code);
        const std::lock_guard<std::mutex> lock(streamMutex_);
        isWaiting_ = false;
        if (buffer != nullptr) --numQueued_;
        queueReturned();
        return buffer;
    }

    void queueReturned() {
        for (ZelCam::Buffer* const buffer : returned_)
            queue(*buffer);
        returned_.clear();
    }

    void queue(ZelCam::Buffer& buffer) {
        if (stream_->QueueBuffer(&buffer) == ZelCamErr_Success) ++numQueued_;
    }

    // A stream is used by one thread at a time: while one waits in it, it queues what came back.
    void giveBack(ZelCam::Buffer& buffer) {
        const std::shared_lock<std::shared_mutex> alive(aliveMutex_);
        if (stream_ == nullptr) return;
        const std::lock_guard<std::mutex> lock(streamMutex_);
        if (!isWaiting_) return queue(buffer);
        returned_.push_back(&buffer);
        if (numQueued_ <= 1) stream_->CancelBuffer();
    }

    std::shared_ptr<Lease> leaseOf(ZelCam::Buffer& buffer) {
        const auto found = std::find_if(buffers_.begin(), buffers_.end(),
                                        [&](const auto& one) { return one.first == &buffer; });
        return std::make_shared<Lease>(shared_from_this(), &buffer, found->second);
    }

    std::string whyNothingCame() const {
        if (textOf(features_->GetEnumValueStr("TriggerMode", nullptr)) == "On")
            return "the camera waits for a trigger (TriggerMode is On)";
        const std::lock_guard<std::mutex> lock(streamMutex_);
        if (numQueued_ == 0) return "the program has all buffers: frames were kept";
        return "";
    }

    void stopCamera() {
        if (!std::exchange(isSending_, false)) return;
        // A stop may wait for the end of the current exposure.
        constexpr std::chrono::seconds kLongestStop{2};
        if (features_->ExecuteCommand("AcquisitionStop") != ZelCamErr_Success) return;
        const Clock::time_point end = Clock::now() + kLongestStop;
        ZelCamErr code = ZelCamErr_Success;
        while (!features_->IsCommandDone("AcquisitionStop", &code) && code == ZelCamErr_Success) {
            if (Clock::now() > end) {
                features_->ExecuteCommand("AcquisitionAbort");
                return;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }

    std::shared_ptr<Opened> opened_;
    ZelCam::Stream* stream_ = nullptr;  // null: ended
    ZelGenParam::Array* features_ = nullptr;
    std::vector<std::pair<ZelCam::Buffer*, std::shared_ptr<Block>>> buffers_;
    std::atomic<bool> isWoken_{false};
    bool isLocked_ = false;   // also after an attempt that failed
    bool isSending_ = false;  // likewise
    uint64_t numFramesOfMode_ = ZelCam::Infinite;
    uint64_t numUnderrunBefore_ = 0;
    uint64_t numUnderrun_ = 0;

    // Shared: the stream is used. Alone: it is ended.
    mutable std::shared_mutex aliveMutex_;

    mutable std::mutex streamMutex_;
    bool isWaiting_ = false;
    size_t numQueued_ = 0;
    std::vector<ZelCam::Buffer*> returned_;
};

inline Lease::~Lease() {
    acquisition_->giveBack(*buffer_);
}

template <typename Ask>
std::invoke_result_t<Ask, ZelCam::Buffer&> Lease::ask(Ask what) const {
    const std::shared_lock<std::shared_mutex> lock(acquisition_->aliveMutex_);
    if (acquisition_->stream_ == nullptr)
        throw Error(ZelCamErr_GenTL_InvalidBuffer, "using a frame", "",
                    "its stream has ended; frame.copy() outlives it");
    return what(*buffer_);
}

template <typename Ask>
std::invoke_result_t<Ask, ZelGenParam::Array&> Lease::askChunks(Ask what) const {
    return ask([&](ZelCam::Buffer& buffer) {
        ZelGenParam::Array& features = *acquisition_->features_;
        const FeatureLock lock(features);
        check(buffer.AttachChunks(), "reading the chunks of a frame");
        return what(features);
    });
}

}  // namespace zel::detail

#endif  // ZEL_ACQUISITION_H
