#include "system/system.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cctype>
#include <string>

namespace {

/// The text with each digit replaced by a "d".
std::string shape(std::string text)
{
    for (char& c : text) {
        if (std::isdigit(static_cast<unsigned char>(c))) {
            c = 'd';
        }
    }
    return text;
}

} // namespace

TEST(System, TellsAPlausibleMachine)
{
    EXPECT_GE(System::totalRam(), System::freeRam());
    EXPECT_EQ(System::totalRam(), static_cast<unsigned long>(sysconf(_SC_PHYS_PAGES)) *
                                          static_cast<unsigned long>(sysconf(_SC_PAGESIZE)) >>
                                      20);
    EXPECT_EQ(System::processID(), getpid());
    EXPECT_FALSE(System::hostName().empty());
    EXPECT_EQ(System::realUserName().find('\n'), std::string::npos);
}

TEST(System, WritesDateAndTimeWithLeadingZeros)
{
    EXPECT_EQ(shape(System::today()), "dddd.dd.dd");
    EXPECT_EQ(shape(System::time()), "dd:dd:dd");
}
