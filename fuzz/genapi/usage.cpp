#include "fuzz/genapi/usage.h"

#include <cstdint>
#include <string>
#include <vector>

#include <Base/GCException.h>
#include <GenApi/GenApi.h>

#include "fuzz/genapi/hostileport.h"

using namespace GENAPI_NAMESPACE;
using GENICAM_NAMESPACE::gcstring;
using GENICAM_NAMESPACE::gcstring_vector;
using GENICAM_NAMESPACE::GenericException;

namespace Fuzz {

namespace {

constexpr size_t kMaxWalked = 300;
constexpr int kSteps = 100;
constexpr int kCallbacks = 4;
constexpr int64_t kMaxBytes = 4096;

template <typename Step>
void Try(Step step) {
    try {
        step();
    } catch (const GenericException&) {
        // refusing the input is right; only a crash or a hang is a fault
    }
}

template <typename Interface, typename Step>
void As(INode& node, Step step) {
    if (auto* interface = dynamic_cast<Interface*>(&node)) step(*interface);
}

gcstring AnyText(Choices& choices) {
    switch (choices.Below(4)) {
        case 0:
            return "";
        case 1:
            return "1e400";
        case 2:
            return gcstring(choices.Below(5000), 'x');
        default:
            return std::to_string(choices.Number()).c_str();
    }
}

void ReadProperties(INode& node) {
    Try([&] { node.GetAccessMode(); });
    Try([&] { node.GetDisplayName(); });
    Try([&] { node.GetCachingMode(); });
    Try([&] { node.IsAccessModeCacheable(); });
    Try([&] { node.GetAlias(); });
    Try([&] { node.GetCastAlias(); });
    for (int type = ctParentNodes; type <= ctTerminalNodes; ++type) {
        Try([&] {
            NodeList_t list;
            node.GetChildren(list, static_cast<ELinkType>(type));
        });
    }
    Try([&] {
        gcstring_vector names;
        node.GetPropertyNames(names);
        for (const gcstring& name : names) {
            gcstring value;
            gcstring attribute;
            node.GetProperty(name, value, attribute);
        }
    });
    As<ISelector>(node, [](ISelector& selector) {
        FeatureList_t features;
        Try([&] { selector.GetSelectedFeatures(features); });
        Try([&] { selector.GetSelectingFeatures(features); });
    });
}

void ReadNumber(INode& node) {
    As<IInteger>(node, [](IInteger& i) {
        Try([&] { i.GetValue(true); });
        Try([&] { i.GetMin(); });
        Try([&] { i.GetMax(); });
        Try([&] { i.GetInc(); });
        Try([&] { i.GetListOfValidValues(); });
        Try([&] { i.GetUnit(); });
        Try([&] { i.GetRepresentation(); });
    });
    As<IFloat>(node, [](IFloat& f) {
        Try([&] { f.GetValue(true); });
        Try([&] { f.GetMin(); });
        Try([&] { f.GetMax(); });
        Try([&] { f.HasInc() ? f.GetInc() : 0.0; });
        Try([&] { f.GetListOfValidValues(); });
        Try([&] { f.GetDisplayPrecision(); });
    });
}

void ReadRegister(IRegister& r) {
    r.GetAddress();
    const int64_t length = r.GetLength();
    if (length < 0 || length > kMaxBytes) return;
    std::vector<uint8_t> bytes(static_cast<size_t>(length));
    r.Get(bytes.data(), length);
}

void ReadOthers(INode& node) {
    As<IValue>(node, [](IValue& v) { Try([&] { v.ToString(true, true); }); });
    As<IValue>(node, [](IValue& v) { Try([&] { v.ToString(); }); });
    As<IBoolean>(node, [](IBoolean& b) { Try([&] { b.GetValue(true); }); });
    As<ICommand>(node, [](ICommand& c) { Try([&] { c.IsDone(); }); });
    As<IRegister>(node, [](IRegister& r) { Try([&] { ReadRegister(r); }); });
    As<IEnumeration>(node, [](IEnumeration& e) {
        Try([&] {
            StringList_t symbolics;
            e.GetSymbolics(symbolics);
            e.GetCurrentEntry();
        });
        Try([&] { e.GetIntValue(true); });
    });
    As<ICategory>(node, [](ICategory& c) {
        Try([&] {
            FeatureList_t features;
            c.GetFeatures(features);
        });
    });
}

void Read(INode& node) {
    ReadNumber(node);
    ReadOthers(node);
}

void Write(INode& node, Choices& choices) {
    const bool verify = choices.OneIn(2);
    const int64_t number = choices.Number();
    const auto real = choices.OneIn(4) ? 1e300 : static_cast<double>(number) / 3;
    As<IInteger>(node, [&](IInteger& i) { Try([&] { i.SetValue(number, verify); }); });
    As<IFloat>(node, [&](IFloat& f) { Try([&] { f.SetValue(real, verify); }); });
    As<IBoolean>(node, [&](IBoolean& b) { Try([&] { b.SetValue(number != 0, verify); }); });
    As<IEnumeration>(node, [&](IEnumeration& e) { Try([&] { e.SetIntValue(number, verify); }); });
    As<ICommand>(node, [&](ICommand& c) { Try([&] { c.Execute(verify); }); });
    As<IValue>(node, [&](IValue& v) { Try([&] { v.FromString(AnyText(choices), verify); }); });
    As<IValue>(node, [&](IValue& v) { Try([&] { v.FromString(v.ToString(), verify); }); });
    As<IRegister>(node, [&](IRegister& r) {
        const std::vector<uint8_t> bytes(choices.Below(64), choices.Byte());
        Try([&] { r.Set(bytes.data(), static_cast<int64_t>(bytes.size()), verify); });
    });
}

void Restrict(INode& node, Choices& choices) {
    const int64_t number = choices.Number();
    switch (choices.Below(4)) {
        case 0:
            As<IInteger>(node, [&](IInteger& i) { Try([&] { i.ImposeMin(number); }); });
            break;
        case 1:
            As<IInteger>(node, [&](IInteger& i) { Try([&] { i.ImposeMax(number); }); });
            break;
        case 2:
            Try([&] { node.ImposeAccessMode(static_cast<EAccessMode>(choices.Below(6))); });
            break;
        default:
            Try([&] { node.ImposeVisibility(static_cast<EVisibility>(choices.Below(4))); });
    }
}

void SaveAndLoad(INodeMap& map, Choices& choices) {
    CFeatureBag bag;
    Try([&] { bag.StoreToBag(&map); });
    gcstring_vector errors;
    Try([&] { bag.LoadFromBag(&map, choices.OneIn(2), &errors); });
}

class Session {
  public:
    Session(INodeMap& map, Choices& choices) : map_(map), choices_(choices) {
        map.GetNodes(nodes_);
        if (nodes_.size() > kMaxWalked) nodes_.resize(kMaxWalked);
    }

