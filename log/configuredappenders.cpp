#include "log/configuredappenders.h"

#include <fstream>
#include <map>

#include <log4cpp/Appender.hh>
#include <log4cpp/Category.hh>
#include <log4cpp/Filter.hh>
#include <log4cpp/PropertyConfigurator.hh>

namespace {

using AppendersByName = std::map<std::string, log4cpp::Appender*>;

// The appenders that are registered under the names for which the file may define one: log4cpp does
// not list its appenders, but finds them by name. Names without an appender do no harm.
AppendersByName FindAppenders(const std::string& propertyFile) {
    const std::string key = "appender.";
    AppendersByName appenders;
    std::ifstream file(propertyFile);
    for (std::string line; std::getline(file, line);) {
        const size_t found = line.find(key);
        if (found == std::string::npos) continue;
        const size_t begin = found + key.size();
        std::string name = line.substr(begin, line.find_first_of(".=", begin) - begin);
        name.erase(name.find_last_not_of(" \t") + 1);
        appenders[name] = log4cpp::Appender::getAppender(name);
    }
    return appenders;
}

// Lets everything pass. An appender deletes its filter, so this one lives as long as the appender.
class LifeOfAppender final : public log4cpp::Filter {
  public:
    std::weak_ptr<void> Watch() const { return life_; }

  protected:
    Decision _decide(const log4cpp::LoggingEvent& /*event*/) override { return NEUTRAL; }

  private:
    std::shared_ptr<void> life_ = std::make_shared<char>();
};

void RemoveFromCategories(log4cpp::Appender* appender) {
    const std::unique_ptr<std::vector<log4cpp::Category*>> categories(
        log4cpp::Category::getCurrentCategories());
    for (log4cpp::Category* const category : *categories)
        category->removeAppender(appender);
}

}  // namespace

void ConfiguredAppenders::Configure(const std::string& propertyFile) {
    Delete();
    const AppendersByName before = FindAppenders(propertyFile);
    const auto take = [&] {
        for (const auto& [name, former] : before) {
            log4cpp::Appender* const appender = log4cpp::Appender::getAppender(name);
            if (appender == nullptr || appender == former) continue;
            auto life = std::make_unique<LifeOfAppender>();
            configured_.push_back({appender, life->Watch()});
            appender->setFilter(life.release());
        }
    };
    try {
        log4cpp::PropertyConfigurator::configure(propertyFile);
    } catch (const log4cpp::ConfigureFailure&) {
        take();
        Delete();
        throw;
    }
    take();
}

// If the application added one of the appenders to a category, the category must not keep it; if
// the category owns the appender, it deletes it.
void ConfiguredAppenders::Delete() {
    for (const Configured& each : configured_) {
        if (each.life.expired()) continue;
        RemoveFromCategories(each.appender);
        if (!each.life.expired()) delete each.appender;
    }
    configured_.clear();
}
