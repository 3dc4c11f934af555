#include "system/system.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <regex>
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
    const std::string text = System::today() + " " + System::time();
    EXPECT_TRUE(std::regex_match(text, std::regex(R"(\d{4}\.\d\d\.\d\d \d\d:\d\d:\d\d)"))) << text;
}
