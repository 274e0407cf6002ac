// Features of the simulated cameras that change the frames.

#include "tests/simulator/cameranodestest.h"
#include "tests/simulator/producer.h"

using namespace GenTL;

namespace {

class CameraFeatureTest : public CameraNodesTest {
  protected:
    double Float(const char* name) {
        return GENAPI_NAMESPACE::CFloatPtr(nodes->Node(name))->GetValue();
    }
    int64_t Max(const char* name) {
        return GENAPI_NAMESPACE::CIntegerPtr(nodes->Node(name))->GetMax();
    }
    bool IsWritable(const char* name) { return GENAPI_NAMESPACE::IsWritable(nodes->Node(name)); }

    // Writes the extreme values, or all of an enumeration; false for what has none.
    static bool TakesLimits(GENAPI_NAMESPACE::INode* node) {
        using namespace GENAPI_NAMESPACE;
        const std::string name = node->GetName().c_str();
        if (const CIntegerPtr integer = node) {
            const int64_t before = integer->GetValue();
            const int64_t range = integer->GetMax() - integer->GetMin();
            const int64_t highest = integer->GetMax() - range % integer->GetInc();
            for (const int64_t value : {integer->GetMin(), highest, before})
                ExpectKept(*integer, value, name);
            return true;
        }
        if (const CFloatPtr number = node) {
            const double before = number->GetValue();
            for (const double value : {number->GetMin(), number->GetMax(), before})
                ExpectKept(*number, value, name);
            return true;
        }
        const CEnumerationPtr enumeration = node;
        if (!enumeration.IsValid()) return false;
        const int64_t before = enumeration->GetIntValue();
        NodeList_t entries;
        enumeration->GetEntries(entries);
        for (INode* const entry : entries) {
            const CEnumEntryPtr value = entry;
            enumeration->SetIntValue(value->GetValue());
            if (value->IsSelfClearing()) continue;
            EXPECT_EQ(enumeration->GetIntValue(false, true), value->GetValue()) << name;
        }
        enumeration->SetIntValue(before);
        return true;
    }

    template <typename Number, typename T>
    static void ExpectKept(Number& number, T value, const std::string& name) {
        number.SetValue(value);
        EXPECT_EQ(number.GetValue(false, true), value) << name;
    }

