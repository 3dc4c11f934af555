#pragma once

#include "stack/stackio.h"

#include <string>

class Stack;

/// Reads stack description files, those of older writers with their other keywords too.
///
/// What can't be used goes into the log as "file:line: reason", with the slice, model or item where
/// one is concerned. A message is fatal, and counted, if something of the file is lost by it: a
/// damaged statement, a number out of its range, a name that does not exist. It is not fatal if the
/// stack still holds all that the file says: an image that is missing or has another size, a keyword
/// whose values have no meaning here, an end without a line feed, since no statement tells that it is
/// the last one. Vertices far outside their image are out of range. A slice whose image is missing keeps the name of the file and
/// the size that the stack file tells.
///
///     StackReader reader;
///     if (!reader.read(stack, path)) {
///         report(reader.getLog());
///     }
class StackReader : public StackIO
{
public:
    /// Reads the file into `stack`, in place of all it held, its poses and defaults included; no
    /// event is sent. Returns whether the file could be read and nothing in it was fatal; else the
    /// stack holds what could be used, and the log tells what couldn't. A file that can't be
    /// opened, or that does not begin as a stack description file does, leaves the stack as it was.
    /// After 100 fatal errors the rest of the file is left out.
    ///
    /// Relative folders count from the folder of the description file; under the absolute policy the
    /// names of image files become absolute. The tile of a mosaic that is
    /// not found under its name is looked for in the folder of the images. Files of volumes are told
    /// from TIFF files by their suffix "vm".
    bool read(Stack& stack, const std::string& path);

private:
    friend class StackFileParser;

    void tell(const std::string& message);
    void fail(const std::string& message);
};
