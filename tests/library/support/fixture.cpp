#include "tests/library/support/fixture.h"

#include <algorithm>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <unistd.h>

std::string ProducerPath(const std::string& file) {
    return SCRIPTED_PRODUCER_FOLDER "/" + file;
}

std::string TempPath(const std::string& file) {
    return testing::TempDir() + std::to_string(getpid()) + "_" + file;
}

TemporaryFile::TemporaryFile(const std::string& name, const std::string& content)
    : path_(TempPath(name)) {
    std::ofstream(path_) << content;
}

TemporaryFile::~TemporaryFile() {
    std::filesystem::remove(path_);
}

Scripted::Control& LoadControl(const std::string& file) {
    void* const module = dlopen(ProducerPath(file).c_str(), RTLD_NOW);
    void* const symbol = module != nullptr ? dlsym(module, "ScriptedProducer_GetControl") : nullptr;
    if (symbol == nullptr) throw std::runtime_error(dlerror());
    return *reinterpret_cast<Scripted::GetControl>(symbol)();
}

bool IsLoaded(const std::string& path) {
    void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (module != nullptr) dlclose(module);
    return module != nullptr;
}

ProducerCopy::ProducerCopy(const std::string& file) : path_(TempPath("copy_of_" + file)) {
    std::filesystem::copy_file(ProducerPath(file), path_,
                               std::filesystem::copy_options::overwrite_existing);
}

ProducerCopy::~ProducerCopy() {
    std::filesystem::remove(path_);
}

std::vector<std::string> TextsOf(const std::vector<Scripted::Call>& calls) {
    std::vector<std::string> texts;
    texts.reserve(calls.size());
    for (const Scripted::Call& call : calls)
        texts.push_back(call.Text());
    return texts;
}

void ScriptedTest::TearDown() {
    producer.ClearRules();
    EXPECT_THAT(producer.GetOpenHandles(), testing::UnorderedElementsAreArray(expectedOpen));
    EXPECT_THAT(producer.GetMisuses(), testing::IsEmpty());
}

void ScriptedTest::Fail(const std::string& function, int32_t code, int64_t command, size_t skip,
                        size_t count) {
    const auto reply = [code](const Scripted::Call&) { return Scripted::Fails(code); };
    producer.AddRule({function, command, reply, skip, count});
}

void ScriptedTest::Answer(const std::string& function, int64_t command,
                          const Scripted::Reply& reply) {
    producer.AddRule({function, command, [reply](const Scripted::Call&) { return reply; }});
}

std::vector<std::string> ScriptedTest::Calls() {
    return TextsOf(producer.TakeCalls());
}

std::vector<std::string> ScriptedTest::CallsWithoutRepeatedKills() {
    std::vector<std::string> calls = Calls();
    const auto areKills = [](const std::string& a, const std::string& b) {
        return a == "EventKill" && b == a;
    };
    calls.erase(std::unique(calls.begin(), calls.end(), areKills), calls.end());
    return calls;
}

void SessionTest::TearDown() {
    system.reset();
    ScriptedTest::TearDown();
}

void SessionTest::OpenSystem() {
    system.reset(ZelCam_GetSystem());
    ASSERT_NE(system, nullptr);
}

void SessionTest::OpenInterface(const char* id) {
    if (system == nullptr) {
        ASSERT_NO_FATAL_FAILURE(OpenSystem());
    }
    iface = system->GetInterfaceById(id);
    ASSERT_NE(iface, nullptr);
}

void SessionTest::OpenDevice(ZelCam::DeviceAccess access) {
    if (iface == nullptr) {
        ASSERT_NO_FATAL_FAILURE(OpenInterface());
    }
    info = iface->GetFirstDeviceInfo();
    ASSERT_NE(info, nullptr);
    device = ZelCam_CreateDevice(info, access, nullptr);
    ASSERT_NE(device, nullptr);
}

void SessionTest::OpenStream() {
    if (device == nullptr) {
        ASSERT_NO_FATAL_FAILURE(OpenDevice());
    }
    stream = device->GetStreamByIndex(0);
    ASSERT_NE(stream, nullptr);
}

void* SessionTest::HandleOf(const std::string& name) {
    void* const handle = producer.FindHandle(name);
    EXPECT_NE(handle, nullptr) << name;
    return handle;
}

void Subscriber::Form1(const void* data, size_t size, void* self) {
    static_cast<Subscriber*>(self)->Add(0, data, size);
}

void Subscriber::Form2(uint32_t type, const void* data, size_t size, void* self) {
    static_cast<Subscriber*>(self)->Add(type, data, size);
}

void Subscriber::Add(uint32_t type, const void* data, size_t size) {
    const auto* const bytes = static_cast<const uint8_t*>(data);
    const std::lock_guard lock(mutex_);
    events_.push_back({type, {bytes, bytes + size}});
    changed_.notify_all();
}

std::vector<Subscriber::Event> Subscriber::Await(size_t count) {
    std::unique_lock lock(mutex_);
    EXPECT_TRUE(changed_.wait_for(lock, kPatience, [&] { return events_.size() >= count; }));
    return events_;
}
