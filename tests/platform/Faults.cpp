#include <gtest/gtest.h>
#include <string>

#include "PlatformVocabulary.h"

namespace {

/// A disk on which one service fails.
class FailingDisk {
public:
    explicit FailingDisk(char const *service)
    {
        failing() = service;
        Platform::SetFaultHook([](char const *operation) {
            asked() += std::string(operation) + " ";
            return operation != failing();
        });
    }
    ~FailingDisk()
    {
        Platform::SetFaultHook(nullptr);
        asked().clear();
    }

    static std::string &asked()
    {
        static std::string text;
        return text;
    }

private:
    static std::string &failing()
    {
        static std::string text;
        return text;
    }
};

} // namespace

TEST(Faults, EachServiceAsksOnceByItsName)
{
    TempFolder folder;
    FailingDisk const disk("none");
    EXPECT_TRUE(Written(folder.path("a"), "x"));
    EXPECT_TRUE(Platform::MakeFolder(folder.path("b").c_str()));
    EXPECT_TRUE(Platform::CopyOneFile(folder.path("a").c_str(), folder.path("c").c_str()));
    EXPECT_TRUE(Platform::CopyMatching(folder.path("?").c_str(), folder.path("b").c_str(), false));
    EXPECT_TRUE(Platform::Rename(folder.path("c").c_str(), folder.path("d").c_str()));
    EXPECT_TRUE(Platform::DeleteMatching(folder.path("d").c_str()));
    EXPECT_EQ((Names{"a", "b/"}), Found(folder.path("*")));
    EXPECT_EQ("OpenFile MakeFolder CopyOneFile CopyMatching Rename DeleteMatching Search ", FailingDisk::asked());
}

TEST(Faults, AServiceThatFailsChangesNothing)
{
    TempFolder folder;
    folder.Write("a", "x");
    {
        FailingDisk const disk("OpenFile");
        EXPECT_EQ("(closed)", Opened(folder.path("a")));
        EXPECT_FALSE(Written(folder.path("a"), "new"));
    }
    {
        FailingDisk const disk("MakeFolder");
        EXPECT_FALSE(Platform::MakeFolder(folder.path("b").c_str()));
    }
    {
        FailingDisk const disk("CopyOneFile");
        EXPECT_FALSE(Platform::CopyOneFile(folder.path("a").c_str(), folder.path("c").c_str()));
    }
    {
        FailingDisk const disk("CopyMatching");
        EXPECT_FALSE(Platform::CopyMatching(folder.path("*").c_str(), folder.path("d").c_str(), true));
    }
    {
        FailingDisk const disk("Rename");
        EXPECT_FALSE(Platform::Rename(folder.path("a").c_str(), folder.path("e").c_str()));
    }
    {
        FailingDisk const disk("DeleteMatching");
        EXPECT_FALSE(Platform::DeleteMatching(folder.path("a").c_str()));
    }
    {
        FailingDisk const disk("Search");
        EXPECT_EQ(Names{}, Found(folder.path("a")));
        EXPECT_EQ(Names{}, Found(folder.path("*")));
    }
    EXPECT_EQ(Names{"a"}, Found(folder.path("*")));
    EXPECT_EQ("x", folder.Read("a"));
}
