// Reads a description, XML text, into a builder.
#pragma once

#include <string_view>

#include "genapi/description/builder.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

struct LoadOptions {
    bool suppressStrings = false;  // leave out tool tips, descriptions and addresses of documents
    bool injected = false;         // the builder holds a description that this one is added to
};

// Throws RuntimeException for text that is no description; the builder is then of no more use.
void ReadDescription(std::string_view xml, DescriptionBuilder& builder,
                     const LoadOptions& options = {});

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
