#pragma once

#include <string>

/// The machine, the user and the clock. No error: what can't be found out is empty, zero or said so
/// in the text.
class System
{
public:
    /// Memory in mebibytes.
    static unsigned long totalRam();
    static unsigned long freeRam();

    /// "<hostname unknown>" if the machine doesn't tell.
    static std::string hostName();

    /// Login name of the effective user.
    static std::string userName();

    /// Comment field of the user's account, where systems keep the full name.
    static std::string realUserName();

    static int processID();

    /// Local date, as "2024.03.09".
    static std::string today();

    /// Local time, as "07:05:00".
    static std::string time();
};
