#include "system/exception.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

std::string printed(const Exception& exception)
{
    std::ostringstream stream;
    stream << exception;
    return stream.str();
}

} // namespace

TEST(Exception, PrintsTheTrailWithTheFirstCallUnindentedAndLaterOnesIndented)
{
    SizeError error;
    error.setWhat("too long");
    error.addWhere("a()");
    error.addCall("b()");
    EXPECT_EQ(printed(error), "Exception raised:\n  What: too long\n  Where: <unknown>\n"
                              "  Calls: [0] <unknown>\n[1] a()\n  [2] b()\n");
}

TEST(Exception, FileErrorsAreCaughtByTheirBaseAndNameTheirFile)
{
    try {
        raiseFile<FileFormatError>("void f()", "no table", "a b.tif");
    } catch (FileError& error) {
        error.addCall("void g()");
        EXPECT_EQ(printed(error), "Exception raised:\n  What: no table\n  Where: void f()\n"
                                  "  Calls: [0] void f()\n[1] void g()\n  Filename: a b.tif\n");
        return;
    }
    FAIL() << "no error";
}

TEST(Exception, EachClassHasItsOwnDefaultText)
{
    EXPECT_EQ(MathError().getWhat(), "Undocumented mathematical error");
    EXPECT_EQ(FileReadError().getWhat(), "Undocumented file read error");
    EXPECT_EQ(RangeError().getWhat(), "Undocumented range error");
    EXPECT_THROW(throw RangeError(), ValueError);
}
