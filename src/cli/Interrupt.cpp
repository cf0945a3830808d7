#include "cli/Interrupt.h"

#include "log/LogFile.h"
#include "log/LogFormat.h"

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kvx::cli {

namespace {

volatile std::sig_atomic_t presses = 0;
// Copied before the handler is installed: a signal handler may not touch a std::string.
char recordingPath[4096] = {};

// Only async-signal-safe calls from here to the end of onInterrupt.
void say(const char* text)
{
    std::size_t length = 0;
    while (text[length])
        ++length;
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text, length);
}

// n as decimal text into text (at least 21 bytes), ended by a zero; returns its length.
std::size_t decimal(long n, char* text)
{
    char reversed[21];
    std::size_t length = 0;
    do {
        reversed[length++] = static_cast<char>('0' + n % 10);
        n /= 10;
    } while (n > 0);
    for (std::size_t i = 0; i < length; ++i)
        text[i] = reversed[length - 1 - i];
    text[length] = 0;
    return length;
}

// The file is finished as the recorder would finish it, with the count of frame records that
// reached the disk: the recorder's last write may still sit in its buffer, which dies with kvx.
void finishRecordingAtOnce()
{
    const int fd = ::open(recordingPath, O_WRONLY);
    if (fd < 0) {
        say("kvx: stopped at once; the recording could not be reopened to write its frame count\n");
        return;
    }
    long frames = 0;
    struct stat status {};
    const long firstFrame = (log::kFirstFrameRecord - 1) * log::kRecordSize;
    if (::fstat(fd, &status) == 0 && status.st_size > firstFrame)
        frames = (static_cast<long>(status.st_size) - firstFrame + log::kRecordSize - 1) / log::kRecordSize;
    char record[2 + 21];
    const std::size_t length = decimal(frames, record + 2);
    record[0] = static_cast<char>(length);
    record[1] = 0;
    const bool written = ::pwrite(fd, record, 2 + length, (log::kFrameCountRecord - 1) * log::kRecordSize) ==
                         static_cast<ssize_t>(2 + length);
    ::close(fd);
    say(written ? "kvx: stopped at once; " : "kvx: stopped at once; writing the frame count failed; ");
    say(record + 2);
    say(" frames recorded in ");
    say(recordingPath);
    say("\n");
}

void onInterrupt(int)
{
    const bool first = presses == 0;
    presses = 1;
    if (first) {
        say("stopping... (Ctrl+C again to quit at once)\n");
        return;
    }
    if (recordingPath[0])
        finishRecordingAtOnce();
    else
        say("kvx: stopped at once\n");
    ::_exit(130);
}

} // namespace

void CatchInterrupt(const std::string& logPath)
{
    // A path too long to keep is not finished at once rather than a shorter path written to.
    const bool fits = logPath.size() < sizeof recordingPath;
    const std::size_t length = fits ? logPath.size() : 0;
    logPath.copy(recordingPath, length);
    recordingPath[length] = 0;
    struct sigaction action {};
    action.sa_handler = onInterrupt;
    sigemptyset(&action.sa_mask);
    // Waits in the link resume after the first press; the loop notices it at its next request.
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGINT, &action, nullptr);
}

bool InterruptRequested()
{
    return presses > 0;
}

} // namespace kvx::cli
