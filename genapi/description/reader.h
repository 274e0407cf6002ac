// Reads a description, XML text, into a builder.
#pragma once

#include <string_view>

#include "genapi/description/builder.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

struct LoadOptions {
    bool suppressStrings = false;  // leave out tool tips, descriptions and addresses of documents
    bool injected = false;         // this description is added to the one in the builder
};

// Throws RuntimeException for text that is not a description; the builder must then not be used.
void ReadDescription(std::string_view xml, DescriptionBuilder& builder,
                     const LoadOptions& options = {});

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
