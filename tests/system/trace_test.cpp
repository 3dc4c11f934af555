#include "system/trace.h"

#include <gtest/gtest.h>

TEST(Trace, IndentsByDepthAndCountsCallsAcrossReturns)
{
    const int before = Trace::depth;
    Trace::depth = 0;
    testing::internal::CaptureStdout();
    Trace::enterFunction("f");
    Trace::print("text");
    Trace::eval("x");
    Trace::leaveFunction("f");
    Trace::enterFunction("f");
    Trace::leaveFunction("f");
    OBSOLETE("a()", "b()");
    Trace::leaveFunction("g");
    Trace::print("below");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "ENTER> \033[1;33mf\033[0m [1]\n|   PRINT> \033[34;1mtext\033[0m\n|   EVAL> x = "
              "LEAVE> \033[33mf\033[0m\nENTER> \033[1;33mf\033[0m [2]\n"
              "LEAVE> \033[33mf\033[0m\n*** WARNING: Obsolete call to a()\n"
              "***   Replace by call to: b()\nLEAVE> \033[33mg\033[0m\n"
              "PRINT> \033[34;1mbelow\033[0m\n");
    EXPECT_EQ(Trace::depth, -1);
    Trace::depth = before;
}
