#pragma once

#include <csignal>
#include <sys/resource.h>

namespace kvx::test {

// No file this process (or a program it starts meanwhile) writes may grow past the given size, as
// on a full disk: a write beyond it fails. The signal the system sends for such a write is
// ignored for as long, so the write's failure is what the program sees.
class FileSizeLimit {
public:
    explicit FileSizeLimit(long bytes)
    {
        getrlimit(RLIMIT_FSIZE, &kept_);
        rlimit limit = kept_;
        limit.rlim_cur = static_cast<rlim_t>(bytes);
        setrlimit(RLIMIT_FSIZE, &limit);
        keptHandler_ = std::signal(SIGXFSZ, SIG_IGN);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &kept_);
        std::signal(SIGXFSZ, keptHandler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit kept_{};
    void (*keptHandler_)(int) = nullptr;
};

} // namespace kvx::test
