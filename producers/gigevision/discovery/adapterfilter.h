// On which network adapters the user wants cameras to be looked for.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "producers/gigevision/discovery/networkadapter.h"

namespace ZelGev {

// Thread-safe, as it does not change.
class AdapterFilter {
  public:
    // Names and addresses of adapters, with commas between them. An empty text admits all adapters,
    // "none" admits none.
    explicit AdapterFilter(std::string_view text);

    bool Admits(const NetworkAdapter& adapter) const;

    // The entries that are neither the name nor an address of one of these adapters.
    std::vector<std::string> Unknown(const std::vector<NetworkAdapter>& adapters) const;

  private:
    std::vector<std::string> entries_;
    bool admitsAll_;
};

// The parts of a text with commas between them, without blanks and empty ones.
std::vector<std::string> SplitList(std::string_view text);

}  // namespace ZelGev
