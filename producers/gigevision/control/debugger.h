// Debuggers stop a process for longer than a camera waits for it.
#pragma once

namespace ZelGev {

// Whether one is attached to this process at the moment.
bool IsDebuggerAttached();

}  // namespace ZelGev
