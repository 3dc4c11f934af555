#include "system/system.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <string>

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
    std::string text = System::today() + " " + System::time();
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; }, '0');
    EXPECT_EQ(text, "0000.00.00 00:00:00");
}
