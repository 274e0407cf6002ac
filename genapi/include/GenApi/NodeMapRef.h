// A shared reference to a node map, which can load descriptions.
#ifndef GENAPI_NODEMAPREF_H
#define GENAPI_NODEMAPREF_H

#include <cstddef>
#include <memory>

#include <Base/GCException.h>
#include <Base/GCString.h>
#include <Base/GCStringVector.h>
#include <GenApi/Container.h>
#include <GenApi/GenApiDll.h>
#include <GenApi/IDestroy.h>
#include <GenApi/INodeMap.h>
#include <GenApi/IPort.h>
#include <GenApi/IPortStacked.h>
#include <GenApi/NodeMapFactory.h>
#include <GenApi/Synch.h>

namespace GENAPI_NAMESPACE {

// The interface that destroys a node map.
GENAPI_DECL IDestroy* CastToIDestroy(INodeMap* pNodeMap);

// Base of CNodeMapRefT if there is no generated class for the camera.
class CGeneric_XMLLoaderParams {
  protected:
    virtual void _Initialize(INodeMap*) {}
    virtual ~CGeneric_XMLLoaderParams() {}
};

// Copies share the map; the last one destroys it. TCameraParams gets every new map through
// _Initialize.
//
// Errors: AccessException for operations of an empty reference, RuntimeException for loading into a
// reference that holds a map, and the errors of CNodeMapFactory. Reentrant; the map itself is
// thread-safe.
template <class TCameraParams>
class CNodeMapRefT : public TCameraParams {
  public:
    CNodeMapRefT(const GENICAM_NAMESPACE::gcstring& DeviceName = "Device")
        : TCameraParams(), _Ptr(nullptr), m_DeviceName(DeviceName) {}
    // Takes ownership of the map.
    CNodeMapRefT(INodeMap* pNodeMap, const GENICAM_NAMESPACE::gcstring& DeviceName = "Device")
        : TCameraParams(), _Ptr(nullptr), m_DeviceName(DeviceName) {
        Adopt(pNodeMap);
    }
    CNodeMapRefT(const CNodeMapRefT& Them)
        : TCameraParams(), _Ptr(nullptr), m_DeviceName(Them.m_DeviceName) {
        Share(Them);
    }
    ~CNodeMapRefT() override {}

    CNodeMapRefT& operator=(const CNodeMapRefT& Them) {
        if (this == &Them) return *this;
        m_DeviceName = Them.m_DeviceName;
        Share(Them);
        return *this;
    }
    CNodeMapRefT& operator=(INodeMap* pNodeMap) {
        if (pNodeMap != _Ptr) Adopt(pNodeMap);
        return *this;
    }

    // Drops this reference; others keep the map.
    void _Destroy() {
        _Ptr = nullptr;
        m_Owner.reset();
    }

    void _LoadXMLFromFile(const GENICAM_NAMESPACE::gcstring& FileName) {
        Load(ContentType_Xml, FileName);
    }
    void _LoadXMLFromZIPFile(const GENICAM_NAMESPACE::gcstring& ZipFileName) {
        Load(ContentType_ZippedXml, ZipFileName);
    }
    void _LoadXMLFromZIPData(const void* zipData, size_t zipSize) {
        Load(ContentType_ZippedXml, zipData, zipSize);
    }
    void _LoadXMLFromString(const GENICAM_NAMESPACE::gcstring& XMLData) { Load(XMLData); }

    // These add the nodes of a second description.
    void _LoadXMLFromFileInject(const GENICAM_NAMESPACE::gcstring& TargetFileName,
                                const GENICAM_NAMESPACE::gcstring& InjectFileName) {
        RequireEmpty();
        CNodeMapFactory target(ContentType_Xml, TargetFileName);
        CNodeMapFactory injected(ContentType_Xml, InjectFileName);
        target.AddInjectionData(injected);
        Adopt(target.CreateNodeMap(m_DeviceName));
    }
    void _LoadXMLFromStringInject(const GENICAM_NAMESPACE::gcstring& TargetXMLData,
                                  const GENICAM_NAMESPACE::gcstring& InjectXMLData) {
        RequireEmpty();
        CNodeMapFactory target(TargetXMLData);
        CNodeMapFactory injected(InjectXMLData);
        target.AddInjectionData(injected);
        Adopt(target.CreateNodeMap(m_DeviceName));
    }

