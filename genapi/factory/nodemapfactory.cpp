// CNodeMapFactory reads descriptions, merges others into them, shares them among the node maps of
// the process, and makes the maps.
#include <fstream>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include <Base/GCException.h>
#include <GenApi/NodeMapFactory.h>

#include "genapi/description/archive.h"
#include "genapi/description/limits.h"
#include "genapi/description/numbers.h"
#include "genapi/description/reader.h"
#include "genapi/description/sharing.h"
#include "genapi/description/subtree.h"
#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {

using GENICAM_NAMESPACE::gcstring;
using namespace Engine;

namespace {

// The source of nodes: a file, bytes, or a description made from another one.
struct Source {
    EContentType_t type = ContentType_Xml;
    std::string fileName;
    std::string bytes;
    std::shared_ptr<const Description> nodes;

    void ReadFile() {
        if (fileName.empty() || !bytes.empty()) return;
        std::ifstream file(fileName, std::ios::binary);
        if (!file)
            throw RUNTIME_EXCEPTION("Could not open file for hash computation: %s",
                                    fileName.c_str());
        constexpr size_t kMost = kMaxXmlSize + 1;  // longer texts are refused later
        bytes.resize(kMost);
        file.read(&bytes[0], static_cast<std::streamsize>(kMost));
        bytes.resize(static_cast<size_t>(file.gcount()));
        bytes.shrink_to_fit();
    }

    // The XML; if it is zipped, unpacked holds the result. Cameras pad the XML in an archive with
    // NULs, possibly followed by other contents of their memory.
    std::string_view Text(std::string& unpacked) const {
        if (type != ContentType_ZippedXml) return bytes;
        unpacked = UnzipFirstEntry(bytes);
        return std::string_view(unpacked).substr(0, unpacked.find('\0'));
    }
};

}  // namespace

// The state that copies of a factory share.
struct CNodeMapFactory::State {
    std::vector<Source> sources;  // the description, and those merged into it
    bool suppressStrings = false;
    ContentKey key;                               // once loaded
    std::unique_ptr<DescriptionBuilder> builder;  // while loaded but not preprocessed
    std::shared_ptr<const Description> description;

    bool IsLoaded() const { return builder || description; }

    ContentKey MakeKey() const {
        ContentKey result;
        result.Add(suppressStrings ? 1 : 0);
        for (const Source& source : sources) {
            result.Add(source.type);
            result.Add(source.bytes);
        }
        return result;
    }

    // A description made from another one has no text to identify it.
    bool IsShareable() const {
        for (const Source& source : sources)
            if (source.nodes) return false;
        return true;
    }

    void Load() {
        if (IsLoaded()) return;
        if (sources.empty())
            throw LOGICAL_ERROR_EXCEPTION(
                "Cannot preprocess, no camera description file data has "
                "been provided to the node map factory.");
        for (Source& source : sources)
            source.ReadFile();
        key = MakeKey();
        if (IsShareable()) description = FindShared(key);
        if (!description) ReadSources();
    }

    void ReadSources() {
        auto made = std::make_unique<DescriptionBuilder>();
        LoadOptions options;
        options.suppressStrings = suppressStrings;
        std::string unpacked;
        for (const Source& source : sources) {
            if (source.nodes)
                AddNodes(*source.nodes, *made);
            else
                ReadDescription(source.Text(unpacked), *made, options);
            options.injected = true;
        }
        builder = std::move(made);
    }

    const std::shared_ptr<const Description>& Preprocessed() {
        Load();
        if (!description) {
            const std::unique_ptr<DescriptionBuilder> used = std::move(builder);
            auto made = used->Finish();
            description = IsShareable() ? Share(key, std::move(made)) : std::move(made);
        }
        return description;
    }
};

CNodeMapFactory::CNodeMapFactory() : m_State(std::make_shared<State>()) {}

CNodeMapFactory::CNodeMapFactory(std::shared_ptr<State> state) : m_State(std::move(state)) {}

CNodeMapFactory::~CNodeMapFactory() = default;
CNodeMapFactory::CNodeMapFactory(const CNodeMapFactory&) = default;
CNodeMapFactory& CNodeMapFactory::operator=(const CNodeMapFactory&) = default;

CNodeMapFactory::CNodeMapFactory(EContentType_t FileType, const gcstring& FileName, ECacheUsage_t,
                                 bool SuppressStringsOnLoad)
    : CNodeMapFactory() {
    Source source;
    source.type = FileType;
    source.fileName = FileName.c_str();
    m_State->sources.push_back(std::move(source));
    m_State->suppressStrings = SuppressStringsOnLoad;
}

CNodeMapFactory::CNodeMapFactory(EContentType_t ContentType, const void* pData, size_t DataSize,
                                 ECacheUsage_t, bool SuppressStringsOnLoad)
    : CNodeMapFactory() {
    if (!pData)
        throw INVALID_ARGUMENT_EXCEPTION(
            "The pointer to the camera description file buffer passed "
            "to the node map factory must not be NULL.");
    if (DataSize == 0)
        throw INVALID_ARGUMENT_EXCEPTION(
            "The camera description file buffer passed to the node "
            "map factory must not be empty.");
    Source source;
    source.type = ContentType;
    source.bytes.assign(static_cast<const char*>(pData), DataSize);
    m_State->sources.push_back(std::move(source));
    m_State->suppressStrings = SuppressStringsOnLoad;
}