    // The bytes of the next frame.
    std::vector<uint8_t> Grab() {
        AllocateAndQueue(1);
        EXPECT_EQ(Start(1), GC_ERR_SUCCESS);
        const BUFFER_HANDLE buffer = Fetch();
        const uint8_t* const data = Data(buffer);
        const size_t size = BufferInfo(buffer, BUFFER_INFO_SIZE_FILLED).Size();
        EXPECT_EQ(Stop(), GC_ERR_SUCCESS);
        return {data, data + size};
    }
};

// Registers take what the description offers: the limits of numbers, and the entries of
// enumerations. Each feature is put back, since others may depend on it.
TEST_F(CameraFeatureTest, WritableFeaturesTakeTheirLimits) {
    using namespace GENAPI_NAMESPACE;
    for (const char* keys : {"frameRate='25'", "frameRate='25' bigEndian='true'"}) {
        Open(keys, "GEV");
        NodeList_t all;
        nodes->Map().GetNodes(all);
        size_t numWritten = 0;
        for (INode* const node : all) {
            if (!node->IsFeature() || node->GetAccessMode() != RW) continue;
            try {
                if (TakesLimits(node)) ++numWritten;
            } catch (const GENICAM_NAMESPACE::GenericException& error) {
                ADD_FAILURE() << node->GetName().c_str() << ": " << error.GetDescription();
            }
        }
        EXPECT_GT(numWritten, 30U);
    }
}

TEST_F(CameraFeatureTest, TheRegionStaysOnTheSensor) {
    Open("width='64' height='16'", "U3V");
    nodes->SetInteger("Width", 32);
    EXPECT_EQ(Max("OffsetX"), 32);
    nodes->SetInteger("OffsetX", 16);
    EXPECT_EQ(Max("Width"), 48);
    nodes->SetInteger("BinningHorizontal", 2);
    EXPECT_EQ(nodes->Integer("WidthMax"), 32);
    EXPECT_EQ(nodes->Integer("Width"), 16);
    EXPECT_EQ(nodes->Integer("OffsetX"), 8);
    EXPECT_THROW(nodes->SetInteger("Width", 28), GENICAM_NAMESPACE::OutOfRangeException);

    // The limits are those of the camera, too.
    const std::vector<uint8_t> tooWide{28, 0, 0, 0};
    EXPECT_THROW(nodes->Write(tooWide.data(), 0x2110, 4), std::runtime_error);
    const std::vector<uint8_t> frame = Grab();
    EXPECT_EQ(frame.size(), 16U * 16U);
    EXPECT_EQ(frame.size(), StreamInfo(STREAM_INFO_PAYLOAD_SIZE).Size());
}

TEST_F(CameraFeatureTest, TheFormatDecidesWhichWidthsThereAre) {
    Open("width='66' height='16'", "GEV");
    nodes->Set("PixelFormat", "BayerGR10p");
    EXPECT_EQ(nodes->Integer("Width"), 64);
    EXPECT_EQ(GENAPI_NAMESPACE::CIntegerPtr(nodes->Node("Width"))->GetInc(), 4);
    EXPECT_EQ(nodes->Get("PixelSize"), "Bpp10");
    EXPECT_EQ(nodes->Get("PixelColorFilter"), "BayerGR");
    EXPECT_EQ(nodes->Integer("PixelDynamicRangeMax"), 1023);
    EXPECT_EQ(nodes->Integer("PayloadSize"), 80 * 16);
    EXPECT_EQ(Grab().size(), 80U * 16U);
}

TEST_F(CameraFeatureTest, FramesFollowTheirSettings) {
    Open("width='64' height='8' pattern='GradientHorizontal' frameRate='0'", "GEV");
    const std::vector<uint8_t> plain = Grab();
    nodes->Set("ReverseX", "1");
    const std::vector<uint8_t> reversed = Grab();
    EXPECT_EQ(plain.front(), reversed[63]);
    EXPECT_EQ(plain[63], reversed.front());
    nodes->Set("ReverseX", "0");

    const double exposure = Float("ExposureTime");
    nodes->Set("ExposureTime", std::to_string(exposure * 2));
    EXPECT_EQ(Grab()[20], plain[20] * 2);
    nodes->Set("ExposureAuto", "Once");
    EXPECT_EQ(nodes->Get("ExposureAuto"), "Off");
    EXPECT_EQ(Float("ExposureTime"), exposure);

    nodes->Set("GainSelector", "Blue");
    nodes->Set("Gain", "24");
    EXPECT_GT(Grab()[20], plain[20]);
    nodes->Set("GainSelector", "All");
    EXPECT_EQ(Float("Gain"), 0);
    nodes->Set("UserSetSelector", "Default");
    nodes->Execute("UserSetLoad");
    nodes->Set("BlackLevel", "-10");
    EXPECT_EQ(Grab()[20], plain[20] - 10);
    nodes->Set("TestPattern", "White");
    EXPECT_EQ(Grab()[20], 245);
}

TEST_F(CameraFeatureTest, TheExposureLimitsTheFrameRate) {
    Open("frameRate='50'", "GEV");
    const GENAPI_NAMESPACE::CFloatPtr rate = nodes->Node("AcquisitionFrameRate");
    nodes->Set("ExposureTime", "100000");
    EXPECT_DOUBLE_EQ(rate->GetMax(), 10);
    EXPECT_DOUBLE_EQ(rate->GetValue(), 10);
    nodes->Set("ExposureAuto", "Continuous");
    EXPECT_FALSE(IsWritable("ExposureTime"));
    EXPECT_DOUBLE_EQ(rate->GetMax(), 100);
    nodes->Set("AcquisitionFrameRateEnable", "0");
    EXPECT_FALSE(GENAPI_NAMESPACE::IsAvailable(nodes->Node("AcquisitionFrameRate")));
}

}  // namespace
