// Ctrl-C.
#ifndef ZELCAM_TOOLS_ZELCAM_INTERRUPT_H
#define ZELCAM_TOOLS_ZELCAM_INTERRUPT_H

// From now on the first SIGINT or SIGTERM is only noted, so that a command can stop the camera and
// clean up; a second one ends the program as usual, in case that the clean-up hangs.
void NoteInterrupts();

bool Interrupted();

#endif  // ZELCAM_TOOLS_ZELCAM_INTERRUPT_H
