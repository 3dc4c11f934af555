#pragma once

#include <sys/resource.h>

#include <csignal>

/// Files of this process grow no further than `bytes`: what a full disk does to a writer.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
        : previousHandler_(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &previous_);
        rlimit limit = previous_;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }

    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &previous_);
        std::signal(SIGXFSZ, previousHandler_);
    }

    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit previous_;
    void (*previousHandler_)(int);
};
