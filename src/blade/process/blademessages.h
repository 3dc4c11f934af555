#pragma once

#include <functional>
#include <string>

/// The one way by which a process speaks to the user.
///
/// By default a message opens a modal box and waits for the click. Where no widgets can be shown,
/// because the program has no `QApplication`, it goes to the standard error stream. A program that
/// must never wait for a click replaces the way as a whole with `setHandler`.
///
/// Class data without a lock: for the thread of the window.
class BladeMessages
{
public:
    using Handler = std::function<void(const std::string&)>;

    /// Shows a text (UTF-8) and returns when the user has taken note of it.
    static void show(const std::string& text);

    /// From now on messages go to `handler`; an empty one brings the default back. Returns the
    /// former handler.
    static Handler setHandler(Handler handler);
};
