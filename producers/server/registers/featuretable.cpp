#include "producers/server/registers/featuretable.h"

#include <map>
#include <stdexcept>
#include <vector>

namespace ZelCti {

namespace {

constexpr const char* kRoot = "Root";

void AppendOpeningTag(const DescriptionHeader& header, std::string& out) {
    out +=
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
        "<RegisterDescription";
    for (const auto& [name, value] :
         {std::pair<const char*, const std::string&>("ModelName", header.modelName),
          {"VendorName", header.vendorName},
          {"ToolTip", header.toolTip},
          {"StandardNameSpace", header.standardNameSpace},
          {"ProductGuid", header.productGuid},
          {"VersionGuid", header.versionGuid}}) {
        out.append(" ").append(name).append("=\"");
        AppendXml(value, out);
        out += '"';
    }
    out +=
        "\n    SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\""
        "\n    MajorVersion=\"1\" MinorVersion=\"0\" SubMinorVersion=\"0\""
        "\n    xmlns=\"http://www.genicam.org/GenApi/Version_1_1\""
        "\n    xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
        "\n    xsi:schemaLocation=\"http://www.genicam.org/GenApi/Version_1_1 "
        "http://www.genicam.org/GenApi/GenApiSchema_Version_1_1.xsd\">\n";
}

}  // namespace

FeatureTable::FeatureTable(RegisterSpace& space, const std::string& port, Caching caching,
                           uint64_t addressBase)
    : space_(space), defaults_{port, caching == Caching::Off, space.Order(), addressBase} {
    Category(kRoot, "Root of the features.").In("");
    Port(port);
}

Feature& FeatureTable::Add(std::string_view kind, std::string name, std::string toolTip) {
    Feature& row = rows_.emplace_back(kind, std::move(name), std::move(toolTip));
    if (!row.IsHelper()) row.In(category_);
    return row;
}

Feature& FeatureTable::Category(std::string name, std::string toolTip) {
    category_ = kRoot;
    Feature& row = Add("Category", name, std::move(toolTip));
    category_ = std::move(name);
    return row;
}

uint64_t FeatureTable::Memory(uint64_t address, size_t size) {
    ZelCti::Register memory;
    memory.address = defaults_.addressBase + address;
    memory.size = size;
    const uint64_t place = memory.address;
    space_.Add(std::move(memory));
    return place;
}

void FeatureTable::Complete() {
    AddRegisters();
    AddLinks();
    MakeNodes();
    rows_.clear();
}

void FeatureTable::AddRegisters() {
    for (const Feature& row : rows_) {
        try {
            row.AddRegisters(space_, defaults_.addressBase);
        } catch (const std::logic_error& error) {
            throw std::logic_error(row.Name() + ": " + error.what());
        }
    }
}

// The features of categories, and what selectors select.
void FeatureTable::AddLinks() {
    std::map<std::string_view, Feature*> rows;
    for (Feature& row : rows_)
        rows[row.Name()] = &row;
    const auto link = [&](const Feature& row, std::string_view element, const std::string& from) {
        if (from.empty()) return;
        const auto found = rows.find(from);
        if (found == rows.end()) throw std::logic_error(row.Name() + ": there is no " + from);
        found->second->With(element, row.Name());
    };
    for (const Feature& row : rows_) {
        link(row, "pFeature", row.Category());
        link(row, "pSelected", row.Selector());
    }
}

void FeatureTable::MakeNodes() {
    nodes_.reserve(2 * rows_.size());
    for (Feature& row : rows_) {
        const bool isEntry = row.Kind() == "StructEntry";
        for (DescriptionNode& node : row.TakeNodes(defaults_)) {
            if (isEntry) {
                nodes_.back().Add(std::move(node));
            } else {
                nodes_.push_back(std::move(node));
            }
        }
    }
}

std::string FeatureTable::Describe(const DescriptionHeader& header) const {
    constexpr size_t kUsualSize = 256;  // of a node
    std::string out;
    out.reserve((nodes_.size() + 4) * kUsualSize);
    AppendOpeningTag(header, out);
    for (const DescriptionNode& node : nodes_)
        AppendXml(node, 1, out);
    out += "</RegisterDescription>\n";
    return out;
}

}  // namespace ZelCti
