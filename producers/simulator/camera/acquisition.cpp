#include "producers/simulator/camera/acquisition.h"

#include <algorithm>
#include <limits>
#include <new>
#include <sys/resource.h>
#include <utility>

#include "producers/server/base/error.h"
#include "producers/simulator/camera/camera.h"
#include "producers/simulator/camera/framewriter.h"

namespace ZelSim {

using ZelCti::Error;
using ZelCti::WaitPoint;

namespace {

// Linux has a nice value for each thread. For frames without pause this would only mean more
// switches between threads: a sixth fewer frames where all processors are busy.
void GiveWayToTheProgram() {
    setpriority(PRIO_PROCESS, 0, getpriority(PRIO_PROCESS, 0) + Acquisition::kNiceness);
}

uint64_t FramesOfOneStart(const FrameSettings& settings) {
    switch (settings.acquisitionMode) {
        case AcquisitionMode::SingleFrame:
            return 1;
        case AcquisitionMode::MultiFrame:
            return settings.acquisitionFrameCount;
        default:
            return std::numeric_limits<uint64_t>::max();
    }
}

}  // namespace

Acquisition::Acquisition(Camera& camera)
    : camera_(camera),
      listener_(camera.Control().AddListener(
          [this](const FrameSettings&, const FrameSettings&) { Wake(); })) {}

void Acquisition::Wake() {
    const Lock lock(mutex_);
    WakeThread();
}

void Acquisition::Start() {
    const Lock lock(mutex_);
    if (isAcquiring_ && !isStopping_ && camera_.Config().freeRunning) return;
    if (isAcquiring_) throw Error(GenTL::GC_ERR_BUSY, "the camera has not stopped yet");
    if (NeedsLock()) throw Error(GenTL::GC_ERR_ACCESS_DENIED, "TLParamsLocked must be 1 first");
    if (receivers_.empty()) {
        throw Error(GenTL::GC_ERR_ACCESS_DENIED, "no stream is started to send frames to");
    }
    Begin();
}

// Many programs for GigE Vision never write TLParamsLocked.
bool Acquisition::NeedsLock() const {
    const CameraConfig& config = camera_.Config();
    return !config.freeRunning && !config.network && !camera_.Control().IsLockedByClient();
}

// With the mutex held, as all private functions but Wake.
void Acquisition::WakeThread() {
    ++numWakes_;
    wake_.WakeAll();
}

void Acquisition::Begin() {
    const auto now = Clock::now();
    locked_ = camera_.Control().LockForAcquisition();
    isAcquiring_ = true;
    isStopping_ = false;
    nextId_ = 0;
    numLeft_ = FramesOfOneStart(*camera_.Settings());
    triggered_.reset();
    schedule_.Begin(now);
    for (const Receiver* const receiver : receivers_)
        if (receiver->onBegin_) receiver->onBegin_();
    Report(EventKind::AcquisitionStart, now);
    WakeThread();
}

void Acquisition::End() {
    if (!isAcquiring_) return;
    isAcquiring_ = false;
    isStopping_ = false;
    locked_.reset();
    Report(EventKind::AcquisitionEnd, Clock::now());
}

void Acquisition::EndIfIdle() {
    if ((isStopping_ || numLeft_ == 0) && !exposed_ && !readOut_) End();
}

// Gives up the frames under way. One that is being sent already gets there; End comes after it.
void Acquisition::Cancel() {
    exposed_.reset();
    isStopping_ = isAcquiring_;
    if (isSending_) return;
    readOut_.reset();
    for (Receiver* const receiver : receivers_)
        PutBack(*receiver);
    End();
}

void Acquisition::PutBack(Receiver& receiver) {
    if (receiver.buffer_ == nullptr) return;
    receiver.buffers_.PutBack(*receiver.buffer_);
    receiver.buffer_ = nullptr;
}

void Acquisition::Stop() {
    const Lock lock(mutex_);
    if (!isAcquiring_) return;
    isStopping_ = true;
    EndIfIdle();
    WakeThread();
}

void Acquisition::Abort() {
    const Lock lock(mutex_);
    Cancel();
    WakeThread();
}

void Acquisition::Unplug() {
    const Lock lock(mutex_);
    for (Receiver* const receiver : receivers_)
        receiver->grabbing_ = false;
    Cancel();
    WakeThread();
}

// As in a real sensor, a trigger is lost that comes while another exposure has not ended, or while
// its own would end before the last frame is read out.
void Acquisition::Trigger() {
    const Lock lock(mutex_);
    if (!IsReady(*camera_.Settings())) return;
    triggered_ = Clock::now();
    WakeThread();
}

bool Acquisition::IsReady(const FrameSettings& settings) const {
    return settings.triggerMode && IsActive() && !triggered_ &&
           Clock::now() >= schedule_.Earliest(settings);
}

bool Acquisition::IsStopping() const {
    const Lock lock(mutex_);
    return isStopping_;
}

bool Acquisition::Is(Status status) const {
    const Lock lock(mutex_);
    switch (status) {
        case Status::FrameTriggerWait:
            return IsReady(*camera_.Settings());
        case Status::AcquisitionActive:
            return isAcquiring_;
        case Status::FrameActive:
            return exposed_ || readOut_;
    }
    return false;
}

void Acquisition::Attach(Receiver& receiver, uint64_t numFrames) {
    const std::lock_guard attaching(attachMutex_);
    const Lock lock(mutex_);
    camera_.CheckPlugged();
    receivers_.reserve(receivers_.size() + 1);  // a thread without a receiver is never ended
    if (!thread_.joinable()) {
        isQuitting_ = false;
        thread_ = std::thread(&Acquisition::Run, this);
    }
    if (std::find(receivers_.begin(), receivers_.end(), &receiver) == receivers_.end()) {
        receivers_.push_back(&receiver);
    }
    receiver.numLeft_ = numFrames;
    receiver.isFinishing_ = false;
    receiver.isKilled_ = false;
    receiver.grabbing_ = true;
    if (camera_.Config().freeRunning && !isAcquiring_) Begin();
    WakeThread();
}

void Acquisition::Detach(Receiver& receiver, bool kill) {
    const std::lock_guard attaching(attachMutex_);
    Lock lock(mutex_);
    const auto place = std::find(receivers_.begin(), receivers_.end(), &receiver);
    if (place == receivers_.end()) return;
    receiver.isFinishing_ = true;
    receiver.isKilled_ = receiver.isKilled_ || kill;
    wake_.SleepUntil(lock, WaitPoint::kEndless, [&] {
        return receiver.buffer_ == nullptr || (receiver.isKilled_ && !isSending_);
    });
    PutBack(receiver);
    receiver.grabbing_ = false;
    receivers_.erase(place);
    if (!receivers_.empty()) return;
    Cancel();
    isQuitting_ = true;
    WakeThread();
    lock.unlock();
    thread_.join();
}

void Acquisition::Kill(Receiver& receiver) {
    const Lock lock(mutex_);
    receiver.isKilled_ = true;
    WakeThread();
}

// What follows runs on the thread, with the mutex held but where it says so.

void Acquisition::Run() {
    if (camera_.Config().frameRate > 0) GiveWayToTheProgram();
    Lock lock(mutex_);
    while (!isQuitting_) {
        const auto now = Clock::now();
        const Due due = PlanStep(now);
        if (due.time > now) {
            wake_.SleepUntil(lock, due.time,
                             [this, before = numWakes_] { return numWakes_ != before; });
            continue;
        }
        switch (due.step) {
            case Step::StartFrame:
                StartFrame(due.time);
                break;
            case Step::EndExposure:
                EndExposure();
                break;
            case Step::EndReadout:
                EndReadout(lock);
                break;
            case Step::None:
                break;
        }
    }
}

// Finds the step that comes first, and prepares the next frame if that one does. A late thread
// catches up with the frame under way before it begins another.
Acquisition::Due Acquisition::PlanStep(Clock::time_point now) {
    Due due;
    if (readOut_) {
        due = {Step::EndReadout, readOut_->ReadoutEnd()};
    } else if (exposed_) {
        due = {Step::EndExposure, exposed_->ExposureEnd()};
    }
    if (due.time <= now || exposed_ || !IsActive()) return due;
    const Clock::time_point start = PlanStart(now);
    return start < due.time ? Due{Step::StartFrame, start} : due;
}

// Takes the settings of the next frame, and finds when it starts. A trigger that came before the
// trigger mode was switched off is forgotten.
Acquisition::Clock::time_point Acquisition::PlanStart(Clock::time_point now) {
    settings_ = camera_.Settings();
    if (!settings_->triggerMode) triggered_.reset();
    if (settings_->triggerMode && !triggered_) return WaitPoint::kEndless;
    if (!settings_->IsTimed()) return FindInput() ? now : WaitPoint::kEndless;
    return triggered_ ? *triggered_ : schedule_.PlanStart(*settings_, now);
}

// Looks for a queued buffer; without one, asks to be woken for it. A buffer that is queued after
// the second look finds awaitsInput_ set, and wakes the thread.
bool Acquisition::FindInput() {
    const auto look = [this] {
        return std::any_of(receivers_.begin(), receivers_.end(), [](const Receiver* receiver) {
            return receiver->grabbing_ && !receiver->isFinishing_ && receiver->buffers_.HasInput();
        });
    };
    if (look()) {
        if (awaitsInput_) awaitsInput_ = false;
        return true;
    }
    awaitsInput_ = true;
    return look();
}

void Acquisition::StartFrame(Clock::time_point start) {
    const bool asPlanned = settings_->IsTimed() && !triggered_;
    schedule_.Add(start, *settings_, asPlanned);
    triggered_.reset();
    exposed_ = Frame{nextId_++, settings_, start};
    --numLeft_;
    Report(EventKind::FrameStart, start, exposed_->id);
}

void Acquisition::EndExposure() {
    readOut_ = std::exchange(exposed_, std::nullopt);
    Report(EventKind::ExposureEnd, readOut_->ExposureEnd(), readOut_->id);
    if (IsLost(camera_, *readOut_)) return;
    const bool mustHaveOne = readOut_->settings->IsTimed();
    for (Receiver* const receiver : receivers_) {
        if (!receiver->grabbing_ || receiver->isFinishing_) continue;
        receiver->buffer_ = receiver->buffers_.Take(mustHaveOne);
    }
}

// Fills and delivers the buffers without the mutex.
void Acquisition::EndReadout(Lock& lock) {
    Receiver* first = nullptr;
    for (Receiver* const receiver : receivers_) {
        if (receiver->buffer_ != nullptr) receiver->next_ = std::exchange(first, receiver);
    }
    isSending_ = true;
    lock.unlock();
    for (Receiver* receiver = first; receiver != nullptr; receiver = receiver->next_)
        Write(*receiver);
    Report(EventKind::FrameEnd, readOut_->ReadoutEnd(), readOut_->id);
    for (Receiver* receiver = first; receiver != nullptr; receiver = receiver->next_)
        Send(*receiver);
    lock.lock();
    for (Receiver* receiver = first; receiver != nullptr; receiver = receiver->next_)
        receiver->buffer_ = nullptr;
    isSending_ = false;
    readOut_.reset();
    EndIfIdle();
    wake_.WakeAll();
}

void Acquisition::Write(Receiver& receiver) {
    try {
        receiver.sent_ = WriteFrame(camera_, *readOut_, *receiver.buffer_);
    } catch (const std::bad_alloc&) {
        receiver.sent_.reset();  // no memory for the picture: the frame is lost
    }
}

void Acquisition::Send(Receiver& receiver) {
    if (!receiver.sent_) return receiver.buffers_.Lose(*receiver.buffer_);
    if (--receiver.numLeft_ == 0) receiver.grabbing_ = false;
    receiver.buffers_.Deliver(*receiver.buffer_, *receiver.sent_);
}

void Acquisition::Report(EventKind kind, Clock::time_point time, std::optional<uint64_t> frameId) {
    EventChannel& events = camera_.Events();
    if (events.IsOn(kind)) {
        events.Send(kind, camera_.Ticks(camera_.NanosecondsAt(time)), frameId);
    }
}

}  // namespace ZelSim
