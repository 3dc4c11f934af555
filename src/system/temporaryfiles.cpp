#include "system/temporaryfiles.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <set>

namespace fs = std::filesystem;

namespace {

const char* const prefix = ".crenara-";
const char* const suffix = ".part";

/// The names that a signal handler removes, which may neither allocate nor wait. More files at one
/// time than there are places are left to the next process.
struct Place
{
    std::atomic<bool> taken;
    std::atomic<bool> ready;
    char name[PATH_MAX];
};

std::array<Place, 16> places;
pid_t placesOwner = 0; // a forked child must not remove its parent's files

void enter(const std::string& name)
{
    if (name.size() >= PATH_MAX) {
        return;
    }
    for (Place& place : places) {
        if (!place.taken.exchange(true)) {
            std::strcpy(place.name, name.c_str());
            place.ready = true;
            return;
        }
    }
}

void leave(const std::string& name)
{
    for (Place& place : places) {
        if (place.ready && name == place.name) {
            place.ready = false;
            place.taken = false;
            return;
        }
    }
}

void removeAndEnd(int number)
{
    if (getpid() == placesOwner) {
        for (const Place& place : places) {
            if (place.ready) {
                unlink(place.name);
            }
        }
    }
    std::signal(number, SIG_DFL);
    std::raise(number);
}

/// The process in the name of a temporary file; 0 for any other name.
long processOf(const std::string& name)
{
    const std::string begin = prefix;
    const std::string end = suffix;
    if (name.size() <= begin.size() + end.size() || name.compare(0, begin.size(), begin) != 0 ||
        name.compare(name.size() - end.size(), end.size(), end) != 0) {
        return 0;
    }
    return std::strtol(name.c_str() + begin.size(), nullptr, 10);
}

/// No process of this system has the number, but perhaps this very one, and none of any system that
/// shares the folder holds the lock.
bool isLeftOver(const fs::path& file)
{
    const long process = processOf(file.filename().string());
    const bool gone =
        process > 0 &&
        (process == getpid() || (kill(static_cast<pid_t>(process), 0) != 0 && errno == ESRCH));
    if (!gone) {
        return false;
    }
    const int descriptor = open(file.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return false;
    }
    const bool open = flock(descriptor, LOCK_EX | LOCK_NB) == 0;
    close(descriptor);
    return open;
}

void removeLeftOvers(const std::string& folder)
{
    static std::mutex mutex;
    static std::set<std::string> seen;
    const std::lock_guard<std::mutex> guard(mutex);
    if (!seen.insert(folder).second) {
        return;
    }
    std::error_code error;
    for (fs::directory_iterator entry(folder.empty() ? "." : folder, error), end;
         !error && entry != end; entry.increment(error)) {
        if (isLeftOver(entry->path())) {
            unlink(entry->path().c_str());
        }
    }
}

/// The name still stands for the file of the descriptor.
bool isNamed(int descriptor, const std::string& name)
{
    struct stat own = {};
    struct stat named = {};
    return fstat(descriptor, &own) == 0 && stat(name.c_str(), &named) == 0 &&
           own.st_ino == named.st_ino && own.st_dev == named.st_dev;
}

} // namespace

int TemporaryFiles::create(const std::string& folder, unsigned mode, std::string& name)
{
    removeLeftOvers(folder);
    const std::string stem = folder + prefix + std::to_string(getpid()) + "-";
    for (int attempt = 0;; ++attempt) {
        name = stem + std::to_string(attempt) + suffix;
        const int descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (descriptor < 0 && errno != EEXIST) {
            return -1;
        }
        if (descriptor < 0) {
            continue;
        }
        // Where the file system knows no locks, no process takes one for left over either.
        flock(descriptor, LOCK_EX | LOCK_NB);
        if (isNamed(descriptor, name)) {
            enter(name);
            return descriptor;
        }
        close(descriptor);
    }
}

void TemporaryFiles::release(const std::string& name, int lock, bool remove)
{
    if (remove) {
        unlink(name.c_str());
    }
    leave(name);
    close(lock);
}

void TemporaryFiles::removeAtSignals()
{
    placesOwner = getpid();
    for (const int number : {SIGINT, SIGTERM}) {
        struct sigaction former = {};
        // A program that was told to ignore a signal (nohup) goes on to.
        if (sigaction(number, nullptr, &former) == 0 && former.sa_handler != SIG_IGN) {
            struct sigaction action = {};
            action.sa_handler = removeAndEnd;
            sigaction(number, &action, nullptr);
        }
    }
}
