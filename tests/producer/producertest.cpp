#include "tests/producer/producertest.h"

#include "producers/server/modules/library.h"

using namespace GenTL;
using ZelCti::Library;
using ZelTest::GenTLFunctions;

namespace {

GenTLFunctions MakeFunctions() {
    GenTLFunctions functions;
#define ZELTEST_TAKE(name, parameters) functions.name = &GenTL::name;
    GENTL_FUNCTIONS(ZELTEST_TAKE)
#undef ZELTEST_TAKE
    return functions;
}

}  // namespace

const GenTLFunctions& ProducerTest::Functions() {
    static const GenTLFunctions kFunctions = MakeFunctions();
    return kFunctions;
}

ProducerTest::ProducerTest() : Client(Functions()) {
    EXPECT_EQ(GCInitLib(), GC_ERR_SUCCESS);
    Use({std::make_shared<ZelTest::ScriptedTransport>(ZelCti::InterfaceList{host})});
}

ProducerTest::~ProducerTest() {
    EXPECT_EQ(GCCloseLib(), GC_ERR_SUCCESS);
    EXPECT_EQ(NumHandles(), 0U);
    Steps();
}

void ProducerTest::Use(std::vector<std::shared_ptr<ZelCti::Transport>> transports) {
    if (system != nullptr) {
        ASSERT_EQ(TLClose(system), GC_ERR_SUCCESS);
    }
    script.transports = std::move(transports);
    Library::Instance().Reconfigure([] {});
    ASSERT_EQ(TLOpen(&system), GC_ERR_SUCCESS);
}

size_t ProducerTest::NumHandles() {
    return Library::Instance().Handles().Count();
}
