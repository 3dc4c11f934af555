#pragma once

#include "interface/lmxeventclient.h"

#include <functional>
#include <string>

class QProgressBar;

/// Base of every leaf process: a short-lived object that is made on the stack, given its
/// parameters, run, and destroyed. What it finds is left in the models of the open stack.
///
/// It is an event client like any other while it lives, and reacts to no event.
class AbstractBlade : public LMXEventClient
{
public:
    using ProgressListener = std::function<void(int)>;

    AbstractBlade() = default;
    AbstractBlade(const AbstractBlade&) = delete;
    AbstractBlade& operator=(const AbstractBlade&) = delete;

    /// Works on all slices of the stack.
    virtual void run() = 0;

    /// Works on one slice; what the text returned says is up to the process.
    virtual std::string process(int slice) = 0;

    /// Deletes the models of an earlier run and creates those that this process fills.
    virtual void createModels() = 0;

    /// The bar is not owned; without one no progress is shown.
    void setProgressBar(QProgressBar& bar) { progressBar = &bar; }

    /// Beside the bar, for programs without one: called with the per cent done, 1 to 100, and with
    /// -1 where the bar is reset.
    void setProgressListener(ProgressListener listener);

protected:
    void resetProgress();

    /// To be called before slice `slice` of `slices` is worked on; counts it as done.
    void showProgress(int slice, int slices);

    /// Shows a text to the user (see `BladeMessages`) and returns when it was taken note of.
    static void tell(const std::string& text);

    QProgressBar* progressBar = nullptr;

private:
    ProgressListener progressListener_;
};
