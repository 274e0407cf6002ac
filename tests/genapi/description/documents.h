// Descriptions for tests.
#pragma once

#include <memory>
#include <string>

#include "genapi/description/builder.h"
#include "genapi/description/reader.h"
#include "tests/genapi/support/description.h"

namespace test {

using namespace GENAPI_NAMESPACE;
using namespace GENAPI_NAMESPACE::Engine;

inline std::shared_ptr<const Description> Load(const std::string& xml,
                                               const LoadOptions& options = {}) {
    DescriptionBuilder builder;
    ReadDescription(xml, builder, options);
    return builder.Finish();
}

// What every register says.
inline const char* const kRegister =
    "<Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>";

inline std::string Integer(const std::string& name) {
    return "<Integer Name='" + name + "'><Value>1</Value></Integer>";
}

// The class and the text of what a step throws; "nothing" if it does not.
template <typename Exception, typename Step>
std::string TextOf(Step step) {
    try {
        step();
    } catch (const Exception& exception) {
        return exception.GetDescription();
    }
    return "nothing";
}

}  // namespace test
