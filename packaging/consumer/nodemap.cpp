// A node map over a port of its own, written as programs for the reference implementation are: its
// names without qualification, smart pointers, streams from nowhere but its own headers.
#include <cstring>

#include <GenApi/GenApi.h>
#include <GenApi/PortImpl.h>

using namespace std;
using namespace GenICam;
using namespace GenApi;

static const char* const Description =
    "<?xml version='1.0' encoding='utf-8'?>"
    "<RegisterDescription ModelName='Model' VendorName='Vendor' ToolTip='' "
    "StandardNameSpace='None' SchemaMajorVersion='1' SchemaMinorVersion='1' "
    "SchemaSubMinorVersion='0' MajorVersion='1' MinorVersion='0' SubMinorVersion='0' "
    "ProductGuid='0' VersionGuid='0' xmlns='http://www.genicam.org/GenApi/Version_1_1'>"
    "<Category Name='Root'><pFeature>Gain</pFeature><pFeature>Mode</pFeature></Category>"
    "<Integer Name='Gain'><Streamable>Yes</Streamable><pValue>GainReg</pValue>"
    "<Min>0</Min><Max>100</Max></Integer>"
    "<IntReg Name='GainReg'><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode>"
    "<pPort>Device</pPort><Endianess>LittleEndian</Endianess></IntReg>"
    "<Enumeration Name='Mode'><EnumEntry Name='Off'><Value>0</Value></EnumEntry>"
    "<EnumEntry Name='On'><Value>1</Value></EnumEntry><Value>0</Value></Enumeration>"
    "<Port Name='Device'/></RegisterDescription>";

class CTestPort : public CPortImpl {
  public:
    CTestPort() { memset(m_Memory, 0, sizeof m_Memory); }
    virtual EAccessMode GetAccessMode() const { return RW; }
    virtual void Read(void* pBuffer, int64_t Address, int64_t Length) {
        CheckRange("Device", Address, Length, 0, sizeof m_Memory);
        memcpy(pBuffer, m_Memory + Address, static_cast<size_t>(Length));
    }
    virtual void Write(const void* pBuffer, int64_t Address, int64_t Length) {
        CheckRange("Device", Address, Length, 0, sizeof m_Memory);
        memcpy(m_Memory + Address, pBuffer, static_cast<size_t>(Length));
    }

  private:
    char m_Memory[16];
};

static int Calls = 0;

static void OnGain(INode* pNode) {
    cout << pNode->GetName() << " changed" << endl;
    ++Calls;
}

static int Run() {
    CTestPort Port;
    CNodeMapRef Camera("Camera");
    Camera._LoadXMLFromString(gcstring(Description));
    Camera._Connect(&Port, "Device");

    const CCategoryPtr ptrRoot(Camera._GetNode("Root"));
    FeatureList_t Features;
    ptrRoot->GetFeatures(Features);
    for (FeatureList_t::const_iterator it = Features.begin(); it != Features.end(); ++it) {
        const CValuePtr ptrValue(*it);
        cout << ptrValue->GetNode()->GetDisplayName() << " = " << ptrValue->ToString() << endl;
    }

    CIntegerPtr ptrGain = Camera._GetNode("Gain");
    const CallbackHandleType hCallback = Register(ptrGain->GetNode(), &OnGain);
    if (IsWritable(ptrGain)) ptrGain->SetValue(ptrGain->GetMax());
    *ptrGain = 42;
    Deregister(hCallback);
    CEnumerationPtr ptrMode = Camera._GetNode("Mode");
    *ptrMode = "On";
    const CEnumEntryPtr ptrOn = ptrMode->GetEntryByName("On");
    cout << "Gain " << ptrGain->GetValue() << ", mode " << ptrMode->ToString() << endl;

    bool Refused = false;
    try {
        ptrGain->SetValue(101);
    } catch (const OutOfRangeException& e) {
        cerr << e.GetDescription() << endl;
        Refused = true;
    }

    CFeatureBag Bag;
    const int64_t Stored = Bag.StoreToBag(Camera._Ptr);
    return Calls == 2 && Refused && Stored > 0 && ptrGain->GetValue() == 42 &&
                   ptrOn->GetValue() == ptrMode->GetIntValue()
               ? 0
               : 1;
}

int main() {
    try {
        return Run();
    } catch (const GenericException& e) {
        cerr << "Error: " << e.what() << endl;
        return 2;
    }
}
