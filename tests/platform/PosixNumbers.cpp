#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <locale.h>
#include <string>

#include "PlatformVocabulary.h"

namespace {

std::string Printed(char const *format, double value)
{
    char text[100] = "";
    Platform::PrintNumber(text, sizeof text, format, value);
    return text;
}

/// A host that has set a locale with a decimal comma, made for this test alone.
class CommaHost : public testing::Test {
protected:
    void SetUp() override
    {
        folder.Write("comma.src",
                     "comment_char %\nescape_char /\nLC_CTYPE\nupper <A>;<B>\nlower <a>;<b>\nEND LC_CTYPE\n"
                     "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \".\"\ngrouping 3;3\nEND LC_NUMERIC\n");
        std::string const make =
            "localedef -c -i '" + folder.native("comma.src") + "' '" + folder.native("comma") + "' 2>/dev/null";
        // The many categories that are left out make it a success with warnings.
        ASSERT_TRUE(std::system(make.c_str()) == 0 || folder.Has("comma/LC_NUMERIC"));
        setenv("LOCPATH", folder.native().c_str(), 1);
        ASSERT_NE(nullptr, std::setlocale(LC_ALL, "comma")) << "localedef belongs to the C library's tools";
        ASSERT_EQ("1,5", hostprints(1.5));
    }
    void TearDown() override
    {
        std::setlocale(LC_ALL, "C");
        unsetenv("LOCPATH");
    }

    static std::string hostprints(double value)
    {
        char text[100];
        std::snprintf(text, sizeof text, "%g", value);
        return text;
    }

    TempFolder folder;
};

} // namespace

TEST(Numbers, ArePrintedAndParsed)
{
    EXPECT_EQ("1.50", Printed("%.2f", 1.5));
    EXPECT_EQ("1e+10", Printed("%g", 1e10));
    char text[4];
    EXPECT_EQ(8, Platform::PrintNumber(text, sizeof text, "%f", 1.5)) << "as snprintf counts";
    EXPECT_STREQ("1.5", text);
    char const *end = nullptr;
    char const *const number = " 2.5e1x";
    EXPECT_EQ(25.0, Platform::ParseNumber(number, &end));
    EXPECT_STREQ("x", end);
    char const *const none = "x";
    EXPECT_EQ(0.0, Platform::ParseNumber(none, &end));
    EXPECT_EQ(none, end);
    EXPECT_EQ(0.0, Platform::ParseNumber(nullptr, nullptr));
}

TEST_F(CommaHost, ChangesNoNumberOfOurs)
{
    EXPECT_EQ("1234567.50", Printed("%.2f", 1234567.5));
    char const *end = nullptr;
    char const *const number = "1.5,2";
    EXPECT_EQ(1.5, Platform::ParseNumber(number, &end));
    EXPECT_STREQ(",2", end);
    folder.Write("numbers", "2.25 3,5");
    std::FILE *const file = Platform::OpenFile(folder.path("numbers").c_str(), "r");
    float value = 0;
    EXPECT_EQ(1, Platform::ScanValue(file, "%f", &value));
    EXPECT_EQ(2.25f, value);
    EXPECT_EQ(1, Platform::ScanValue(file, "%f", &value));
    EXPECT_EQ(3.0f, value);
    Platform::CloseFile(file);
}

TEST_F(CommaHost, KeepsItsLocale)
{
    Printed("%g", 1.5);
    Platform::ParseNumber("1.5", nullptr);
    Platform::ScanValue(nullptr, nullptr, nullptr);
    EXPECT_EQ("2,5", hostprints(2.5));
    EXPECT_EQ(LC_GLOBAL_LOCALE, uselocale(nullptr));
}
