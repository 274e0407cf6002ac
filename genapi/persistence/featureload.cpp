#include "genapi/persistence/featureload.h"

#include <exception>

#include <GenApi/ISelector.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

void FeatureLoad::write() {
    for (size_t i = 0; i < entries_.size(); ++i) {
        IValue* const feature = find(i);
        if (feature == nullptr) {
            fail("Error while writing node: '" + entries_.name(i) + "' not found ");
            continue;
        }
        attempt("Error while writing node '", i,
                [&] { feature->FromString(entries_.value(i), false); });
    }
}

void FeatureLoad::verify() {
    for (size_t i = 0; i < entries_.size(); ++i) {
        IValue* const feature = find(i);
        if (feature == nullptr) continue;
        attempt("Error while verifying the value of node '", i, [&] { verify(*feature, i); });
    }
}

// Selectors must be where they were when the entries behind them were made.
void FeatureLoad::verify(IValue& feature, size_t entry) {
    const auto* const selector = dynamic_cast<ISelector*>(&feature);
    if (selector != nullptr && selector->IsSelector()) {
        feature.FromString(entries_.value(entry), false);
        return;
    }
    const gcstring value = feature.ToString(true);
    if (value == entries_.value(entry)) return;
    fail("Error while verifying node '" + entries_.name(entry) + "'. Expected '" +
         entries_.value(entry) + "', but found '" + value + "'");
}

IValue* FeatureLoad::find(size_t entry) const {
    return dynamic_cast<IValue*>(nodeMap_.GetNode(entries_.name(entry)));
}

void FeatureLoad::fail(const gcstring& message) {
    isGood_ = false;
    if (errors_ != nullptr) errors_->push_back(message);
}

template <typename Operation>
void FeatureLoad::attempt(const char* what, size_t entry, Operation operation) {
    try {
        operation();
    } catch (const GENICAM_NAMESPACE::GenericException& error) {
        fail(what + entries_.name(entry) + "': " + error.what());
    } catch (const std::exception& error) {
        fail(what + entries_.name(entry) + "': " + error.what());
    } catch (...) {
        // ports belong to the consumer, which may throw anything
        fail(what + entries_.name(entry) + "': unknown exception");
    }
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
