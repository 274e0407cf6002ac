// Typed queries: what is thrown for which fault of the producer, and where texts are cut.
#include "ZelCameraApi/base/gentlinfo.h"

#include <functional>
#include <stdexcept>
#include <typeinfo>

#include "tests/library/support/fixture.h"

using namespace ZelCameraApi::Internal;
using namespace std::string_literals;
using testing::ThrowsMessage;

namespace {

class InfoQueries : public ScriptedTest {
  protected:
    InfoQueries() {
        module.lib = std::make_shared<GenTLLib>(ProducerPath("libZelCTI.cti"));
        module.lib->TLOpen(&module.handle);
        module.lib->TLOpenInterface(module.handle, "if0", &iface.handle);
        iface.lib = module.lib;
        producer.TakeCalls();
    }
    void TearDown() override {
        module.lib->IFClose(iface.handle);
        module.lib->TLClose(module.handle);
        ScriptedTest::TearDown();
    }

    struct TextQuery {
        const char* function;
        std::function<std::string()> ask;
        bool cut;
    };

    GenTLModule<void*> module;
    GenTLModule<void*> iface;
    const TextQuery queries[3] = {
        {"TLGetInfo", [this] { return TLGetInfoString(module, 7); }, false},
        {"IFGetInfo", [this] { return IFGetInfoString(iface, 1); }, true},
        {"IFGetDeviceInfo", [this] { return GetDevInfoString(iface, "cam0", 1); }, false}};
};

}  // namespace

TEST_F(InfoQueries, TextsKeepTheTerminatingZeroSaveTheInterfaces) {
    for (const TextQuery& query : queries) {
        SCOPED_TRACE(query.function);
        Answer(query.function, Scripted::kAnyCommand, Scripted::Gives("text"));
        EXPECT_EQ(query.ask(), query.cut ? "text"s : "text\0"s);
        EXPECT_EQ(Calls().size(), 2U);  // the size, then the text
        Answer(query.function, Scripted::kAnyCommand, Scripted::Gives(""));
        EXPECT_EQ(query.ask(), query.cut ? ""s : "\0"s);
        Calls();

        Scripted::Reply nothing = Scripted::Gives("");
        nothing.bytes->clear();
        Answer(query.function, Scripted::kAnyCommand, nothing);
        if (query.cut) {
            EXPECT_THROW(query.ask(), std::out_of_range);
        } else {
            EXPECT_EQ(query.ask(), "");
        }
        Calls();
    }
}

TEST_F(InfoQueries, FaultsOfTextQueries) {
    for (const TextQuery& query : queries) {
        SCOPED_TRACE(query.function);
        for (size_t call = 0; call < 2; ++call) {  // the first, the second call fails
            producer.ClearRules();
            Fail(query.function, -1010, Scripted::kAnyCommand, call);
            EXPECT_THAT(query.ask,
                        ThrowsMessage<zelcam_exception>("Communication error has occurred."));
            EXPECT_EQ(Calls().size(), call + 1);
        }
        producer.ClearRules();
        Scripted::Reply wrongType = Scripted::ReportsType(GenTL::INFO_DATATYPE_UINT32);
        Answer(query.function, Scripted::kAnyCommand, wrongType);
        EXPECT_THAT(query.ask, ThrowsMessage<std::invalid_argument>("Not a string type"));
        Answer(query.function, Scripted::kAnyCommand,
               Scripted::ReportsSize((size_t{16} << 20) + 1));  // more than any text has
        EXPECT_THROW(query.ask(), zelcam_exception);
        // A producer's failure goes before the type it reports.
        wrongType.code = -1003;
        wrongType.actFirst = true;
        Answer(query.function, Scripted::kAnyCommand, wrongType);
        EXPECT_THROW(query.ask(), zelcam_exception);
        Calls();
    }
}

TEST(NumericQueries, CheckCodeThenSizeThenType) {
    const auto ask = [](int code, size_t reportedSize, int reportedType) {
        return QueryValue<GenTL::BUFFER_INFO_TIMESTAMP>(
            [=](int command, int* type, void* value, size_t* size) {
                EXPECT_EQ(command, 3);
                EXPECT_EQ(*type, 0);
                EXPECT_EQ(*size, 8U);
                const uint64_t number = 0x0123456789ABCDEFU;
                std::memcpy(value, &number, sizeof number);
                *type = reportedType;
                *size = reportedSize;
                return code;
            });
    };
    EXPECT_EQ(ask(0, 8, 8), 0x0123456789ABCDEFU);
    EXPECT_THROW(ask(-1014, 4, 6), zelcam_exception);
    EXPECT_THROW(ask(0, 8, 7), std::bad_cast);
    for (const int type : {8, 6})  // the size is looked at first
        EXPECT_THAT([&] { ask(0, 4, type); },
                    ThrowsMessage<std::invalid_argument>("Info size error"));
}
