// What a user may have meant.
#ifndef ZELCAM_TOOLS_ZELCAM_SUGGESTION_H
#define ZELCAM_TOOLS_ZELCAM_SUGGESTION_H

#include <string>
#include <vector>

// "; did you mean Width or WidthMax?" with those of `names` that are like `wanted`, the most likely
// first; empty when there are none.
std::string DidYouMean(const std::string& wanted, const std::vector<std::string>& names);

#endif  // ZELCAM_TOOLS_ZELCAM_SUGGESTION_H
