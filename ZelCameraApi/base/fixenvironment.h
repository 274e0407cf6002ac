// The environment variables that GenApi reads while it builds a node map.
#pragma once

#include <memory>
#include <mutex>
#include <string>

namespace ZelCameraApi::Internal {

// Points GENICAM_ROOT, GENICAM_LOG_CONFIG_V3_0 and GENICAM_CACHE_V3_0 at this installation and at
// the user's cache folder, which it creates, and restores them at its end; an empty value counts as
// unset. It also configures logging. No failing step fails the construction: results are logged.
//
// The process has only one environment, so only one of these objects exists at a time; other
// threads wait. Nothing synchronises the program's own use of the environment: meanwhile, no other
// thread may read or change it.
class Environment {
  public:
    Environment();
    ~Environment();
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

  private:
    const std::lock_guard<std::mutex> lock_;  // of all objects; a thread may hold it only once
    std::string oldRoot_;
    std::string oldLogConfig_;
    std::string oldCache_;
};

std::unique_ptr<Environment> FixEnvironment();

// The part of `path` before the last '/', ignoring slashes at its end. All of `path` if there is no
// such '/'.
std::string GetParentDirectory(const std::string& path);

// The folder of an executable's libraries: the executable's folder, with the first "bin" below the
// grandparent replaced by "lib".
std::string LibraryDirectoryOf(const std::string& executableDirectory);

}  // namespace ZelCameraApi::Internal
