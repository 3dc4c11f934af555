#include "system/progresssubject.h"

#include "system/progressmonitor.h"

#include <algorithm>

ProgressSubject::ProgressSubject() = default;

ProgressSubject::ProgressSubject(const ProgressSubject&) {}

ProgressSubject::~ProgressSubject() = default;

ProgressSubject& ProgressSubject::operator=(const ProgressSubject& other)
{
    if (this != &other) {
        monitors_.clear();
        canceled = false;
    }
    return *this;
}

void ProgressSubject::addMonitor(ProgressMonitor& monitor)
{
    if (std::find(monitors_.begin(), monitors_.end(), &monitor) == monitors_.end()) {
        monitors_.push_back(&monitor);
    }
}

void ProgressSubject::removeMonitor(ProgressMonitor& monitor)
{
    monitors_.erase(std::remove(monitors_.begin(), monitors_.end(), &monitor), monitors_.end());
}

void ProgressSubject::cancel()
{
    canceled = true;
}

// The loops below walk by index, since a monitor may add others while it is told.

void ProgressSubject::notifyStarted(const std::string& text)
{
    for (std::size_t i = 0; i < monitors_.size(); ++i) {
        monitors_[i]->subjectStarted(*this, text);
    }
}

void ProgressSubject::notifyFinished(const std::string& text)
{
    for (std::size_t i = 0; i < monitors_.size(); ++i) {
        monitors_[i]->subjectFinished(*this, text);
    }
}

void ProgressSubject::notifyCanceled(const std::string& text)
{
    for (std::size_t i = 0; i < monitors_.size(); ++i) {
        monitors_[i]->subjectCanceled(*this, text);
    }
}

void ProgressSubject::notifyProgressed(int current, int total)
{
    for (std::size_t i = 0; i < monitors_.size(); ++i) {
        monitors_[i]->subjectProgressed(*this, current, total);
    }
}

void ProgressSubject::notifyProgressed(const std::string& text)
{
    for (std::size_t i = 0; i < monitors_.size(); ++i) {
        monitors_[i]->subjectProgressed(*this, text);
    }
}

void ProgressSubject::notifyWarning(const std::string& text)
{
    for (std::size_t i = 0; i < monitors_.size(); ++i) {
        monitors_[i]->subjectWarning(*this, text);
    }
}

void ProgressSubject::notifyError(const std::string& text)
{
    for (std::size_t i = 0; i < monitors_.size(); ++i) {
        monitors_[i]->subjectError(*this, text);
    }
}

void ProgressSubject::print(std::ostream& stream, const std::string& name) const
{
    stream << name << "\nMonitors: " << monitors_.size() << "\n";
}
