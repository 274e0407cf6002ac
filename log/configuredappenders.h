// The appenders that a property file makes.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace log4cpp {
class Appender;
}

// Configures log4cpp from property files, each in place of the one before. log4cpp makes new
// appenders each time and keeps those it made before, with their open files, until the program
// ends; this class deletes them. Appenders of the application are left alone.
// Thread-bound; other threads may log meanwhile.
class ConfiguredAppenders {
  public:
    // Throws log4cpp::ConfigureFailure. Then there is no appender of a file at all.
    void Configure(const std::string& propertyFile);

  private:
    struct Configured {
        log4cpp::Appender* appender;
        std::weak_ptr<void> life;  // the application may delete it as well
    };

    void Delete();

    std::vector<Configured> configured_;
};