CNodeMapFactory::CNodeMapFactory(const gcstring& XmlData, ECacheUsage_t CacheUsage,
                                 bool SuppressStringsOnLoad)
    : CNodeMapFactory(ContentType_Xml, XmlData.c_str(), XmlData.length(), CacheUsage,
                      SuppressStringsOnLoad) {}

bool CNodeMapFactory::IsEmpty() const {
    return m_State->sources.empty() && !m_State->IsLoaded();
}

void CNodeMapFactory::AddInjectionData(CNodeMapFactory& injectionData) {
    const State& injected = *injectionData.m_State;
    if (m_State->IsLoaded())
        throw LOGICAL_ERROR_EXCEPTION("Cannot inject, the description has been loaded already.");
    if (injected.sources.empty() && !injected.description)
        throw LOGICAL_ERROR_EXCEPTION("Cannot inject, there is no data to inject.");
    std::vector<Source> added = injected.sources;
    if (added.empty()) {
        added.emplace_back();
        added.back().nodes = injected.description;
    }
    auto& sources = m_State->sources;
    sources.insert(sources.end(), added.begin(), added.end());
}

void CNodeMapFactory::LoadAndInject() {
    m_State->Load();
}

bool CNodeMapFactory::IsLoaded() const {
    return m_State->IsLoaded();
}

CNodeMapFactory CNodeMapFactory::ExtractSubtree(const gcstring& SubTreeRootNodeName,
                                                bool doRenameToRoot) {
    const Description& description = *m_State->Preprocessed();
    const NodeId root = description.Find(SubTreeRootNodeName.c_str());
    if (root == kNoNode)
        throw RUNTIME_EXCEPTION("There is no node '%s' to extract", SubTreeRootNodeName.c_str());
    auto state = std::make_shared<State>();
    state->description = SubtreeOf(description, root, doRenameToRoot);
    return CNodeMapFactory(std::move(state));
}

void CNodeMapFactory::Preprocess() {
    m_State->Preprocessed();
}

bool CNodeMapFactory::IsPreprocessed() const {
    return m_State->description != nullptr;
}

void CNodeMapFactory::ReleaseCameraDescriptionFileData() {
    m_State->sources.clear();
    m_State->sources.shrink_to_fit();
}

bool CNodeMapFactory::IsCameraDescriptionFileDataReleased() const {
    return m_State->sources.empty() && m_State->IsLoaded();
}

INodeMap* CNodeMapFactory::CreateNodeMap(const gcstring& DeviceName,
                                         bool DoReleaseCameraDescriptionFileData) {
    INodeMap* map = MakeNodeMap(m_State->Preprocessed(), DeviceName);
    if (DoReleaseCameraDescriptionFileData) ReleaseCameraDescriptionFileData();
    return map;
}

INodeMap* CNodeMapFactory::CreateNodeMap(CLock& UserProvidedLock, const gcstring& DeviceName,
                                         bool DoReleaseCameraDescriptionFileData) {
    INodeMap* map = MakeNodeMap(m_State->Preprocessed(), DeviceName, &UserProvidedLock);
    if (DoReleaseCameraDescriptionFileData) ReleaseCameraDescriptionFileData();
    return map;
}

INodeMap* CNodeMapFactory::CreateEmptyNodeMap() {
    return MakeNodeMap(DescriptionBuilder().Finish(), "Device");
}

bool CNodeMapFactory::ClearCache() {
    return true;
}

void CNodeMapFactory::GetSupportedSchemaVersions(
    GENICAM_NAMESPACE::gcstring_vector& SchemaVersions) const {
    SchemaVersions.clear();
    SchemaVersions.push_back("1.0");
    SchemaVersions.push_back("1.1");
}

gcstring CNodeMapFactory::ToString() const {
    const Description& description = *m_State->Preprocessed();
    std::string text;
    for (NodeId id = 0; id < description.NodeCount(); ++id) {
        text.append(description.Name(id)).append("\n");
        for (const Property& property : description.Properties(id)) {
            const std::string_view value = IsLink(property.element)
                                               ? description.Name(property.Target())
                                               : description.Text(property.Text());
            text.append("  ").append(NameOf(property.element)).append(": ").append(value);
            text.append("\n");
        }
    }
    return gcstring(text.c_str());
}

gcstring CNodeMapFactory::ToXml() const {
    if (m_State->sources.size() != 1)
        throw RUNTIME_EXCEPTION("The description is no longer there as XML");
    Source& source = m_State->sources.front();
    source.ReadFile();
    std::string unpacked;
    return gcstring(std::string(source.Text(unpacked)).c_str());
}

void CNodeMapFactory::GetNodeStatistics(NodeStatistics_t& Statistics) {
    const Description& description = *m_State->Preprocessed();
    std::unordered_set<TextRef> texts;
    Statistics = {};
    for (NodeId id = 0; id < description.NodeCount(); ++id) {
        ++Statistics.NumNodes;
        for (const Property& property : description.Properties(id)) {
            ++Statistics.NumProperties;
            if (IsLink(property.element))
                ++Statistics.NumLinks;
            else
                texts.insert(property.Text());
        }
    }
    Statistics.NumStrings = static_cast<uint32_t>(texts.size());
}

CNodeDataMap* CNodeMapFactory::CreateNodeDataFromNodeMap(INodeMap*) {
    throw RUNTIME_EXCEPTION("Node data are not supported");
}

const gcstring CNodeMapFactory::ApplyStyleSheet(const gcstring&) {
    throw RUNTIME_EXCEPTION("Style sheets are not supported");
}

}  // namespace GENAPI_NAMESPACE
