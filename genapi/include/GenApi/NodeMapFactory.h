// Makes node maps from descriptions.
#ifndef GENAPI_NODEMAPFACTORY_H
#define GENAPI_NODEMAPFACTORY_H

#include <cstddef>
#include <cstdint>
#include <memory>

#include <Base/GCString.h>
#include <Base/GCStringVector.h>
#include <GenApi/GenApiDll.h>
#include <GenApi/INodeMap.h>
#include <GenApi/Synch.h>

namespace GENAPI_NAMESPACE {

// How to use the folder of preprocessed descriptions. This library keeps none, so all values mean
// the same.
using ECacheUsage_t = enum _ECacheUsage_t {
    CacheUsage_Automatic = 0,
    CacheUsage_ForceWrite = 1,
    CacheUsage_ForceRead = 2,
    CacheUsage_Ignore = 3
};

using EContentType_t = enum _EContentType_t {
    ContentType_Xml = 0,
    ContentType_ZippedXml = 1  // the first entry of the archive counts
};

class CNodeDataMap;

// One description, from which any number of node maps can be made.
//
// A handle that is cheap to copy: copies stand for the same description. It goes from empty over
// data given, loaded and preprocessed to data released; an operation runs the steps it lacks.
// Errors: LogicalErrorException where a state forbids an operation, RuntimeException for files and
// descriptions that cannot be used, PropertyException for numbers that do not convert.
// Reentrant: copies of one factory belong to one thread at a time; the maps made are independent.
class GENAPI_DECL CNodeMapFactory {
  public:
    // Sizes of the description.
    using NodeStatistics_t = struct NodeStatistics {
        uint32_t NumNodes;
        uint32_t NumProperties;
        uint32_t NumLinks;
        uint32_t NumStrings;
    };

    // Empty.
    CNodeMapFactory();
    virtual ~CNodeMapFactory();
    CNodeMapFactory(const CNodeMapFactory& obj);
    CNodeMapFactory& operator=(const CNodeMapFactory& rhs);

    // SuppressStringsOnLoad leaves out tool tips, descriptions and the like. The file is read when
    // the description is loaded.
    CNodeMapFactory(EContentType_t FileType, const GENICAM_NAMESPACE::gcstring& FileName,
                    ECacheUsage_t CacheUsage = CacheUsage_Automatic,
                    bool SuppressStringsOnLoad = false);
    // Copies the data. InvalidArgumentException for null or no data.
    CNodeMapFactory(EContentType_t ContentType, const void* pData, size_t DataSize,
                    ECacheUsage_t CacheUsage = CacheUsage_Automatic,
                    bool SuppressStringsOnLoad = false);
    CNodeMapFactory(const GENICAM_NAMESPACE::gcstring& XmlData,
                    ECacheUsage_t CacheUsage = CacheUsage_Automatic,
                    bool SuppressStringsOnLoad = false);

    // Whether the factory was given neither data nor nodes.
    bool IsEmpty() const;

    // Adds the nodes of another description when this one is loaded.
    void AddInjectionData(CNodeMapFactory& injectionData);
    void LoadAndInject();
    bool IsLoaded() const;

    // A description of one node and all nodes that it needs; doRenameToRoot names the node "Root".
    CNodeMapFactory ExtractSubtree(const GENICAM_NAMESPACE::gcstring& SubTreeRootNodeName,
                                   bool doRenameToRoot = false);

    void Preprocess();
    bool IsPreprocessed() const;

    // Frees the text; maps can still be made.
    void ReleaseCameraDescriptionFileData();
    bool IsCameraDescriptionFileDataReleased() const;

    // Makes a map; destroy it with IDestroy::Destroy (CastToIDestroy).
    INodeMap* CreateNodeMap(const GENICAM_NAMESPACE::gcstring& DeviceName = "Device",
                            bool DoReleaseCameraDescriptionFileData = true);
    // The same with the caller's lock, which must outlive the map.
    INodeMap* CreateNodeMap(CLock& UserProvidedLock,
                            const GENICAM_NAMESPACE::gcstring& DeviceName = "Device",
                            bool DoReleaseCameraDescriptionFileData = true);
    // A map without nodes.
    static INodeMap* CreateEmptyNodeMap();

    // Removes the files of preprocessed descriptions; true if none remains.
    static bool ClearCache();
    // Replaces the list by "1.0" and "1.1".
    void GetSupportedSchemaVersions(GENICAM_NAMESPACE::gcstring_vector& SchemaVersions) const;

    // The description as a text for people, and as XML.
    GENICAM_NAMESPACE::gcstring ToString() const;
    GENICAM_NAMESPACE::gcstring ToXml() const;

    void GetNodeStatistics(NodeStatistics_t& Statistics);

    // Not supported by this library: both throw RuntimeException.
    static CNodeDataMap* CreateNodeDataFromNodeMap(INodeMap* pNodeMap);
    const GENICAM_NAMESPACE::gcstring ApplyStyleSheet(
        const GENICAM_NAMESPACE::gcstring& StyleSheetFileName);

  private:
    struct State;

    explicit CNodeMapFactory(std::shared_ptr<State> state);

    std::shared_ptr<State> m_State;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_NODEMAPFACTORY_H
