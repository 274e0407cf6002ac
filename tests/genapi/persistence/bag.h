// Feature bags and their texts, for tests.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include <GenApi/Persistence.h>
#include <gtest/gtest.h>

#include "tests/genapi/support/testmap.h"

namespace test {

using Lines = std::vector<std::string>;

inline CFeatureBag bagOf(const std::string& lines) {
    std::istringstream stream("# " GENAPI_PERSISTENCE_MAGIC "\n" + lines);
    CFeatureBag bag;
    stream >> bag;
    return bag;
}

inline std::string textOf(const CFeatureBag& bag) {
    std::ostringstream stream;
    stream << bag;
    return stream.str();
}

// The messages of loading a bag.
inline Lines load(CFeatureBag& bag, const TestMap& camera, bool verify = true) {
    GENICAM_NAMESPACE::gcstring_vector errors(1, "from before");
    const bool isGood = bag.LoadFromBag(camera.nodeMap(), verify, &errors);
    EXPECT_EQ(isGood, errors.empty());
    Lines messages;
    for (const auto& error : errors)
        messages.push_back(error.c_str());
    return messages;
}

inline Lines load(const TestMap& camera, const std::string& lines, bool verify = true) {
    CFeatureBag bag = bagOf(lines);
    return load(bag, camera, verify);
}

}  // namespace test
