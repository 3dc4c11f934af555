#pragma once

#include <string>

/// What a subcommand says on the standard error stream: messages, one a line, each with the name of
/// the program in front, and the progress of its stages where that stream is a terminal.
///
/// While it lives the processes' messages go through it, so that none waits for a click.
class Report
{
public:
    Report();
    ~Report();
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;

    /// Shows no progress from now on.
    void setQuiet() { showsProgress_ = false; }

    /// `done` of `total` slices are through the stage.
    void progress(const std::string& stage, int done, int total);

    void note(const std::string& text);

    /// Something that could not be done: the exit status will be 1.
    void fault(const std::string& text);

    bool hasFaults() const { return hasFaults_; }

    /// 0, or 1 after a fault.
    int exitStatus() const { return hasFaults_ ? 1 : 0; }

private:
    void clearProgress();

    bool showsProgress_;
    bool lineOpen_ = false;
    bool hasFaults_ = false;
};
