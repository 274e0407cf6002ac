// What the program writes to the system log.
#ifndef TESTS_LIBRARY_SYSTEMLOG_H
#define TESTS_LIBRARY_SYSTEMLOG_H

#include <string>
#include <syslog.h>

#include <gtest/gtest.h>

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

#endif  // TESTS_LIBRARY_SYSTEMLOG_H
