// Suggestions for misspelled names.
#pragma once

#include <string>
#include <vector>

namespace ZelTool {

// "; did you mean Width or WidthMax?" with the names that resemble `wanted`, the closest first.
// Empty when no name does.
std::string DidYouMean(const std::string& wanted, const std::vector<std::string>& names);

}  // namespace ZelTool
