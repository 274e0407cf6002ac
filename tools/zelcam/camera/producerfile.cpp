#include "tools/zelcam/camera/producerfile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <elf.h>
#include <filesystem>
#include <fstream>
#include <link.h>
#include <memory>
#include <sstream>
#include <unistd.h>

#include "tools/zelcam/console/wordtable.h"

namespace ZelTool {

namespace fs = std::filesystem;

namespace {

#if defined(__aarch64__)
constexpr unsigned kThisMachine = EM_AARCH64;
#elif defined(__x86_64__)
constexpr unsigned kThisMachine = EM_X86_64;
#else
#error "the machine needs its ELF number here"
#endif

constexpr Word<unsigned> kMachines[] = {{EM_AARCH64, "64-bit Arm"},
                                        {EM_X86_64, "64-bit x86"},
                                        {EM_ARM, "32-bit Arm"},
                                        {EM_386, "32-bit x86"}};

std::string MachineName(unsigned machine) {
    const std::string other = "another machine (ELF machine " + std::to_string(machine) + ")";
    return WordsFor(machine, kMachines, other.c_str());
}

// Checks the ELF header.
std::string WhyNotALibrary(const std::string& path) {
    std::array<unsigned char, 20> head{};
    std::ifstream in(path, std::ios::binary);
    in.read(reinterpret_cast<char*>(head.data()), head.size());
    if (!in || std::memcmp(head.data(), ELFMAG, SELFMAG) != 0) {
        return "it is not a shared library (no ELF file)";
    }
    const unsigned machine = head[18] | static_cast<unsigned>(head[19]) << 8;
    if (machine == kThisMachine) return "";
    return "it is built for " + MachineName(machine) + ", but this is " + MachineName(kThisMachine);
}

std::string WhyNotAccessible(const std::string& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status)) {
        return error && error != std::errc::no_such_file_or_directory ? error.message()
                                                                      : "there is no such file";
    }
    if (fs::is_directory(status)) return "it is a folder, not a producer file";
    if (access(path.c_str(), R_OK) != 0) return std::strerror(errno);
    return "";
}

std::string LoadedDefaultProducer() {
    const std::unique_ptr<void, int (*)(void*)> library(
        dlopen(kDefaultProducerName, RTLD_LAZY | RTLD_NOLOAD), dlclose);
    link_map* map = nullptr;
    if (!library || dlinfo(library.get(), RTLD_DI_LINKMAP, &map) != 0) return "";
    return map->l_name;
}

}  // namespace

std::string WhyNotLoadable(const std::string& path) {
    const std::string reason = WhyNotAccessible(path);
    return reason.empty() ? WhyNotALibrary(path) : reason;
}

std::vector<std::string> SplitPathList(const std::string& list) {
    std::vector<std::string> folders;
    std::istringstream in(list);
    for (std::string folder; std::getline(in, folder, ':');) {
        if (!folder.empty()) folders.push_back(folder);
    }
    return folders;
}

std::vector<std::string> ProducerFilesIn(const std::string& folder) {
    std::vector<std::string> files;
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == ".cti") files.push_back(entry.path().string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<std::string> DefaultProducerFolders() {
    std::vector<std::string> folders;
    if (const char* path = std::getenv("LD_LIBRARY_PATH")) folders = SplitPathList(path);
    Dl_info info{};
    void* entry = dlsym(RTLD_DEFAULT, "ZelCam_GetSystem");
    if (entry != nullptr && dladdr(entry, &info) != 0) {
        const fs::path folder = fs::path(info.dli_fname).parent_path().lexically_normal();
        folders.push_back(folder.string());
        folders.push_back((folder / "zelcam").string());
    }
    return folders;
}

std::string FindDefaultProducer() {
    const std::string loaded = LoadedDefaultProducer();
    if (!loaded.empty()) return fs::path(loaded).lexically_normal().string();
    for (const std::string& folder : DefaultProducerFolders()) {
        const fs::path file = fs::path(folder) / kDefaultProducerName;
        std::error_code ignored;
        if (fs::exists(file, ignored)) return file.string();
    }
    return "";
}

}  // namespace ZelTool
