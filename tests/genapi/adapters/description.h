// A small description around the nodes that a test is about.
#pragma once

#include <string>

#include <GenApi/NodeMapRef.h>

inline std::string RegisterOn(const std::string& port, const std::string& name, int address,
                              int length) {
    return "<IntReg Name=\"" + name + "\"><Address>" + std::to_string(address) +
           "</Address><Length>" + std::to_string(length) +
           "</Length><AccessMode>RW</AccessMode><pPort>" + port +
           "</pPort><Sign>Unsigned</Sign><Endianess>BigEndian</Endianess></IntReg>";
}

inline void Load(GenApi::CNodeMapRef& map, const std::string& nodes) {
    const std::string description =
        "<RegisterDescription ModelName=\"M\" VendorName=\"V\" StandardNameSpace=\"None\" "
        "SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\" "
        "MajorVersion=\"1\" MinorVersion=\"0\" SubMinorVersion=\"0\" "
        "ProductGuid=\"00000000-0000-0000-0000-000000000001\" "
        "VersionGuid=\"00000000-0000-0000-0000-000000000002\" "
        "xmlns=\"http://www.genicam.org/GenApi/Version_1_1\">"
        "<Category Name=\"Root\"/>" +
        nodes + "</RegisterDescription>";
    map._LoadXMLFromString(description.c_str());
}
