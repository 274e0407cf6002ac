#include "fuzz/genapi/walk.h"

#include <cstdint>
#include <vector>

#include <Base/GCException.h>
#include <GenApi/ICategory.h>
#include <GenApi/IEnumeration.h>
#include <GenApi/IFloat.h>
#include <GenApi/IInteger.h>
#include <GenApi/INode.h>
#include <GenApi/IPort.h>
#include <GenApi/IRegister.h>
#include <GenApi/IValue.h>

using namespace GENAPI_NAMESPACE;
using GENICAM_NAMESPACE::gcstring;
using GENICAM_NAMESPACE::gcstring_vector;
using GENICAM_NAMESPACE::GenericException;

namespace {

constexpr std::size_t kMaxWalked = 500;
constexpr std::int64_t kMaxBytes = 4096;

// A memory in which every address has another content.
class MemoryPort : public IPort {
  public:
    void Read(void* buffer, int64_t address, int64_t length) override {
        auto* bytes = static_cast<std::uint8_t*>(buffer);
        for (int64_t i = 0; i < length; ++i)
            bytes[i] = static_cast<std::uint8_t>(static_cast<std::uint64_t>(address + i) * 0x9D);
    }
    void Write(const void*, int64_t, int64_t) override {}
    EAccessMode GetAccessMode() const override { return RW; }
};

template <typename Step>
void ask(Step step) {
    try {
        step();
    } catch (const GenericException&) {
    }
}

template <typename Interface, typename Step>
void as(INode& node, Step step) {
    if (auto* interface = dynamic_cast<Interface*>(&node)) step(*interface);
}

void askNode(INode& node) {
    ask([&] { node.GetAccessMode(); });
    ask([&] { node.GetDisplayName(); });
    ask([&] { node.GetCachingMode(); });
    ask([&] { node.IsAccessModeCacheable(); });
    for (int type = ctParentNodes; type <= ctTerminalNodes; ++type)
        ask([&] {
            NodeList_t list;
            node.GetChildren(list, static_cast<ELinkType>(type));
        });
    ask([&] {
        gcstring_vector names;
        node.GetPropertyNames(names);
        for (const gcstring& name : names) {
            gcstring value, attribute;
            node.GetProperty(name, value, attribute);
        }
    });
}

void askNumbers(INode& node) {
    as<IInteger>(node, [](IInteger& i) {
        ask([&] { i.GetValue(true); });
        ask([&] { i.GetMin(); });
        ask([&] { i.GetMax(); });
        ask([&] { i.GetInc(); });
        ask([&] { i.GetUnit(); });
        ask([&] { i.GetRepresentation(); });
    });
    as<IFloat>(node, [](IFloat& f) {
        ask([&] { f.GetValue(true); });
        ask([&] { f.GetMin(); });
        ask([&] { f.GetMax(); });
        ask([&] { f.HasInc() ? f.GetInc() : 0.0; });
        ask([&] { f.GetDisplayPrecision(); });
    });
}

void askOthers(INode& node) {
    as<IValue>(node, [](IValue& v) { ask([&] { v.ToString(true, true); }); });
    as<IEnumeration>(node, [](IEnumeration& e) {
        ask([&] {
            StringList_t symbolics;
            e.GetSymbolics(symbolics);
            e.GetCurrentEntry();
        });
    });
    as<ICategory>(node, [](ICategory& c) {
        ask([&] {
            FeatureList_t features;
            c.GetFeatures(features);
        });
    });
    as<IRegister>(node, [](IRegister& r) {
        ask([&] {
            r.GetAddress();
            const int64_t length = r.GetLength();
            if (length < 0 || length > kMaxBytes) return;
            std::vector<uint8_t> bytes(static_cast<std::size_t>(length));
            r.Get(bytes.data(), length);
        });
    });
}

}  // namespace

void walk(INodeMap& map) {
    MemoryPort port;
    NodeList_t nodes;
    map.GetNodes(nodes);
    for (INode* node : nodes)
        if (dynamic_cast<IPort*>(node)) ask([&] { map.Connect(&port, node->GetName()); });
    ask([&] {
        gcstring_vector errors;
        map.ParseSwissKnifes(&errors);
    });
    std::size_t walked = 0;
    for (INode* node : nodes) {
        if (++walked > kMaxWalked) break;
        askNode(*node);
        askNumbers(*node);
        askOthers(*node);
    }
    ask([&] { map.Poll(100); });
}
