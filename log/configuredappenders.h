// The appenders that a property file makes.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace log4cpp {
class Appender;
}

// Configures log4cpp from property files; each configuration replaces the one before. log4cpp makes
// new appenders each time and keeps the old ones, with their open files, until the program ends.
// This class deletes the old ones, but not appenders of the application.
// Thread-bound; other threads may log meanwhile.
class ConfiguredAppenders {
  public:
    // Throws log4cpp::ConfigureFailure. Then no appender of any file exists.
    void Configure(const std::string& propertyFile);

  private:
    struct Configured {
        log4cpp::Appender* appender;
        std::weak_ptr<void> life;  // the application may delete the appender, too
    };

    void Delete();

    std::vector<Configured> configured_;
};
