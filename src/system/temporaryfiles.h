#pragma once

#include <string>

/// The temporary files of this process and of those before it: names, locks, and what becomes of them
/// when a process is killed. A temporary file is called ".crenara-PID-NUMBER.part"; its process holds
/// a lock on it, which the system opens when the process ends, however it ends.
namespace TemporaryFiles {

/// Creates an empty file of this mode, less the process's mask, in the folder (with a final "/"), and
/// gives the locked descriptor; -1, with `errno`, if that can't be done. The first one in a folder
/// removes what killed processes left there.
int create(const std::string& folder, unsigned mode, std::string& name);

/// Removes the file, if `remove` says so, and opens the lock.
void release(const std::string& name, int lock, bool remove);

/// INT and TERM remove the files that are not released before they take their way.
void removeAtSignals();

} // namespace TemporaryFiles
