// A small description around the nodes that a test is about.
#pragma once

#include <string>

#include <GenApi/NodeMapRef.h>

#include "tests/genapi/support/description.h"

inline std::string RegisterOn(const std::string& port, const std::string& name, int address,
                              int length) {
    return test::Named("IntReg", name, test::RegisterAt(address, length, "RW", port) + test::kBig);
}

inline void Load(GenApi::CNodeMapRef& map, const std::string& nodes) {
    map._LoadXMLFromString(test::Document("<Category Name='Root'/>" + nodes).c_str());
}
