#include "system/progressproxy.h"

void ProgressProxy::subjectStarted(const std::string& text)
{
    notifyStarted(text);
}

void ProgressProxy::subjectFinished(const std::string& text)
{
    notifyFinished(text);
}

void ProgressProxy::subjectCanceled(const std::string& text)
{
    notifyCanceled(text);
}

void ProgressProxy::subjectProgressed(const std::string& text)
{
    notifyProgressed(text);
}

void ProgressProxy::subjectProgressed(int current, int total)
{
    notifyProgressed(current, total);
}

void ProgressProxy::cancel()
{
    if (hasSubject()) {
        currentSubject()->cancel();
    }
    ProgressSubject::cancel();
}
