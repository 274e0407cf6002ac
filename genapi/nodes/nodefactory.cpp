#include "genapi/nodes/nodefactory.h"

#include <new>

#include <Base/GCException.h>

#include "genapi/nodes/booleannode.h"
#include "genapi/nodes/commandnode.h"
#include "genapi/nodes/enumerationnode.h"
#include "genapi/nodes/formulanode.h"
#include "genapi/nodes/numbernode.h"
#include "genapi/nodes/plainnode.h"
#include "genapi/nodes/portnode.h"
#include "genapi/nodes/registernode.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

struct Maker {
    size_t size;
    Node* (*make)(NodeMap& map, NodeId id, void* place);
};

template <typename T>
constexpr Maker MakerFor() {
    constexpr size_t kAlignment = alignof(std::max_align_t);
    return {(sizeof(T) + kAlignment - 1) / kAlignment * kAlignment,
            [](NodeMap& map, NodeId id, void* place) -> Node* { return new (place) T(map, id); }};
}

// No default: the compiler warns of a kind that is missing.
Maker MakerOf(NodeKind kind) {
    switch (kind) {
        case NodeKind::Node:
            return MakerFor<PlainNode>();
        case NodeKind::Category:
            return MakerFor<CategoryNode>();
        case NodeKind::Integer:
            return MakerFor<IntegerNode>();
        case NodeKind::IntReg:
        case NodeKind::MaskedIntReg:
        case NodeKind::StructEntry:
            return MakerFor<IntRegNode>();
        case NodeKind::Boolean:
            return MakerFor<BooleanNode>();
        case NodeKind::Command:
            return MakerFor<CommandNode>();
        case NodeKind::Float:
            return MakerFor<FloatNode>();
        case NodeKind::FloatReg:
            return MakerFor<FloatRegNode>();
        case NodeKind::Enumeration:
            return MakerFor<EnumerationNode>();
        case NodeKind::EnumEntry:
            return MakerFor<EnumEntryNode>();
        case NodeKind::String:
            return MakerFor<StringNode>();
        case NodeKind::StringReg:
            return MakerFor<StringRegNode>();
        case NodeKind::Register:
        case NodeKind::ConfRom:
            return MakerFor<RegisterNode>();
        case NodeKind::SwissKnife:
            return MakerFor<FloatSwissKnifeNode>();
        case NodeKind::IntSwissKnife:
            return MakerFor<IntSwissKnifeNode>();
        case NodeKind::Converter:
            return MakerFor<FloatConverterNode>();
        case NodeKind::IntConverter:
            return MakerFor<IntConverterNode>();
        case NodeKind::Port:
            return MakerFor<PortNode>();
        case NodeKind::TextDesc:
            return MakerFor<LegacyString>();
        case NodeKind::IntKey:
        case NodeKind::AdvFeatureLock:
        case NodeKind::SmartFeature:
            return MakerFor<LegacyInteger>();
    }
    throw LOGICAL_ERROR_EXCEPTION("Node is of no known kind");
}

}  // namespace

size_t NodeSize(NodeKind kind) {
    return MakerOf(kind).size;
}

Node* MakeNode(NodeMap& map, NodeId id, void* place) {
    return MakerOf(map.CameraDescription().Record(id).kind).make(map, id, place);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
