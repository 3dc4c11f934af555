#pragma once

#include <string>

/// Which files the subcommands wrote themselves, and so may write over without being told: what a
/// user made or changed by hand is not lost by a name that was given twice.
namespace OwnFiles {

/// The stack, or table of leaves, is as a subcommand left it: it has the checksum that stands beside
/// it, in ".NAME.sdf.sha256". One that was saved by the desk, a host or an editor since is not.
bool isAsWritten(const std::string& path);

/// Notes the checksum of a file that a subcommand made or, with `own` false, that it is not all the
/// work of subcommands.
void noteWritten(const std::string& path, bool own);

/// A PNG or JPEG picture with the program's name in its text.
bool isPicture(const std::string& path);

/// A text file that begins with one of the program's headers.
bool isLandmarkTable(const std::string& path);
bool isMeasureTable(const std::string& path);
bool isRecord(const std::string& path);

/// A project file in the form in which the window and the subcommand write it.
bool isProject(const std::string& path);

/// Throws `UsageFailure` with the name of a file that is there and that `isOwn` does not know, unless
/// the user said `replace`.
void requireReplaceable(const std::string& path, bool (*isOwn)(const std::string&), bool replace);

/// The SHA-256 checksum of a file in hexadecimal digits; empty if it can't be read.
std::string checksum(const std::string& path);

/// What the pictures have under the key "Software".
extern const char* const program;

} // namespace OwnFiles
