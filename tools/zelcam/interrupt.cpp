#include "tools/zelcam/interrupt.h"

#include <csignal>
#include <initializer_list>

namespace {

volatile std::sig_atomic_t interrupted = 0;

void Note(int) {
    interrupted = 1;
}

}  // namespace

void NoteInterrupts() {
    struct sigaction action {};
    action.sa_handler = Note;
    // The default action comes back with the first signal.
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    for (int number : {SIGINT, SIGTERM})
        sigaction(number, &action, nullptr);
}

bool Interrupted() {
    return interrupted != 0;
}
