#include "blade/process/abstractblade.h"

#include "blade/process/blademessages.h"

#include <QProgressBar>

void AbstractBlade::setProgressListener(ProgressListener listener)
{
    progressListener_ = std::move(listener);
}

void AbstractBlade::resetProgress()
{
    if (progressBar) {
        progressBar->reset();
    }
    if (progressListener_) {
        progressListener_(-1);
    }
}

void AbstractBlade::showProgress(int slice, int slices)
{
    const int percent = static_cast<int>((slice + 1) / static_cast<float>(slices) * 100.0f);
    if (progressBar) {
        progressBar->setValue(percent);
    }
    if (progressListener_) {
        progressListener_(percent);
    }
}

void AbstractBlade::tell(const std::string& text)
{
    BladeMessages::show(text);
}
