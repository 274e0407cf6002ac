#include "tools/zelcam/producerlist.h"

#include <filesystem>

#include "tools/zelcam/producerfile.h"

namespace fs = std::filesystem;

namespace {

using Origin = Producer::Origin;

void Add(std::vector<Producer>& producers, const std::string& file, Origin origin) {
    Producer producer;
    // Absolute, because the loader would search its own folders for a bare name.
    producer.file = fs::absolute(file).lexically_normal().string();
    producer.origin = origin;
    for (const Producer& earlier : producers) {
        std::error_code ignored;
        if (producer.file == earlier.file || fs::equivalent(producer.file, earlier.file, ignored)) {
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

}  // namespace

std::vector<Producer> CollectProducers(const std::vector<std::string>& files,
                                       const std::string& pathList) {
    Producer standard;
    standard.file = FindDefaultProducer();
    if (standard.file.empty()) standard.file = defaultProducerName;
    std::vector<Producer> producers = {standard};
    for (const std::string& file : files)
        Add(producers, file, Origin::Option);
    for (const std::string& folder : SplitPathList(pathList))
        AddFolder(producers, folder);
    return producers;
}
