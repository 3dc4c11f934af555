#include "system/system.h"

#include <pwd.h>
#include <sys/sysinfo.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <ctime>

namespace {

// The structure shares its name with the function that fills it.
using MemoryInfo = struct sysinfo;

unsigned long mebibytes(unsigned long MemoryInfo::*count)
{
    MemoryInfo info;
    if (sysinfo(&info) != 0) {
        return 0;
    }
    return (info.*count * info.mem_unit) >> 20;
}

std::string accountEntry(char* passwd::*entry)
{
    const passwd* account = getpwuid(geteuid());
    return account && account->*entry ? account->*entry : "";
}

std::tm localTime()
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return local;
}

template <class... Numbers>
std::string formatted(const char* format, Numbers... numbers)
{
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), format, numbers...);
    return text.data();
}

} // namespace

unsigned long System::totalRam()
{
    return mebibytes(&MemoryInfo::totalram);
}

unsigned long System::freeRam()
{
    return mebibytes(&MemoryInfo::freeram);
}

std::string System::hostName()
{
    // One byte more than the longest name, since a name that just fits has no end mark.
    std::array<char, 257> name{};
    if (gethostname(name.data(), name.size() - 1) != 0) {
        return "<hostname unknown>";
    }
    return name.data();
}

std::string System::userName()
{
    return accountEntry(&passwd::pw_name);
}

std::string System::realUserName()
{
    return accountEntry(&passwd::pw_gecos);
}

int System::processID()
{
    return getpid();
}

std::string System::today()
{
    const std::tm now = localTime();
    return formatted("%4d.%02d.%02d", now.tm_year + 1900, now.tm_mon + 1, now.tm_mday);
}

std::string System::time()
{
    const std::tm now = localTime();
    return formatted("%02d:%02d:%02d", now.tm_hour, now.tm_min, now.tm_sec);
}
