// Service modules, with the library as a host has it: program and module share the one that is loaded.
// VODREL_SERVICE_MODULE is the module's file.

#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "VodrelCore.h"
#include "core/Modules.h"
#include "support/HostUserFolder.h"
#include "support/TempFolder.h"

namespace {

/// Remembers what it hears, as "code,arg:text".
class HostNotifier : public DNotify {
public:
    void Notify(int code, int arg, DString const &text) override
    {
        heard += std::to_string(code) + "," + std::to_string(arg) + ":" + text.c_str() + "\n";
    }
    std::string heard;
};

/// A host whose installation folder is "install".
class ServiceModules : public testing::Test {
protected:
    ServiceModules() : userFolder(folder.native("user"))
    {
        CoreInit(folder.path("install").c_str());
        SetNotify(&user);
    }
    ~ServiceModules() override
    {
        UnloadModules();
        SetNotify(nullptr);
        VoIni = DIni();
    }

    /// Puts the service module there; `name` has slashes, and no extension.
    void Place(std::string const &name) const
    {
        std::filesystem::path const module = VODREL_SERVICE_MODULE;
        std::filesystem::path const file = folder.native(name) + module.extension().string();
        std::filesystem::create_directories(file.parent_path());
        std::filesystem::copy_file(module, file);
    }

    bool Connect(char const *module, int arg)
    {
        service = &untouched;
        return DLLConnect(module, arg, &host, service);
    }

    TempFolder const folder;
    HostUserFolder const userFolder;
    HostNotifier user; ///< for messages
    HostNotifier host; ///< which the module gets
    HostNotifier untouched;
    DNotify *service = nullptr;
};

TEST_F(ServiceModules, GetTheNotifierOfTheHostAndItsArgument)
{
    Place("install/Service");
    for (int arg : {1, -1, 2147483647}) {
        host.heard.clear();
        EXPECT_TRUE(Connect("Service", arg));
        EXPECT_EQ("5," + std::to_string(arg) + ":connected\n", host.heard);
    }
    EXPECT_EQ("", user.heard);
    EXPECT_FALSE(folder.Has("user/Vodrel/Log.txt"));
}

TEST_F(ServiceModules, GiveANotifierOfTheirOwn)
{
    Place("install/Service");
    ASSERT_TRUE(Connect("Service", 7));
    ASSERT_NE(&untouched, service);
    EXPECT_TRUE(service->Poll());
    host.heard.clear();
    service->Notify(2, 3, "a text that is longer than a short block of a string");
    service->Notify(1, 0, "");
    EXPECT_EQ("1002,4:the service heard a text that is longer than a short block of a string\n"
              "1001,1:the service heard \n",
              host.heard);
}

TEST_F(ServiceModules, MayServeAsTheNotifierOfTheLibrary)
{
    Place("install/Service");
    ASSERT_TRUE(Connect("Service", 7));
    host.heard.clear();
    SetNotify(service);
    Message("m");
    Display("d");
    SetNotify(&user);
    EXPECT_EQ("1002,1:the service heard m\n1001,1:the service heard d\n", host.heard);
}

TEST_F(ServiceModules, LieInFoldersOfTheInstallation)
{
    Place("install/a/b/Service");
    EXPECT_TRUE(Connect("a\\b\\Service", 7));
    EXPECT_FALSE(Connect("Service", 7));
    EXPECT_EQ("2,0:Could not load module: Service\n", user.heard);
}

TEST_F(ServiceModules, FollowTheInstallationFolder)
{
    Place("other/Service");
    EXPECT_FALSE(Connect("Service", 7));
    SetVodrelPath(folder.path("other").c_str());
    EXPECT_TRUE(Connect("Service", 7));
}

TEST_F(ServiceModules, MayRefuse)
{
    Place("install/Service");
    EXPECT_FALSE(Connect("Service", 0));
    EXPECT_EQ("5,0:refused\n", host.heard);
    EXPECT_EQ(&untouched, service);
    EXPECT_EQ("", user.heard);
    EXPECT_FALSE(folder.Has("user/Vodrel/Log.txt"));
}

TEST_F(ServiceModules, MayGetNoNotifier)
{
    Place("install/Service");
    service = &untouched;
    EXPECT_TRUE(DLLConnect("Service", 7, nullptr, service));
    service->Notify(2, 0, "nobody hears it");
}

TEST_F(ServiceModules, ThatAreMissingLeaveTheResultAlone)
{
    EXPECT_FALSE(Connect("Service", 7));
    EXPECT_EQ(&untouched, service);
    EXPECT_EQ("", host.heard);
    EXPECT_EQ("2,0:Could not load module: Service\n", user.heard);
    EXPECT_TRUE(userFolder.Logged("Could not load module: " + folder.path("install\\Service")));
}

TEST_F(ServiceModules, CanBeConnectedAgainOnceTheyAreFreed)
{
    Place("install/Service");
    for (int i = 0; i < 3; i++) {
        ASSERT_TRUE(Connect("Service", 7));
        UnloadModules();
    }
    EXPECT_EQ("5,7:connected\n5,7:connected\n5,7:connected\n", host.heard);
}

TEST_F(ServiceModules, OfTwoFilesAreTwo)
{
    Place("install/One");
    Place("install/Two");
    ASSERT_TRUE(Connect("One", 1));
    DNotify *const one = service;
    ASSERT_TRUE(Connect("Two", 2));
    EXPECT_NE(one, service);
    DNotify *const two = service;
    ASSERT_TRUE(Connect("One", 3));
    EXPECT_EQ(one, service);
    EXPECT_NE(two, service);
}

TEST_F(ServiceModules, MayStayUntilTheProgramEnds)
{
    Place("install/Service");
    EXPECT_EXIT(
        {
            if (Connect("Service", 7)) std::exit(17);
        },
        testing::ExitedWithCode(17), "^$");
}

} // namespace
