// What tshark reads in the packets of the stream protocol that we make.

#include <gtest/gtest.h>

#include "tests/wire/dissection.h"
#include "tests/wire/gvspsamples.h"

namespace ZelCti::Gvsp {

using namespace WireTest;

namespace {

constexpr uint16_t kReceiver = 20202;

// As "name=value name=value", without those that are 0: a field that the samples do not list is 0.
std::string ListOf(const Dissection::Fields& fields) {
    constexpr std::string_view kPrefix = "gvsp.";
    std::string list;
    for (const std::string& field : fields) {
        const bool isField = field.rfind(kPrefix, 0) == 0;  // not an objection
        if (isField && field.find_first_not_of("0x:", field.find('=') + 1) == std::string::npos)
            continue;
        if (!list.empty()) list += ' ';
        list += isField ? field.substr(kPrefix.size()) : field;
    }
    return list;
}

}  // namespace

TEST(GvspWitnessTest, PacketsAreReadAsTheyWereMeant) {
    if (!Dissection::IsPossible()) GTEST_SKIP() << "tshark is not installed";
    Dissection dissection;
    for (const GvspSample& sample : GvspSamples())
        dissection.AddFromDevice(kReceiver, 1024, Encoded(sample.encode));
    const auto packets =
        dissection.Run("gvsp", "-d udp.port==" + std::to_string(kReceiver) + ",gvsp");
    ASSERT_EQ(GvspSamples().size(), packets.size());
    for (size_t i = 0; i < packets.size(); ++i)
        EXPECT_EQ(GvspSamples()[i].fields, ListOf(packets[i])) << GvspSamples()[i].name;
}

}  // namespace ZelCti::Gvsp
