#include "host/editing/segmentationnotes.h"

#include "stack/stack.h"

int SegmentationNotes::begin()
{
    const std::string& present = stack_.getLastSegmentedSlice();
    if (notes_.empty() || present != current()) {
        notes_[next_++] = present;
    }
    return next_++;
}

std::string SegmentationNotes::change() const
{
    const std::string& present = stack_.getLastSegmentedSlice();
    return present == current() ? std::string() : present;
}

void SegmentationNotes::stand(int number, const std::string& note)
{
    if (!note.empty()) {
        notes_[number] = note;
    }
    stack_.setLastSegmentedSlice(current());
}

void SegmentationNotes::undo(int number)
{
    notes_.erase(number);
    stack_.setLastSegmentedSlice(current());
}

std::string SegmentationNotes::current() const
{
    return notes_.empty() ? std::string() : notes_.rbegin()->second;
}
