#include "tools/zelcam/camera/producerlist.h"

#include <algorithm>
#include <filesystem>

#include "tools/zelcam/camera/producerfile.h"

namespace ZelTool {

namespace fs = std::filesystem;

namespace {

using Origin = Producer::Origin;

bool IsFile(const Producer& producer, const std::string& file) {
    std::error_code ignored;
    return producer.file == file || fs::equivalent(producer.file, file, ignored);
}

void Add(std::vector<Producer>& producers, const std::string& file, Origin origin) {
    Producer producer;
    // Absolute, because the loader would search its own folders for a bare name.
    producer.file = fs::absolute(file).lexically_normal().string();
    producer.origin = origin;
    for (const Producer& earlier : producers) {
        if (IsFile(earlier, producer.file)) {
            producer.Skip("the same file as the producer listed as " + earlier.OriginWords());
            break;
        }
    }
    producers.push_back(producer);
}

void AddFolder(std::vector<Producer>& producers, const std::string& folder) {
    try {
        for (const std::string& file : ProducerFilesIn(folder)) {
            Add(producers, file, Origin::Environment);
        }
    } catch (const fs::filesystem_error& error) {
        Producer unreadable;
        unreadable.file = folder;
        unreadable.origin = Origin::Environment;
        unreadable.Fail("the folder cannot be read: " + error.code().message());
        producers.push_back(unreadable);
    }
}

Producer FindDefault() {
    Producer standard;
    standard.file = FindDefaultProducer();
    if (!standard.file.empty()) return standard;
    standard.file = kDefaultProducerName;
    std::string reason = "there is no such file in the folders that are searched:";
    for (const std::string& folder : DefaultProducerFolders())
        reason += " " + folder;
    standard.Fail(reason);
    return standard;
}

std::string NameOf(const Producer& producer) {
    return fs::path(producer.file).filename().string();
}

// Names each producer by its file name, or by its full path when two files have the same name.
void NameAll(std::vector<Producer>& producers) {
    for (Producer& producer : producers) {
        const bool alone =
            std::none_of(producers.begin(), producers.end(), [&](const Producer& other) {
                return NameOf(other) == NameOf(producer) && !IsFile(other, producer.file);
            });
        producer.name = alone ? NameOf(producer) : producer.file;
    }
}

// The path of the file that `only` means: a path, or the name of one of the producers.
std::string FileMeantBy(const std::vector<Producer>& producers, const std::string& only) {
    std::error_code ignored;
    const auto named = std::find_if(producers.begin(), producers.end(),
                                    [&](const auto& producer) { return NameOf(producer) == only; });
    return fs::exists(only, ignored) || named == producers.end() ? only : named->file;
}

void LeaveOutOthers(std::vector<Producer>& producers, const std::string& only) {
    const std::string file = fs::absolute(only).lexically_normal().string();
    for (Producer& producer : producers) {
        if (producer.state != Producer::State::Loaded || IsFile(producer, file)) continue;
        if (producer.origin == Origin::Default) {
            producer.leftOut = true;
            producer.reason = "its cameras are left out because of --only";
        } else {
            producer.Skip("left out because of --only");
        }
    }
}

}  // namespace

std::vector<Producer> CollectProducers(const std::vector<std::string>& files,
                                       const std::string& only, const std::string& pathList) {
    std::vector<Producer> producers = {FindDefault()};
    for (const std::string& file : files)
        Add(producers, file, Origin::Option);
    for (const std::string& folder : SplitPathList(pathList))
        AddFolder(producers, folder);
    if (!only.empty()) {
        const std::string file = FileMeantBy(producers, only);
        const bool known = std::any_of(producers.begin(), producers.end(),
                                       [&](const auto& each) { return IsFile(each, file); });
        if (!known) Add(producers, file, Origin::Only);
        LeaveOutOthers(producers, file);
    }
    NameAll(producers);
    return producers;
}

}  // namespace ZelTool
