#pragma once

#include "system/progressmonitor.h"

#include <functional>
#include <string>

/// Writes down what a subject tells.
class Listener : public ProgressMonitor
{
public:
    using ProgressMonitor::subjectProgressed;

    void subjectStarted(const std::string& text) override { note("started " + text); }

    void subjectFinished(const std::string& text) override { note("finished " + text); }

    void subjectCanceled(const std::string& text) override { note("canceled " + text); }

    void subjectProgressed(const std::string& text) override { note("progressed " + text); }

    void subjectWarning(const std::string& text) override { note("warning " + text); }

    void subjectError(const std::string& text) override { note("error " + text); }

    void subjectProgressed(int current, int total) override
    {
        note(std::to_string(current) + "/" + std::to_string(total));
    }

    std::string log;                    ///< all messages, a semicolon behind each
    std::string last;                   ///< the message that was told last
    std::function<void()> then = [] {}; ///< called with each message

private:
    void note(const std::string& text)
    {
        last = text;
        log += text + ";";
        then();
    }
};
