#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <functional>

/// Reads a file through a library that a damaged file can bring to crash, to run for ever, to leak or
/// to ask for any amount of memory: the library works in a child process, which sends what it reads
/// through a pipe. Whatever becomes of the child, this process goes on.
///
/// The child is a fork without a program of its own: it must not touch the screen or other threads'
/// data, and ends without cleaning up. A lock that another thread held at the fork stays locked in it
/// for ever, so that what it sends is waited for up to a deadline only.
class ChildReader
{
public:
    /// The child's end of the pipe.
    class Sender
    {
    public:
        explicit Sender(int descriptor)
            : descriptor_(descriptor)
        {}

        /// Sends the bytes; ends the child when nobody listens any more.
        void send(const void* bytes, std::size_t count) const;

        /// Bounds what the child may take from now on: memory beyond what it has, and time of its
        /// processor in all.
        static void limit(std::size_t bytes, unsigned int seconds);

    private:
        int descriptor_;
    };

    /// Starts `work` in a child, which has `patience` to send all. Raises `std::system_error` when the
    /// system has none to give.
    ChildReader(const std::function<void(const Sender&)>& work, std::chrono::milliseconds patience);

    /// Ends the child if it still works.
    ~ChildReader();
    ChildReader(const ChildReader&) = delete;
    ChildReader& operator=(const ChildReader&) = delete;

    /// Gives the child this time more.
    void extend(std::chrono::milliseconds patience) { deadline_ += patience; }

    /// Takes the next bytes; false when the child ended without sending so many, or its time is up.
    bool receive(void* bytes, std::size_t count) const;

    /// Whether its time is up.
    bool isLate() const { return Clock::now() >= deadline_; }

private:
    using Clock = std::chrono::steady_clock;

    bool waitForBytes() const;

    int descriptor_ = -1;
    pid_t child_ = -1;
    Clock::time_point deadline_;
};
