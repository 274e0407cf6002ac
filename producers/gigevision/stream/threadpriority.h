// How soon a thread runs that packets wake.
#pragma once

namespace ZelGev {

// The calling thread runs before others, as far as the system lets this user have that, and it
// works without. True for real-time priority.
bool HurryThread();

}  // namespace ZelGev
