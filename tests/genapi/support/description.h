// Descriptions for tests, from the nodes that a test is about.
#pragma once

#include <string>

namespace test {

// A description whose nodes begin at line 2, column 0; line 1 is the start tag of the root.
inline std::string Document(const std::string& nodes, int minor = 1) {
    const std::string digit = std::to_string(minor);
    return "<RegisterDescription ModelName='M' VendorName='V' ToolTip='T' StandardNameSpace='GEV' "
           "SchemaMajorVersion='1' SchemaMinorVersion='" +
           digit +
           "' SchemaSubMinorVersion='0' MajorVersion='2' MinorVersion='3' SubMinorVersion='4' "
           "ProductGuid='P' VersionGuid='G' xmlns='http://www.genicam.org/GenApi/Version_1_" +
           digit + "'>\n" + nodes + "</RegisterDescription>";
}

inline const std::string kPort = "<Port Name='Device'/>";

// <Min>5</Min>
template <typename Text>
std::string Element(const std::string& tag, const Text& text) {
    return "<" + tag + ">" + std::string(text) + "</" + tag + ">";
}
inline std::string Element(const std::string& tag, int number) {
    return Element(tag, std::to_string(number));
}

// <Integer Name='I'>...</Integer>
inline std::string Named(const std::string& kind, const std::string& name,
                         const std::string& inside) {
    return "<" + kind + " Name='" + name + "'>" + inside + "</" + kind + ">";
}

// Nodes with a value of their own, and over another node.
inline std::string Literal(const std::string& name, const std::string& value,
                           const std::string& more = "", const std::string& kind = "Integer") {
    return Named(kind, name, Element("Value", value) + more);
}
inline std::string Over(const std::string& name, const std::string& below,
                        const std::string& more = "", const std::string& kind = "Integer") {
    return Named(kind, name, Element("pValue", below) + more);
}
inline std::string Entry(const std::string& name, int value, const std::string& before = "",
                         const std::string& after = "") {
    return Named("EnumEntry", name, before + Element("Value", value) + after);
}

// What every register says. `where` is the address, or elements that make it up.
inline std::string RegisterAt(const std::string& where, int length,
                              const std::string& access = "RW",
                              const std::string& port = "Device") {
    return where + Element("Length", length) + Element("AccessMode", access) +
           Element("pPort", port);
}
inline std::string RegisterAt(int address, int length, const std::string& access = "RW",
                              const std::string& port = "Device") {
    return RegisterAt(Element("Address", address), length, access, port);
}

inline const std::string kLittle = "<Endianess>LittleEndian</Endianess>";
inline const std::string kBig = "<Endianess>BigEndian</Endianess>";

// An unsigned little-endian register of 4 bytes. `more` stands behind its address.
inline std::string IntReg(const std::string& name, int address, const std::string& more = "") {
    return Named("IntReg", name, RegisterAt(Element("Address", address) + more, 4) + kLittle);
}

}  // namespace test
