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

inline CFeatureBag BagOf(const std::string& lines) {
    std::istringstream stream("# " GENAPI_PERSISTENCE_MAGIC "\n" + lines);
    CFeatureBag bag;
    stream >> bag;
    return bag;
}

inline std::string TextOf(const CFeatureBag& bag) {
    std::ostringstream stream;
    stream << bag;
    return stream.str();
}

// The messages of loading a bag.
inline Lines Load(CFeatureBag& bag, const TestMap& camera, bool verify = true) {
    GENICAM_NAMESPACE::gcstring_vector errors(1, "from before");
    const bool isGood = bag.LoadFromBag(camera.NodeMap(), verify, &errors);
    EXPECT_EQ(isGood, errors.empty());
    Lines messages;
    for (const auto& error : errors)
        messages.push_back(error.c_str());
    return messages;
}

inline Lines Load(const TestMap& camera, const std::string& lines, bool verify = true) {
    CFeatureBag bag = BagOf(lines);
    return Load(bag, camera, verify);
}

}  // namespace test
