#pragma once

#include <map>
#include <string>

class Stack;

/// Which slice the stack notes as segmented last, as it follows from the edits that stand: the note
/// is written to stack files, so whatever edits are undone and redone, it must be what it was when
/// the same ones stood before.
class SegmentationNotes
{
public:
    explicit SegmentationNotes(Stack& stack)
        : stack_(stack)
    {}

    /// The number of a new edit. A note that others have made meanwhile stays below it.
    int begin();

    /// What the stack says now, if the edit that is being made changed it; else empty.
    std::string change() const;

    /// Edit `number` stands, with the note that it makes, if any; or it was undone.
    void stand(int number, const std::string& note);
    void undo(int number);

private:
    std::string current() const;

    Stack& stack_;
    std::map<int, std::string> notes_;
    int next_ = 0;
};
