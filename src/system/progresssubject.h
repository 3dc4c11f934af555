#pragma once

#include <ostream>
#include <string>
#include <vector>

class ProgressMonitor;

/// An object that reports its progress, and that can be asked to stop.
///
/// Monitors are not owned, and are told in the order in which they were added. They belong to one
/// object: a copy of a subject has none, and its flag is clear. Cancellation is cooperative: a long
/// loop tests `isCanceled()` at each step and leaves. Readers of TIFF and LSM files, the halving of
/// images and the rigid registration of `Fusion` do; filters, warpings and the processes of leaves run
/// to their end. Nothing is locked; subject and monitors are used from the thread that computes.
class ProgressSubject
{
public:
    ProgressSubject();
    ProgressSubject(const ProgressSubject& other);
    virtual ~ProgressSubject();

    /// Drops the monitors of this subject and clears its flag; takes nothing over. An object assigned
    /// to itself stays as it is.
    ProgressSubject& operator=(const ProgressSubject& other);

    /// Adds the monitor at the end, unless it is there already.
    virtual void addMonitor(ProgressMonitor& monitor);

    /// Silent if the monitor is not there.
    virtual void removeMonitor(ProgressMonitor& monitor);

    /// Sets the flag, which only `reset()` and assignment clear.
    virtual void cancel();

    virtual void notifyStarted(const std::string& text);
    virtual void notifyFinished(const std::string& text);
    virtual void notifyCanceled(const std::string& text);

    /// `current` is a position out of `total`, not an increment.
    virtual void notifyProgressed(int current, int total);
    virtual void notifyProgressed(const std::string& text);
    virtual void notifyWarning(const std::string& text);
    virtual void notifyError(const std::string& text);

    bool isCanceled() const { return canceled; }

    void reset() { canceled = false; }

    /// Writes `name` and the number of monitors, a line each.
    void print(std::ostream& stream, const std::string& name) const;

private:
    std::vector<ProgressMonitor*> monitors_;
    bool canceled = false;
};
