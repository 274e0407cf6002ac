// A camera for tests: a description with what persistence tells apart, over a memory.
#pragma once

#include <string>
#include <vector>

#include "tests/genapi/support/testmap.h"

namespace test {

// An Integer over the register of that name and "Reg". `before` stands before its value, `after`
// behind it.
inline std::string Integer(const std::string& name, const std::string& after = "",
                           const std::string& before = "<Streamable>Yes</Streamable>") {
    return "<Integer Name='" + name + "'>" + before + "<pValue>" + name + "Reg</pValue>" + after +
           "</Integer>";
}

inline std::string Limited(const std::string& max) {
    return "<Min>0</Min><Max>" + max + "</Max>";
}

inline std::string Selecting(const std::string& feature) {
    return "<pSelected>" + feature + "</pSelected>";
}

// The part of a register's address that a selector determines.
inline std::string Index(int offset, const std::string& selector) {
    return "<pIndex Offset='" + std::to_string(offset) + "'>" + selector + "Reg</pIndex>";
}

inline std::string Features(const std::vector<std::string>& names) {
    std::string text = "<Category Name='Root'>";
    for (const std::string& name : names)
        text += "<pFeature>" + name + "</pFeature>";
    return text + "</Category>";
}

inline std::string CameraNodes() {
    const std::string no;
    return Features({"Width", "Mask", "Name", "Ratio", "Bank", "BankValue", "LutIndex", "LutValue",
                     "Sel", "Gain", "Boost", "LoopA", "LoopB", "LoopValue", "HugeIndex",
                     "HugeValue", "Fixed", "Start", "Hidden"}) +
           "<Port Name='Device'/>" +
           // what stands alone
           Integer("Width", Limited("100")) + IntReg("WidthReg", 0) +
           Integer("Mask", "<Representation>HexNumber</Representation>") + IntReg("MaskReg", 4) +
           "<StringReg Name='Name'><Streamable>Yes</Streamable><Address>16</Address>"
           "<Length>16</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></StringReg>"
           "<FloatReg Name='Ratio'><Streamable>Yes</Streamable><Address>8</Address>"
           "<Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
           "<Endianess>LittleEndian</Endianess></FloatReg>" +
           // a selector, and one below it
           Integer("Bank", Limited("1") + Selecting("BankValue") + Selecting("LutIndex"), no) +
           IntReg("BankReg", 40) + Integer("BankValue") +
           IntReg("BankValueReg", 44, Index(4, "Bank")) +
           Integer("LutIndex", Limited("2") + Selecting("LutValue"), no) +
           IntReg("LutIndexReg", 52) + Integer("LutValue") +
           IntReg("LutValueReg", 60, Index(12, "Bank") + Index(4, "LutIndex")) +
           // an enumeration as a selector; Boost is not available under B
           "<Enumeration Name='Sel'><Streamable>Yes</Streamable>"
           "<EnumEntry Name='A'><Value>0</Value></EnumEntry>"
           "<EnumEntry Name='B'><Value>1</Value></EnumEntry>"
           "<EnumEntry Name='Never'><pIsAvailable>Zero</pIsAvailable><Value>3</Value></EnumEntry>"
           "<EnumEntry Name='C'><Value>2</Value></EnumEntry>"
           "<pValue>SelReg</pValue>" +
           Selecting("Gain") + Selecting("Boost") + "</Enumeration>" + IntReg("SelReg", 100) +
           Integer("Gain") + IntReg("GainReg", 104, Index(4, "Sel")) +
           Integer("Boost", "", "<pIsAvailable>NotB</pIsAvailable><Streamable>Yes</Streamable>") +
           IntReg("BoostReg", 116, Index(4, "Sel")) +
           "<IntSwissKnife Name='NotB'><pVariable Name='S'>SelReg</pVariable>"
           "<Formula>S &lt;&gt; 1</Formula></IntSwissKnife>"
           "<Integer Name='Zero'><Value>0</Value></Integer>" +
           // selectors without an outermost one, since one selects what the other reads, and a
           // selector with billions of values
           Integer("LoopA", Limited("1") + Selecting("LoopBReg") + Selecting("LoopValue")) +
           IntReg("LoopAReg", 128) + Integer("LoopB", Limited("1") + Selecting("LoopA")) +
           IntReg("LoopBReg", 132) + Integer("LoopValue") + IntReg("LoopValueReg", 156) +
           Integer("HugeIndex", Limited("4294967295") + Selecting("HugeValue"), no) +
           IntReg("HugeIndexReg", 136) + Integer("HugeValue") + IntReg("HugeValueReg", 140) +
           // what is not stored
           Integer("Fixed", "",
                   "<ImposedAccessMode>RO</ImposedAccessMode><Streamable>Yes</Streamable>") +
           IntReg("FixedReg", 144) +
           "<Command Name='Start'><Value>0</Value>"
           "<CommandValue>1</CommandValue></Command>" +
           Integer("Hidden", "", no) + IntReg("HiddenReg", 148) + Integer("Outside") +
           IntReg("OutsideReg", 152);
}

class Camera : public TestMap {
  public:
    explicit Camera(const std::string& nodes = CameraNodes()) : TestMap(nodes) {}
};

}  // namespace test
