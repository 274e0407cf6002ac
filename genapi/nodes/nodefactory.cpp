#include "genapi/nodes/nodefactory.h"

#include <array>
#include <new>

#include "genapi/nodes/booleannode.h"
#include "genapi/nodes/commandnode.h"
#include "genapi/nodes/enumerationnode.h"
#include "genapi/nodes/floatnode.h"
#include "genapi/nodes/formulanodes.h"
#include "genapi/nodes/integernode.h"
#include "genapi/nodes/plainnodes.h"
#include "genapi/nodes/portnode.h"
#include "genapi/nodes/registernodes.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

struct Maker {
    std::size_t size;
    Node* (*make)(NodeMap& map, NodeId id, void* place);
};

template <typename T>
constexpr Maker maker() {
    constexpr std::size_t kAlignment = alignof(std::max_align_t);
    return {(sizeof(T) + kAlignment - 1) / kAlignment * kAlignment,
            [](NodeMap& map, NodeId id, void* place) -> Node* { return new (place) T(map, id); }};
}

const Maker& makerOf(NodeKind kind) {
    // In the order of NodeKind.
    static const std::array<Maker, 25> kMakers = {
        maker<PlainNode>(),           maker<CategoryNode>(),      maker<IntegerNode>(),
        maker<IntRegNode>(),          maker<IntRegNode>(),        maker<IntRegNode>(),
        maker<BooleanNode>(),         maker<CommandNode>(),       maker<FloatNode>(),
        maker<FloatRegNode>(),        maker<EnumerationNode>(),   maker<EnumEntryNode>(),
        maker<StringNode>(),          maker<StringRegNode>(),     maker<RegisterNode>(),
        maker<FloatSwissKnifeNode>(), maker<IntSwissKnifeNode>(), maker<FloatConverterNode>(),
        maker<IntConverterNode>(),    maker<PortNode>(),          maker<RegisterNode>(),
        maker<LegacyString>(),        maker<LegacyInteger>(),     maker<LegacyInteger>(),
        maker<LegacyInteger>()};
    return kMakers[static_cast<std::size_t>(kind)];
}

}  // namespace

std::size_t nodeSize(NodeKind kind) {
    return makerOf(kind).size;
}

Node* makeNode(NodeMap& map, NodeId id, void* place) {
    return makerOf(map.description().record(id).kind).make(map, id, place);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
