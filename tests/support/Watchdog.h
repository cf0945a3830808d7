#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <thread>

namespace kvx::test {

// Ends the test program with a message when the scope it guards has not been left within the
// given real time: a routine that hangs fails its test at once instead of stalling the suite.
class Watchdog {
public:
    explicit Watchdog(std::string what, std::chrono::seconds limit = std::chrono::seconds(60))
        : thread_([this, what = std::move(what), limit] {
              std::unique_lock lock(mutex_);
              if (!left_.wait_for(lock, limit, [this] { return done_; })) {
                  std::fprintf(stderr, "HANG: %s did not return within %lld s\n", what.c_str(),
                               static_cast<long long>(limit.count()));
                  std::_Exit(1);
              }
          })
    {
    }
    ~Watchdog()
    {
        {
            const std::lock_guard lock(mutex_);
            done_ = true;
        }
        left_.notify_one();
        thread_.join();
    }
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

private:
    std::mutex mutex_;
    std::condition_variable left_;
    bool done_ = false;
    std::thread thread_;
};

} // namespace kvx::test
