// The environment variables that GenApi reads while it builds a node map.
#pragma once

#include <memory>
#include <mutex>
#include <string>

namespace ZelCameraApi::Internal {

// Points GENICAM_ROOT, GENICAM_LOG_CONFIG_V3_0 and GENICAM_CACHE_V3_0 at this installation and at
// the user's cache folder, which is created, and puts them back at its end; an empty value counts
// as unset. Logging is configured on the way. No step fails the construction: results are logged.
//
// The environment is the process's, so there is one of these at a time: another thread waits. What
// the program itself does with its environment meanwhile is not synchronised: no other thread may
// read or change it.
class Environment {
  public:
    Environment();
    ~Environment();
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

  private:
    const std::lock_guard<std::mutex> lock_;  // for all objects; to be held by the thread once only
    std::string oldRoot_;
    std::string oldLogConfig_;
    std::string oldCache_;
};

std::unique_ptr<Environment> FixEnvironment();

// The part of `path` before the last '/' that precedes its last character that is no '/'; all of it
// when there is no such '/'.
std::string GetParentDirectory(const std::string& path);

// Where the libraries of an executable lie: its folder, with the first "bin" below the grandparent
// replaced by "lib".
std::string LibraryDirectoryOf(const std::string& executableDirectory);

}  // namespace ZelCameraApi::Internal
