#include "image/files/childreader.h"

#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <limits>
#include <locale>
#include <system_error>

namespace {

[[noreturn]] void raiseSystemError(const char* what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

/// Bytes of address space that the process has; 0 when unknown.
std::size_t addressSpace()
{
    std::ifstream stream;
    stream.imbue(std::locale::classic());
    stream.open("/proc/self/statm");
    std::size_t pages = 0;
    stream >> pages;
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

void limitTo(__rlimit_resource resource, rlim_t most)
{
    rlimit limits = {};
    getrlimit(resource, &limits);
    limits.rlim_cur = std::min(most, limits.rlim_max);
    setrlimit(resource, &limits);
}

/// A child that crashes must not call this process's handlers, nor leave its memory on the disk.
void dieQuietly()
{
    for (const int number : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT, SIGXCPU, SIGPIPE, SIGTERM}) {
        std::signal(number, SIG_DFL);
    }
    limitTo(RLIMIT_CORE, 0);
}

} // namespace

void ChildReader::Sender::send(const void* bytes, std::size_t count) const
{
    const char* next = static_cast<const char*>(bytes);
    while (count > 0) {
        const ssize_t sent = ::write(descriptor_, next, count);
        if (sent < 0 && errno != EINTR) {
            _exit(1);
        }
        const std::size_t done = static_cast<std::size_t>(std::max<ssize_t>(sent, 0));
        next += done;
        count -= done;
    }
}

void ChildReader::Sender::limit(std::size_t bytes, unsigned int seconds)
{
    const std::size_t taken = addressSpace();
    if (taken > 0 && bytes < std::numeric_limits<std::size_t>::max() - taken) {
        limitTo(RLIMIT_AS, taken + bytes);
    }
    limitTo(RLIMIT_CPU, seconds);
}

ChildReader::ChildReader(const std::function<void(const Sender&)>& work,
                         std::chrono::milliseconds patience)
    : deadline_(Clock::now() + patience)
{
    int ends[2];
    if (::pipe(ends) != 0) {
        raiseSystemError("pipe");
    }
    child_ = ::fork();
    if (child_ < 0) {
        const int error = errno;
        ::close(ends[0]);
        ::close(ends[1]);
        errno = error;
        raiseSystemError("fork");
    }
    if (child_ == 0) {
        ::close(ends[0]);
        dieQuietly();
        try {
            work(Sender(ends[1]));
        } catch (...) {
            _exit(1); // the reader misses the rest, and tells
        }
        _exit(0);
    }
    ::close(ends[1]);
    descriptor_ = ends[0];
}

ChildReader::~ChildReader()
{
    ::close(descriptor_);
    ::kill(child_, SIGKILL);
    while (::waitpid(child_, nullptr, 0) < 0 && errno == EINTR) {
    }
}

/// False when the deadline passes first.
bool ChildReader::waitForBytes() const
{
    using std::chrono::milliseconds;
    while (!isLate()) {
        const auto left = std::chrono::ceil<milliseconds>(deadline_ - Clock::now()).count();
        constexpr long long longest = 1000000;
        pollfd end = {descriptor_, POLLIN, 0};
        if (::poll(&end, 1, static_cast<int>(std::clamp<long long>(left, 0, longest))) > 0) {
            return true;
        }
    }
    return false;
}

bool ChildReader::receive(void* bytes, std::size_t count) const
{
    char* next = static_cast<char*>(bytes);
    while (count > 0) {
        if (!waitForBytes()) {
            return false;
        }
        const ssize_t length = ::read(descriptor_, next, count);
        if (length == 0 || (length < 0 && errno != EINTR)) {
            return false;
        }
        const std::size_t done = static_cast<std::size_t>(std::max<ssize_t>(length, 0));
        next += done;
        count -= done;
    }
    return true;
}
