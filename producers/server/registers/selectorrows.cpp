#include "producers/server/registers/selectorrows.h"

#include <utility>

namespace ZelCti {

Feature& AddSelector(FeatureTable& features, const std::string& item, const std::string& toolTip,
                     uint64_t address, IntegerValue index, std::function<uint64_t()> count) {
    const std::string countNode = item + "Count";
    const std::string highest = item + "SelectorMax";
    features.IntReg(countNode).At(address + sizeof(uint32_t)).Get(std::move(count));
    features.IntSwissKnife(highest).Variables({{"COUNT", countNode}}).Formula("COUNT - 1");
    return features.Integer(item + "Selector", toolTip)
        .AvailableIf(countNode)
        .At(address)
        .Limits(0, highest)
        .Bind(std::move(index));
}

}  // namespace ZelCti
