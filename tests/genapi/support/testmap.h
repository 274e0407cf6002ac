// A node map over a memory, for tests.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <Base/GCException.h>
#include <GenApi/IPort.h>
#include <GenApi/NodeMapRef.h>
#include <GenApi/Pointer.h>

#include "tests/genapi/support/description.h"

namespace test {

using namespace GENAPI_NAMESPACE;

using Bytes = std::vector<uint8_t>;

// Keeps bytes, and notes the accesses: "R40 W40=1".
class MemoryPort : public IPort {
  public:
    EAccessMode GetAccessMode() const override { return RW; }

    void Read(void* pBuffer, int64_t Address, int64_t Length) override {
        FailAt(Address);
        trace += "R" + std::to_string(Address) + " ";
        for (int64_t i = 0; i < Length; ++i)
            static_cast<uint8_t*>(pBuffer)[i] = memory[Address + i];
    }

    void Write(const void* pBuffer, int64_t Address, int64_t Length) override {
        FailAt(Address);
        if (onWrite) onWrite(Address);
        const auto* const bytes = static_cast<const uint8_t*>(pBuffer);
        trace += "W" + std::to_string(Address) + "=" + std::to_string(bytes[0]) + " ";
        for (int64_t i = 0; i < Length; ++i)
            memory[Address + i] = bytes[i];
    }

    std::string TakeTrace() {
        std::string taken;
        taken.swap(trace);
        return taken;
    }

    Bytes Content(int64_t address, size_t length) {
        Bytes bytes(length);
        for (uint8_t& byte : bytes)
            byte = memory[address++];
        return bytes;
    }
    void Fill(int64_t address, const Bytes& bytes) {
        for (const uint8_t byte : bytes)
            memory[address++] = byte;
    }

    std::map<int64_t, uint8_t> memory;
    std::string trace;
    int64_t failing = -1;  // an address that does not answer
    std::function<void(int64_t)> onWrite;

  private:
    void FailAt(int64_t address) const {
        if (address == failing) throw TIMEOUT_EXCEPTION("no answer");
    }
};

inline std::string ToStd(const GENICAM_NAMESPACE::gcstring& text) {
    return std::string(text.c_str(), text.length());
}

// The class and the text of what a step throws: "AccessException: Node is not readable."
template <typename Step>
std::string ErrorOf(Step step) {
    using namespace GENICAM_NAMESPACE;
    const auto with = [](const char* kind, const GenericException& e) {
        return std::string(kind) + ": " + e.GetDescription();
    };
    try {
        step();
    } catch (const AccessException& e) {
        return with("AccessException", e);
    } catch (const InvalidArgumentException& e) {
        return with("InvalidArgumentException", e);
    } catch (const LogicalErrorException& e) {
        return with("LogicalErrorException", e);
    } catch (const OutOfRangeException& e) {
        return with("OutOfRangeException", e);
    } catch (const RuntimeException& e) {
        return with("RuntimeException", e);
    } catch (const TimeoutException& e) {
        return with("TimeoutException", e);
    }
    return "nothing";
}

// A map whose port "Device" is a memory.
class TestMap {
  public:
    explicit TestMap(const std::string& nodes, const char* name = "Cam") : map(name) {
        map._LoadXMLFromString(Document(nodes).c_str());
        map._Connect(&port);
    }

    template <typename Interface>
    Interface& As(const std::string& name) const {
        return dynamic_cast<Interface&>(*map._GetNode(name.c_str()));
    }
    IInteger& Integer(const std::string& name) const { return As<IInteger>(name); }
    IFloat& Floating(const std::string& name) const { return As<IFloat>(name); }
    IEnumeration& Enumeration(const std::string& name) const { return As<IEnumeration>(name); }
    INode& Node(const std::string& name) const { return As<INode>(name); }
    EAccessMode Mode(const std::string& name) const { return Node(name).GetAccessMode(); }

    // "0..255/1" of an integer or a float; "/none" where there is no increment.
    std::string Limits(const std::string& name) const {
        std::ostringstream text;
        if (auto* number = dynamic_cast<IInteger*>(&Node(name)))
            text << number->GetMin() << ".." << number->GetMax() << "/" << number->GetInc();
        else
            text << Floating(name).GetMin() << ".." << Floating(name).GetMax() << "/"
                 << (Floating(name).HasInc() ? std::to_string(Floating(name).GetInc()) : "none");
        return text.str();
    }

    std::string Get(const std::string& name) const { return ToStd(As<IValue>(name).ToString()); }
    void Set(const std::string& name, const std::string& value) const {
        As<IValue>(name).FromString(value.c_str());
    }
    INodeMap* NodeMap() const { return map._Ptr; }

    MemoryPort port;  // outlives the map
    CNodeMapRef map;
};

}  // namespace test
