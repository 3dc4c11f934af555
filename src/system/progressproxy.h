#pragma once

#include "system/progressmonitor.h"
#include "system/progresssubject.h"

/// Listens to one subject and passes on what it hears to its own monitors, so that a computation
/// made of others reports as one. Warnings and errors are not passed on.
class ProgressProxy : public ProgressMonitor, public ProgressSubject
{
public:
    using ProgressMonitor::subjectCanceled;
    using ProgressMonitor::subjectFinished;
    using ProgressMonitor::subjectProgressed;
    using ProgressMonitor::subjectStarted;

    void subjectStarted(const std::string& text) override;
    void subjectFinished(const std::string& text) override;
    void subjectCanceled(const std::string& text) override;
    void subjectProgressed(const std::string& text) override;
    void subjectProgressed(int current, int total) override;

    /// Cancels the subject that is being heard, if there is one, and then this proxy.
    void cancel() override;
};
