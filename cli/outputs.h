#pragma once

#include <string>

/// What the subcommands ask of the places that they write to, before they begin.

/// Makes the folder, with those above it, unless it is there. Throws `Failure` if that can't be done.
/// Whether a file of it can be written is told by `checkWritable`.
void prepareFolder(const std::string& folder);

/// Throws `Failure` if the file can't be created, or replaced where it stands.
void checkWritable(const std::string& filename);

/// Throws `UsageFailure` unless the file's name ends in a dot and `suffix`, so that a forgotten
/// argument does not cost a photograph.
void requireSuffix(const std::string& filename, const std::string& suffix);

/// Two decimals and a decimal point, whatever the locale.
std::string twoDecimals(double value);

/// The folder of a file, "." for the current one.
std::string folderOf(const std::string& filename);