    virtual void _GetSupportedSchemaVersions(
        GENICAM_NAMESPACE::gcstring_vector& SchemaVersions) const {
        CNodeMapFactory().GetSupportedSchemaVersions(SchemaVersions);
    }
    // The operations of INodeMap.
    virtual GENICAM_NAMESPACE::gcstring _GetDeviceName() const { return Map().GetDeviceName(); }
    virtual void _Poll(int64_t ElapsedTime) { Map().Poll(ElapsedTime); }
    static bool _ClearXMLCache() { return CNodeMapFactory::ClearCache(); }
    virtual void _GetNodes(NodeList_t& Nodes) const { Map().GetNodes(Nodes); }
    virtual INode* _GetNode(const GENICAM_NAMESPACE::gcstring& key) const {
        return Map().GetNode(key);
    }
    virtual void _InvalidateNodes() const { Map().InvalidateNodes(); }
    virtual bool _Connect(IPort* pPort, const GENICAM_NAMESPACE::gcstring& PortName) const {
        return Map().Connect(pPort, PortName);
    }
    virtual bool _Connect(IPort* pPort) const { return Map().Connect(pPort); }
    virtual bool _ParseSwissKnifes(GENICAM_NAMESPACE::gcstring_vector* pErrorList = nullptr) const {
        return Map().ParseSwissKnifes(pErrorList);
    }
    virtual bool _Connect(IPortStacked* pPort, const GENICAM_NAMESPACE::gcstring& PortName) const {
        return Map().Connect(pPort, PortName);
    }
    virtual bool _Connect(IPortStacked* pPort) const { return Map().Connect(pPort); }

    // Null until a description is loaded.
    INodeMap* _Ptr;

  private:
    INodeMap& Map() const {
        if (_Ptr == nullptr) {
            throw ACCESS_EXCEPTION("Feature not present (reference not valid)");
        }
        return *_Ptr;
    }

    void RequireEmpty() const {
        if (_Ptr != nullptr) throw RUNTIME_EXCEPTION("Node map already created");
    }

    template <class... Source>
    void Load(const Source&... source) {
        RequireEmpty();
        Adopt(CNodeMapFactory(source...).CreateNodeMap(m_DeviceName));
    }

    static void End(INodeMap* pNodeMap) {
        if (IDestroy* pDestroy = CastToIDestroy(pNodeMap)) pDestroy->Destroy();
    }

    void Adopt(INodeMap* pNodeMap) {
        m_Owner.reset(pNodeMap, &End);
        Show();
    }

    void Share(const CNodeMapRefT& Them) {
        m_Owner = Them.m_Owner;
        Show();
    }

    void Show() {
        _Ptr = m_Owner.get();
        if (_Ptr != nullptr) TCameraParams::_Initialize(_Ptr);
    }

    GENICAM_NAMESPACE::gcstring m_DeviceName;
    std::shared_ptr<INodeMap> m_Owner;
};

// A reference to a map of any camera.
class CNodeMapRef : public CNodeMapRefT<CGeneric_XMLLoaderParams> {
  public:
    CNodeMapRef(const GENICAM_NAMESPACE::gcstring& DeviceName = "Device")
        : CNodeMapRefT<CGeneric_XMLLoaderParams>(DeviceName) {}
    CNodeMapRef(INodeMap* pNodeMap, const GENICAM_NAMESPACE::gcstring& DeviceName = "Device")
        : CNodeMapRefT<CGeneric_XMLLoaderParams>(pNodeMap, DeviceName) {}
    CNodeMapRef(const CNodeMapRef&) = default;
    CNodeMapRef& operator=(const CNodeMapRef&) = default;
    CNodeMapRef& operator=(INodeMap* pNodeMap) {
        CNodeMapRefT<CGeneric_XMLLoaderParams>::operator=(pNodeMap);
        return *this;
    }
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_NODEMAPREF_H
