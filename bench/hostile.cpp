// Descriptions made to take for ever: nodes that reach the next one in several ways, so that the
// number of ways doubles with each. Every operation ends soon, if need be with an exception.
#include <algorithm>
#include <functional>
#include <string>

#include <GenApi/GenApi.h>

#include "bench/groups.h"
#include "bench/measure.h"
#include "bench/session.h"

namespace Bench {

namespace {

using namespace GENAPI_NAMESPACE;

constexpr double kToleratedMs = 1000;
constexpr int kLengths[] = {10, 20, 40, 100, 1000};

class ZeroPort : public IPort {
  public:
    EAccessMode GetAccessMode() const override { return RW; }
    void Read(void* buffer, int64_t, int64_t length) override {
        std::fill_n(static_cast<char*>(buffer), length, char{});
    }
    void Write(const void*, int64_t, int64_t) override {}
};

std::string Node(const std::string& kind, const std::string& name, const std::string& inside) {
    return "<" + kind + " Name='" + name + "'>" + inside + "</" + kind + ">";
}

std::string Variables(const std::string& next) {
    return "<pVariable Name='A'>" + next + "</pVariable><pVariable Name='B'>" + next +
           "</pVariable>";
}

const std::string kUncached =
    "<Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
    "<Cachable>NoCache</Cachable><Endianess>LittleEndian</Endianess>";

struct Doubling {
    const char* name;
    std::string (*link)(const std::string& name, const std::string& next);
};

const Doubling kDoublings[] = {
    {"formulas",
     [](const std::string& name, const std::string& next) {
         return Node("IntSwissKnife", name, Variables(next) + "<Formula>A+B</Formula>");
     }},
    {"limits",
     [](const std::string& name, const std::string& next) {
         return Node("Integer", name,
                     "<pValue>" + next + "</pValue><pMin>" + next + "</pMin><pMax>" + next +
                         "</pMax><pInc>" + next + "</pInc>");
     }},
    {"conditions",
     [](const std::string& name, const std::string& next) {
         return Node("Integer", name,
                     "<pIsImplemented>" + next + "</pIsImplemented><pIsAvailable>" + next +
                         "</pIsAvailable><pIsLocked>" + next + "</pIsLocked><pValue>" + next +
                         "</pValue>");
     }},
    {"copies",
     [](const std::string& name, const std::string& next) {
         return Node("Integer", name,
                     "<pValue>" + next + "</pValue><pValueCopy>" + next +
                         "</pValueCopy><pValueCopy>" + next + "</pValueCopy>");
     }},
    {"addresses",
     [](const std::string& name, const std::string& next) {
         return Node("IntReg", name,
                     "<pAddress>" + next + "</pAddress><pIndex pOffset='" + next + "'>" + next +
                         "</pIndex>" + kUncached);
     }},
    {"converters",
     [](const std::string& name, const std::string& next) {
         return Node("IntConverter", name,
                     Variables(next) +
                         "<FormulaTo>FROM+A-B</FormulaTo><FormulaFrom>TO+A-B</FormulaFrom>"
                         "<pValue>" +
                         next + "</pValue>");
     }},
};

std::string Describe(const Doubling& doubling, int length) {
    std::string text =
        "<RegisterDescription ModelName='M' VendorName='V' StandardNameSpace='None' "
        "SchemaMajorVersion='1' SchemaMinorVersion='1' SchemaSubMinorVersion='0' MajorVersion='1' "
        "MinorVersion='0' SubMinorVersion='0' ProductGuid='P' VersionGuid='G' "
        "xmlns='http://www.genicam.org/GenApi/Version_1_1'>"
        "<Category Name='Root'><pFeature>N0</pFeature></Category><Port Name='Device'/>";
    for (int i = 0; i < length; ++i)
        text += doubling.link("N" + std::to_string(i),
                              i + 1 < length ? "N" + std::to_string(i + 1) : "End");
    return text + Node("IntReg", "End", "<Address>0</Address>" + kUncached) +
           "</RegisterDescription>";
}

// The longest time that loading or an operation of the first node takes, in milliseconds.
double LongestOf(const Doubling& doubling, int length) {
    double longest = 0;
    const auto measure = [&](const std::function<void()>& operation) {
        const double time = TimeOf([&] {
            try {
                operation();
            } catch (const GENICAM_NAMESPACE::GenericException&) {
                // refusing the operation, for a limit or a range, also ends it
            }
        });
        longest = std::max(longest, time / 1e6);
    };
    const std::string text = Describe(doubling, length);
    ZeroPort port;
    CNodeMapRef map;
    measure([&] { map._LoadXMLFromString(text.c_str()); });
    map._Connect(&port);
    const CIntegerPtr feature = map._GetNode("N0");
    Require(feature.IsValid(), "no feature");
    measure([&] { feature->GetAccessMode(); });
    measure([&] { feature->GetMin(); });
    measure([&] { feature->GetMax(); });
    measure([&] { feature->GetInc(); });
    for (const bool verify : {false, true}) {
        measure([&] { feature->GetValue(verify, false); });
        measure([&] { feature->GetValue(verify, true); });
        measure([&] { feature->ToString(verify); });
        measure([&] { feature->SetValue(0, verify); });
        measure([&] { feature->FromString("0", verify); });
    }
    measure([&] { map._Poll(1000); });
    measure([&] { CFeatureBag().StoreToBag(map._Ptr); });
    return longest;
}

}  // namespace

void MeasureHostile(Report& report) {
    for (const Doubling& doubling : kDoublings) {
        for (const int length : kLengths) {
            Figure figure{"hostile",
                          std::string(doubling.name) + " that double, longest operation, " +
                              std::to_string(length) + " nodes",
                          "ms",
                          {LongestOf(doubling, length)}};
            figure.limit = kToleratedMs;
            figure.must = true;
            report.Add(figure);
        }
    }
}

}  // namespace Bench
