#pragma once

#include <string>
#include <utility>
#include <vector>

/// What a run of the command left behind.
struct CommandResult
{
    int status; ///< the exit status; 128 and the signal's number if it was killed
    std::string out;
    std::string err;

    bool says(const std::string& text) const { return err.find(text) != std::string::npos; }
};

using Words = std::vector<std::string>;
using Environment = std::vector<std::pair<std::string, std::string>>;

/// Runs the command with these arguments, without a display. `fileLimit` bounds the bytes of the
/// files that it writes, as a full disk does; 0 sets no bound.
CommandResult
crenara(const Words& arguments, const Environment& environment = {}, long fileLimit = 0);

/// The same, expected to end well.
CommandResult runs(const Words& arguments, const Environment& environment = {});

/// The same, expected to end with a status other than 0 and to tell this.
CommandResult
fails(const Words& arguments, const std::string& text, int status = 1, long fileLimit = 0);
