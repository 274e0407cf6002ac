#include "tools/zelcam/console/interrupt.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <thread>
#include <unistd.h>

#include "tools/zelcam/console/failure.h"

namespace ZelTool {

namespace {

// The name of a watched file, kept where a signal handler can read it: a handler may neither
// allocate nor lock. Whoever changes the state owns the name: the user of the place while Filling,
// the handler while Removing, nobody while Watched.
struct Place {
    enum State { Free, Filling, Watched, Removing };

    bool Take(State from, State to) {
        int expected = from;
        return state.compare_exchange_strong(expected, to);
    }

    std::atomic<int> state{Free};
    std::array<char, PATH_MAX> name{};
};

std::array<Place, 64> watchedNames;
std::atomic<bool> interrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<int>::is_always_lock_free);

void Say(const char* text) {
    (void)!write(STDERR_FILENO, text, std::strlen(text));
}

[[noreturn]] void EndAtOnce() {
    for (Place& place : watchedNames)
        if (place.Take(Place::Watched, Place::Removing)) unlink(place.name.data());
    Say("zelcam: ended at once; the camera was not closed and may take some seconds to notice\n");
    _exit(static_cast<int>(ExitCode::Interrupted));
}

void Note(int) {
    if (interrupted.exchange(true)) EndAtOnce();
    const int error = errno;
    if (isatty(STDERR_FILENO) != 0) Say("\nzelcam: ending; press Ctrl-C again to end at once\n");
    errno = error;
}

}  // namespace

void NoteInterrupts() {
    struct sigaction action {};
    action.sa_handler = Note;
    action.sa_flags = SA_RESTART;
    for (int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before {};
        sigaction(number, nullptr, &before);
        // The program runs below nohup.
        if (number == SIGHUP && before.sa_handler == SIG_IGN) continue;
        sigaction(number, &action, nullptr);
    }
}

bool Interrupted() {
    return interrupted;
}

void EndIfInterrupted() {
    if (Interrupted()) throw Failure(ExitCode::Interrupted, "interrupted");
}

void Pause(uint64_t milliseconds) {
    while (milliseconds > 0 && !Interrupted()) {
        const uint64_t slice = std::min(milliseconds, kSliceMs);
        std::this_thread::sleep_for(std::chrono::milliseconds(slice));
        milliseconds -= slice;
    }
}

void RemovedWhenInterrupted::Watch(const std::string& name) {
    if (name.size() >= PATH_MAX) return;
    for (size_t i = 0; i < watchedNames.size(); ++i) {
        if (!watchedNames[i].Take(Place::Free, Place::Filling)) continue;
        std::memcpy(watchedNames[i].name.data(), name.c_str(), name.size() + 1);
        watchedNames[i].state = Place::Watched;
        place_ = i + 1;
        return;
    }
}

void RemovedWhenInterrupted::Forget() {
    if (place_ != 0) watchedNames[place_ - 1].Take(Place::Watched, Place::Free);
    place_ = 0;
}

}  // namespace ZelTool
