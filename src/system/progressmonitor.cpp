#include "system/progressmonitor.h"

namespace {

/// Makes a subject the current one for the length of a notification, however that ends.
class CurrentSubject
{
public:
    CurrentSubject(ProgressSubject*& current, ProgressSubject& subject)
        : current_(current)
    {
        current_ = &subject;
    }

    ~CurrentSubject() { current_ = nullptr; }

    CurrentSubject(const CurrentSubject&) = delete;
    CurrentSubject& operator=(const CurrentSubject&) = delete;

private:
    ProgressSubject*& current_;
};

} // namespace

ProgressMonitor::ProgressMonitor() = default;

ProgressMonitor::~ProgressMonitor() = default;

void ProgressMonitor::subjectStarted(const std::string&) {}

void ProgressMonitor::subjectFinished(const std::string&) {}

void ProgressMonitor::subjectCanceled(const std::string&) {}

void ProgressMonitor::subjectProgressed(const std::string&) {}

void ProgressMonitor::subjectProgressed(int, int) {}

void ProgressMonitor::subjectWarning(const std::string&) {}

void ProgressMonitor::subjectError(const std::string&) {}

void ProgressMonitor::subjectStarted(ProgressSubject& subject, const std::string& text)
{
    const CurrentSubject guard(currentSubject_, subject);
    subjectStarted(text);
}

void ProgressMonitor::subjectFinished(ProgressSubject& subject, const std::string& text)
{
    const CurrentSubject guard(currentSubject_, subject);
    subjectFinished(text);
}

void ProgressMonitor::subjectCanceled(ProgressSubject& subject, const std::string& text)
{
    const CurrentSubject guard(currentSubject_, subject);
    subjectCanceled(text);
}

void ProgressMonitor::subjectProgressed(ProgressSubject& subject, const std::string& text)
{
    const CurrentSubject guard(currentSubject_, subject);
    subjectProgressed(text);
}

void ProgressMonitor::subjectProgressed(ProgressSubject& subject, int current, int total)
{
    const CurrentSubject guard(currentSubject_, subject);
    subjectProgressed(current, total);
}

void ProgressMonitor::subjectWarning(ProgressSubject& subject, const std::string& text)
{
    const CurrentSubject guard(currentSubject_, subject);
    subjectWarning(text);
}

void ProgressMonitor::subjectError(ProgressSubject& subject, const std::string& text)
{
    const CurrentSubject guard(currentSubject_, subject);
    subjectError(text);
}
