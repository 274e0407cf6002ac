// A camera for tests: a description with what persistence tells apart, over a memory.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <Base/GCException.h>
#include <GenApi/IPort.h>
#include <GenApi/NodeMapRef.h>
#include <GenApi/Pointer.h>

namespace test {

using namespace GENAPI_NAMESPACE;

// Keeps bytes, and notes the accesses: "R40 W40=1".
class MemoryPort : public IPort {
  public:
    EAccessMode GetAccessMode() const override { return RW; }

    void Read(void* pBuffer, int64_t Address, int64_t Length) override {
        if (Address == failing) throw TIMEOUT_EXCEPTION("no answer");
        trace += "R" + std::to_string(Address) + " ";
        for (int64_t i = 0; i < Length; ++i)
            static_cast<uint8_t*>(pBuffer)[i] = memory[Address + i];
    }

    void Write(const void* pBuffer, int64_t Address, int64_t Length) override {
        if (onWrite) onWrite(Address);
        const auto* const bytes = static_cast<const uint8_t*>(pBuffer);
        trace += "W" + std::to_string(Address) + "=" + std::to_string(bytes[0]) + " ";
        for (int64_t i = 0; i < Length; ++i)
            memory[Address + i] = bytes[i];
    }

    std::string takeTrace() {
        std::string taken;
        taken.swap(trace);
        return taken;
    }

    std::map<int64_t, uint8_t> memory;
    std::string trace;
    int64_t failing = -1;  // an address that cannot be read
    std::function<void(int64_t)> onWrite;
};

inline std::string intReg(const std::string& name, int address, const std::string& more = "") {
    return "<IntReg Name='" + name + "'><Address>" + std::to_string(address) + "</Address>" + more +
           "<Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
           "<Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess></IntReg>";
}

// An Integer over the register of that name and "Reg". `before` stands before its value, `after`
// behind it.
inline std::string integer(const std::string& name, const std::string& after = "",
                           const std::string& before = "<Streamable>Yes</Streamable>") {
    return "<Integer Name='" + name + "'>" + before + "<pValue>" + name + "Reg</pValue>" + after +
           "</Integer>";
}

inline std::string limited(const std::string& max) {
    return "<Min>0</Min><Max>" + max + "</Max>";
}

inline std::string selecting(const std::string& feature) {
    return "<pSelected>" + feature + "</pSelected>";
}

// The part of a register's address that a selector determines.
inline std::string index(int offset, const std::string& selector) {
    return "<pIndex Offset='" + std::to_string(offset) + "'>" + selector + "Reg</pIndex>";
}

inline std::string features(const std::vector<std::string>& names) {
    std::string text = "<Category Name='Root'>";
    for (const std::string& name : names)
        text += "<pFeature>" + name + "</pFeature>";
    return text + "</Category>";
}

inline std::string cameraNodes() {
    const std::string no;
    return features({"Width", "Mask", "Name", "Ratio", "Bank", "BankValue", "LutIndex", "LutValue",
                     "Sel", "Gain", "Boost", "LoopA", "LoopB", "LoopValue", "HugeIndex",
                     "HugeValue", "Fixed", "Start", "Hidden"}) +
           "<Port Name='Device'/>" +
           // what stands alone
           integer("Width", limited("100")) + intReg("WidthReg", 0) +
           integer("Mask", "<Representation>HexNumber</Representation>") + intReg("MaskReg", 4) +
           "<StringReg Name='Name'><Streamable>Yes</Streamable><Address>16</Address>"
           "<Length>16</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></StringReg>"
           "<FloatReg Name='Ratio'><Streamable>Yes</Streamable><Address>8</Address>"
           "<Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
           "<Endianess>LittleEndian</Endianess></FloatReg>" +
           // a selector, and one below it
           integer("Bank", limited("1") + selecting("BankValue") + selecting("LutIndex"), no) +
           intReg("BankReg", 40) + integer("BankValue") +
           intReg("BankValueReg", 44, index(4, "Bank")) +
           integer("LutIndex", limited("2") + selecting("LutValue"), no) +
           intReg("LutIndexReg", 52) + integer("LutValue") +
           intReg("LutValueReg", 60, index(12, "Bank") + index(4, "LutIndex")) +
           // an enumeration as a selector; Boost is not available under B
           "<Enumeration Name='Sel'><Streamable>Yes</Streamable>"
           "<EnumEntry Name='A'><Value>0</Value></EnumEntry>"
           "<EnumEntry Name='B'><Value>1</Value></EnumEntry>"
           "<EnumEntry Name='Never'><pIsAvailable>Zero</pIsAvailable><Value>3</Value></EnumEntry>"
           "<EnumEntry Name='C'><Value>2</Value></EnumEntry>"
           "<pValue>SelReg</pValue>" +
           selecting("Gain") + selecting("Boost") + "</Enumeration>" + intReg("SelReg", 100) +
           integer("Gain") + intReg("GainReg", 104, index(4, "Sel")) +
           integer("Boost", "", "<Streamable>Yes</Streamable><pIsAvailable>NotB</pIsAvailable>") +
           intReg("BoostReg", 116, index(4, "Sel")) +
           "<IntSwissKnife Name='NotB'><pVariable Name='S'>SelReg</pVariable>"
           "<Formula>S &lt;&gt; 1</Formula></IntSwissKnife>"
           "<Integer Name='Zero'><Value>0</Value></Integer>" +
           // selectors without an outermost one, and one with billions of values
           integer("LoopA", limited("1") + selecting("LoopB") + selecting("LoopValue")) +
           intReg("LoopAReg", 128) + integer("LoopB", limited("1") + selecting("LoopA")) +
           intReg("LoopBReg", 132) + integer("LoopValue") + intReg("LoopValueReg", 156) +
           integer("HugeIndex", limited("4294967295") + selecting("HugeValue"), no) +
           intReg("HugeIndexReg", 136) + integer("HugeValue") + intReg("HugeValueReg", 140) +
           // what is not stored
           integer("Fixed", "",
                   "<Streamable>Yes</Streamable><ImposedAccessMode>RO</ImposedAccessMode>") +
           intReg("FixedReg", 144) +
           "<Command Name='Start'><Value>0</Value>"
           "<CommandValue>1</CommandValue></Command>" +
           integer("Hidden", "", no) + intReg("HiddenReg", 148) + integer("Outside") +
           intReg("OutsideReg", 152);
}

// A map and its memory.
class Camera {
  public:
    explicit Camera(const std::string& nodes = cameraNodes()) : map("Cam") {
        const std::string description =
            "<RegisterDescription ModelName='Model' VendorName='Vendor' ToolTip='Tip' "
            "StandardNameSpace='None' SchemaMajorVersion='1' SchemaMinorVersion='1' "
            "SchemaSubMinorVersion='0' MajorVersion='1' MinorVersion='2' SubMinorVersion='3' "
            "ProductGuid='P' VersionGuid='G' xmlns='http://www.genicam.org/GenApi/Version_1_1'>" +
            nodes + "</RegisterDescription>";
        map._LoadXMLFromString(description.c_str());
        map._Connect(&port);
    }

    std::string get(const char* name) {
        const GENICAM_NAMESPACE::gcstring text = CValuePtr(map._GetNode(name))->ToString();
        return std::string(text.c_str(), text.length());
    }
    void set(const char* name, const char* value) {
        CValuePtr(map._GetNode(name))->FromString(value);
    }
    INodeMap* nodeMap() { return map._Ptr; }

    MemoryPort port;  // outlives the map
    CNodeMapRef map;
};

}  // namespace test