    void Run() {
        if (nodes_.empty()) return;
        for (INode* const node : nodes_)
            ReadProperties(*node);
        for (int i = 0; i < 2; ++i)
            for (INode* const node : nodes_)
                Read(*node);
        for (int i = 0; i < kCallbacks; ++i)
            RegisterAt(AnyNode());
        for (int i = 0; i < kSteps; ++i)
            Step();
    }

  private:
    INode& AnyNode() { return *nodes_[choices_.Below(nodes_.size())]; }

    // A program's callbacks read and write, too; not without end.
    void RegisterAt(INode& node) {
        const ECallbackType type = choices_.OneIn(2) ? cbPostInsideLock : cbPostOutsideLock;
        Register(
            &node,
            [this](INode* changed) {
                if (depth_ > 1) return;
                ++depth_;
                Read(*changed);
                if (choices_.OneIn(4)) Write(AnyNode(), choices_);
                --depth_;
            },
            type);
    }

    void Step() {
        INode& node = AnyNode();
        switch (choices_.Below(12)) {
            case 0:
                Try([&] { node.InvalidateNode(); });
                break;
            case 1:
                Try([&] { map_.Poll(choices_.Number()); });
                break;
            case 2:
                Restrict(node, choices_);
                break;
            case 3:
                Try([&] { map_.InvalidateNodes(); });
                break;
            case 4:
                if (choices_.OneIn(8)) SaveAndLoad(map_, choices_);
                break;
            case 5:
            case 6:
            case 7:
                Read(node);
                break;
            default:
                Write(node, choices_);
        }
    }

    INodeMap& map_;
    Choices& choices_;
    NodeList_t nodes_;
    int depth_ = 0;
};

}  // namespace

void Use(INodeMap& map, Choices& choices) {
    HostilePort port(choices);
    NodeList_t nodes;
    map.GetNodes(nodes);
    for (INode* const node : nodes)
        if (dynamic_cast<IPort*>(node) != nullptr)
            Try([&] { map.Connect(&port, node->GetName()); });
    Try([&] {
        gcstring_vector errors;
        map.ParseSwissKnifes(&errors);
    });
    Session session(map, choices);
    session.Run();
    for (INode* const node : nodes)
        if (dynamic_cast<IPort*>(node) != nullptr)
            Try([&] { map.Connect(static_cast<IPort*>(nullptr), node->GetName()); });
}

}  // namespace Fuzz
