#pragma once

#include "stack/stackio.h"

#include <string>

class Stack;

/// Reads stack description files, those of older writers with their other keywords too.
///
/// What can't be used goes into the log as "file:line: reason", with the slice where one is
/// concerned. A message is fatal, and counted, if something of the file is lost by it: a damaged
/// statement, a number out of its range, a name that does not exist. It is not fatal if the stack
/// still holds all that the file says: an image that is missing or has another size, a keyword
/// whose values have no meaning here. A slice whose image is missing keeps the name of the file and
/// the size that the stack file tells.
///
///     StackReader reader;
///     if (!reader.read(stack, path)) {
///         report(reader.getLog());
///     }
class StackReader : public StackIO
{
public:
    /// Reads the file into `stack`, in place of all it held, its poses and defaults included.
    /// Returns whether the file could be read and nothing in it was fatal; else the stack holds
    /// what could be used, and the log tells what couldn't. A file that can't be opened leaves the
    /// stack as it was.
    ///
    /// Relative folders count from the folder of the description file. Under the absolute policy
    /// the names of image files become absolute.
    bool read(Stack& stack, const std::string& path);
};
