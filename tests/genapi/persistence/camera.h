// A camera for tests: a description with what persistence tells apart, over a memory.
#pragma once

#include <string>
#include <vector>

#include "tests/genapi/support/testmap.h"

namespace test {

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
           integer("Boost", "", "<pIsAvailable>NotB</pIsAvailable><Streamable>Yes</Streamable>") +
           intReg("BoostReg", 116, index(4, "Sel")) +
           "<IntSwissKnife Name='NotB'><pVariable Name='S'>SelReg</pVariable>"
           "<Formula>S &lt;&gt; 1</Formula></IntSwissKnife>"
           "<Integer Name='Zero'><Value>0</Value></Integer>" +
           // selectors without an outermost one, since one selects what the other reads, and a
           // selector with billions of values
           integer("LoopA", limited("1") + selecting("LoopBReg") + selecting("LoopValue")) +
           intReg("LoopAReg", 128) + integer("LoopB", limited("1") + selecting("LoopA")) +
           intReg("LoopBReg", 132) + integer("LoopValue") + intReg("LoopValueReg", 156) +
           integer("HugeIndex", limited("4294967295") + selecting("HugeValue"), no) +
           intReg("HugeIndexReg", 136) + integer("HugeValue") + intReg("HugeValueReg", 140) +
           // what is not stored
           integer("Fixed", "",
                   "<ImposedAccessMode>RO</ImposedAccessMode><Streamable>Yes</Streamable>") +
           intReg("FixedReg", 144) +
           "<Command Name='Start'><Value>0</Value>"
           "<CommandValue>1</CommandValue></Command>" +
           integer("Hidden", "", no) + intReg("HiddenReg", 148) + integer("Outside") +
           intReg("OutsideReg", 152);
}

class Camera : public TestMap {
  public:
    explicit Camera(const std::string& nodes = cameraNodes()) : TestMap(nodes) {}
};

}  // namespace test
