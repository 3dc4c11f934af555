#include "support/errors.h"
#include "system/stringtools.h"

#include <limits>
#include <random>
#include <sstream>

TEST(StringTools, IntegersSurviveTheirText)
{
    std::mt19937 random(3);
    for (int round = 0; round < 1000; ++round) {
        const int value = static_cast<int>(random());
        EXPECT_EQ(StringTools::toInt(StringTools::toString(value)), value);
    }
    EXPECT_EQ(StringTools::toInt("-2147483648"), std::numeric_limits<int>::min());
    EXPECT_EQ(StringTools::toString(7, 3, '0'), "007");
    EXPECT_EQ(StringTools::toString(-12345, 3, '0'), "-12345");
}

TEST(StringTools, ConversionsSayWhatIsWrong)
{
    const std::string inInt = "int StringTools::toInt(const string&)";
    const std::string inFloat = "float StringTools::toFloat(const string&)";
    const std::string invalid = ": invalid string argument for ";
    EXPECT_RAISES(TypeError, inInt, "\"12a\"" + invalid + "int conversion [error after position 2]",
                  StringTools::toInt("12a"));
    EXPECT_RAISES(TypeError, inInt, "\"\"" + invalid + "int conversion [stoi]",
                  StringTools::toInt(""));
    EXPECT_RAISES(RangeError, inInt, "\"2147483648\": range error in int conversion [stoi]",
                  StringTools::toInt("2147483648"));
    EXPECT_RAISES(TypeError, inFloat,
                  "\"1,5\"" + invalid + "float conversion [error after position 1]",
                  StringTools::toFloat("1,5"));
    EXPECT_RAISES(RangeError, inFloat, "\"1e99\": range error in float conversion [stof]",
                  StringTools::toFloat("1e99"));
}

TEST(StringTools, NumbersAreThoseOfTheStandardLibrary)
{
    const char* const texts[] = {"1",    " 2",   "+3",  "-4.5", "1e3", "0x1p3", "nan",
                                 "-inf", "1e99", "1 ",  "",     "-",   ".5",    "5.",
                                 "1e",   "0x",   "1.5", "08",   "٣",   "1e-50", "99999999999"};
    const auto whole = [](const std::string& text, auto convert) {
        try {
            std::size_t end = 0;
            convert(text, &end);
            return end == text.size();
        } catch (const std::exception&) {
            return false;
        }
    };
    for (const std::string text : texts) {
        EXPECT_EQ(StringTools::isCompatible<int>(text),
                  whole(text, [](auto& t, auto* e) { std::stoi(t, e); }))
            << text;
        EXPECT_EQ(StringTools::isCompatible<float>(text),
                  whole(text, [](auto& t, auto* e) { std::stof(t, e); }))
            << text;
    }
}

TEST(StringTools, TokensAreSeparatedByAnyOfTheDelimiters)
{
    using Texts = std::vector<std::string>;
    EXPECT_EQ(StringTools::tokenize(",;a, b;;c", ",;"), (Texts{"a", " b", "c"}));
    EXPECT_EQ(StringTools::tokenize("", ","), Texts());
    EXPECT_EQ(StringTools::tokenize("a,b", ""), Texts{"a,b"});
    EXPECT_EQ(StringTools::integerListParser("1,3-5", ","), (Texts{"1", "3", "4", "5"}));
    EXPECT_EQ(StringTools::integerListParser("x 5-3 2147483646-2147483647", " "),
              (Texts{"x", "2147483646", "2147483647"}));
    EXPECT_THROW(StringTools::integerListParser("3-", ","), ValueError);
    EXPECT_THROW(StringTools::integerListParser("1-2-3", ","), ValueError);
    EXPECT_THROW(StringTools::integerListParser("a-b", ","), TypeError);
}
