#include "producers/gigevision/discovery/adapterfilter.h"

#include <algorithm>

#include "producers/sockets/ipaddress.h"

namespace ZelGev {

namespace {

bool IsMeant(const NetworkAdapter& adapter, const std::string& entry) {
    if (entry == adapter.name) return true;
    const auto address = ZelCti::ParseIpAddress(entry);
    if (!address) return false;
    return std::any_of(adapter.subnets.begin(), adapter.subnets.end(),
                       [&](const Subnet& subnet) { return subnet.address == *address; });
}

}  // namespace

std::vector<std::string> SplitList(std::string_view text) {
    std::vector<std::string> parts(1);
    for (const char c : text) {
        if (c == ',') parts.emplace_back();
        if (c != ',' && c != ' ' && c != '\t') parts.back() += c;
    }
    parts.erase(std::remove(parts.begin(), parts.end(), std::string()), parts.end());
    return parts;
}

AdapterFilter::AdapterFilter(std::string_view text)
    : entries_(SplitList(text)), admitsAll_(entries_.empty()) {
    entries_.erase(std::remove(entries_.begin(), entries_.end(), "none"), entries_.end());
}

bool AdapterFilter::Admits(const NetworkAdapter& adapter) const {
    return admitsAll_ || std::any_of(entries_.begin(), entries_.end(),
                                     [&](const auto& entry) { return IsMeant(adapter, entry); });
}

std::vector<std::string> AdapterFilter::Unknown(const std::vector<NetworkAdapter>& adapters) const {
    std::vector<std::string> unknown;
    for (const std::string& entry : entries_) {
        if (std::none_of(adapters.begin(), adapters.end(),
                         [&](const auto& adapter) { return IsMeant(adapter, entry); })) {
            unknown.push_back(entry);
        }
    }
    return unknown;
}

}  // namespace ZelGev
