// Descriptions for tests.
#pragma once

#include <memory>
#include <string>

#include "genapi/description/builder.h"
#include "genapi/description/reader.h"

namespace test {

using namespace GENAPI_NAMESPACE;
using namespace GENAPI_NAMESPACE::Engine;

// A description whose nodes begin at line 2, column 0.
inline std::string document(const std::string& nodes, int minor = 1) {
    const std::string digit = std::to_string(minor);
    return "<RegisterDescription ModelName='M' VendorName='V' StandardNameSpace='GEV' "
           "SchemaMajorVersion='1' SchemaMinorVersion='" +
           digit +
           "' SchemaSubMinorVersion='0' MajorVersion='2' MinorVersion='3' SubMinorVersion='4' "
           "ProductGuid='P' VersionGuid='G' xmlns='http://www.genicam.org/GenApi/Version_1_" +
           digit + "'>\n" + nodes + "</RegisterDescription>";
}

inline std::shared_ptr<const Description> load(const std::string& xml,
                                               const LoadOptions& options = {}) {
    DescriptionBuilder builder;
    readDescription(xml, builder, options);
    return builder.finish();
}

// What every register says.
inline const char* const kRegister =
    "<Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>";
inline const char* const kPort = "<Port Name='Device'/>";

inline std::string integer(const std::string& name) {
    return "<Integer Name='" + name + "'><Value>1</Value></Integer>";
}

// The class and the text of what a step throws; "nothing" if it does not.
template <typename Exception, typename Step>
std::string textOf(Step step) {
    try {
        step();
    } catch (const Exception& exception) {
        return exception.GetDescription();
    }
    return "nothing";
}

}  // namespace test
