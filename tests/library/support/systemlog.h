// What the program writes to the system log, and to categories of log4cpp.
#pragma once

#include <sstream>
#include <string>
#include <syslog.h>

#include <gtest/gtest.h>
#include <log4cpp/Category.hh>
#include <log4cpp/OstreamAppender.hh>
#include <log4cpp/PatternLayout.hh>

// Catches the lines at warning priority while it lives. They still go to the system log as well.
class SystemLog {
  public:
    SystemLog() {
        openlog("log", LOG_PERROR, LOG_USER);
        setlogmask(LOG_MASK(LOG_WARNING));
        testing::internal::CaptureStderr();
    }
    ~SystemLog() {
        if (!taken_) Take();
        setlogmask(LOG_UPTO(LOG_DEBUG));
        closelog();
        openlog(nullptr, 0, LOG_USER);
    }
    SystemLog(const SystemLog&) = delete;
    SystemLog& operator=(const SystemLog&) = delete;

    // Each line begins with "log: ". Once.
    std::string Take() {
        taken_ = true;
        return testing::internal::GetCapturedStderr();
    }

  private:
    bool taken_ = false;
};

// What a category logs while it lives, of every priority, in the form of a conversion pattern.
class Messages {
  public:
    Messages(const std::string& category, const std::string& pattern)
        : category_(log4cpp::Category::getInstance(category)) {
        auto* const appender = new log4cpp::OstreamAppender("messages", &text_);
        auto* const layout = new log4cpp::PatternLayout;
        layout->setConversionPattern(pattern);
        appender->setLayout(layout);
        category_.setPriority(log4cpp::Priority::DEBUG);
        category_.addAppender(appender);  // takes it over
    }
    ~Messages() { category_.removeAllAppenders(); }
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;

    std::string Text() const { return text_.str(); }

  private:
    std::ostringstream text_;
    log4cpp::Category& category_;
};
