#pragma once

#include <map>
#include <string>

/// Console trace for debugging: marked lines on the standard output, indented by call depth.
/// Not locked.
class Trace
{
public:
    /// Announces a call with its count so far, and indents what follows.
    static void enterFunction(const std::string& name);

    /// Undoes the indent of the matching `enterFunction`.
    static void leaveFunction(const std::string& name);

    static void print(const std::string& text);

    /// Leaves the line open: the caller writes the value behind it.
    static void eval(const std::string& name);

    /// Number of functions entered and not left; negative if more were left than entered.
    static int depth;

    /// How often each function was entered. A function, since a plain static would be set up in each
    /// library that holds this code.
    static std::map<std::string, int>& countMap();
};

/// Writes the indent of the current depth.
void traceIndent();

/// Warns on the standard output that the call `old` has given way to `replacement`.
void OBSOLETE(const std::string& old, const std::string& replacement);
