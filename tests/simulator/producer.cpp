#include "tests/simulator/producer.h"

#include <dlfcn.h>
#include <stdexcept>

#include "tests/support/acquisition.h"

using namespace GenTL;

namespace {

template <typename Pointer>
void Resolve(void* file, const char* name, Pointer& pointer) {
    pointer = reinterpret_cast<Pointer>(dlsym(file, name));
    EXPECT_NE(pointer, nullptr) << name;
}

}  // namespace

Producer::Producer() : file(dlopen(ZELCTI_PATH, RTLD_NOW)) {
    if (file == nullptr) throw std::runtime_error(dlerror());
#define ZELSIM_RESOLVE(name, parameters) Resolve(file, #name, name);
    GENTL_FUNCTIONS(ZELSIM_RESOLVE)
#undef ZELSIM_RESOLVE
    Resolve(file, "ZelSim_InjectFault", InjectFault);
    Resolve(file, "ZelSim_ClearFaults", ClearFaults);
    Resolve(file, "ZelSim_GetCallCount", GetCallCount);
    Resolve(file, "ZelSim_Configure", Configure);
    Resolve(file, "ZelSim_PlugCamera", PlugCamera);
    Resolve(file, "ZelSim_UnplugCamera", UnplugCamera);
    Resolve(file, "ZelSim_FireEvent", FireEvent);
    Resolve(file, "ZelSim_GetNumOpenHandles", GetNumOpenHandles);
    Resolve(file, "ZelSim_ServeCameras", ServeCameras);
    Resolve(file, "ZelSim_SetNetwork", SetNetwork);
    Resolve(file, "ZelSim_GetNetwork", GetNetwork);
}

Producer::~Producer() {
    dlclose(file);
}

bool Producer::IsLoaded() {
    void* const handle = dlopen(ZELCTI_PATH, RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr) dlclose(handle);
    return handle != nullptr;
}

SimulatorTest::SimulatorTest() : Client(p) {
    EXPECT_EQ(p.Configure(nullptr), GC_ERR_SUCCESS);
    EXPECT_EQ(p.GCInitLib(), GC_ERR_SUCCESS);
    EXPECT_EQ(p.TLOpen(&system), GC_ERR_SUCCESS);
}

SimulatorTest::~SimulatorTest() {
    p.ClearFaults();
    EXPECT_EQ(p.GCCloseLib(), GC_ERR_SUCCESS);
    EXPECT_EQ(p.GetNumOpenHandles(), 0U);
}

void SimulatorTest::UseConfig(const std::string& xml) {
    ASSERT_EQ(p.TLClose(system), GC_ERR_SUCCESS);
    ASSERT_EQ(p.Configure(xml.c_str()), GC_ERR_SUCCESS) << LastErrorText();
    ASSERT_EQ(p.TLOpen(&system), GC_ERR_SUCCESS);
}

void CameraTest::OpenCamera(const std::string& keys, const std::string& type) {
    UseConfig("<ZelSim><Interface id='I' type='" + type + "'><Camera id='C' " + keys +
              "/></Interface></ZelSim>");
    Client::OpenCamera("I", "C");
}

auto CameraTest::Acquisition() {
    const PORT_HANDLE port = Remote();
    const bool bigEndian = Ask(p.GCGetPortInfo, port, PORT_INFO_BIG_ENDIAN).Bool();
    const auto write = [this, port](uint64_t address, const auto& bytes) {
        size_t size = bytes.size();
        return p.GCWritePort(port, address, bytes.data(), &size) == GC_ERR_SUCCESS;
    };
    return ZelTest::CameraAcquisition(write, bigEndian);
}

GC_ERROR CameraTest::Start(uint64_t count) {
    const GC_ERROR code = StartStream(count);
    if (code == GC_ERR_SUCCESS) {
        EXPECT_TRUE(Acquisition().Start());
    }
    return code;
}

GC_ERROR CameraTest::Stop(int32_t flags) {
    EXPECT_TRUE(Acquisition().Stop());
    return StopStream(flags);
}
