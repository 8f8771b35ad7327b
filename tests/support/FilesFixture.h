/// The vocabulary of the tests of files and start-up: a fresh folder with a per-user folder in it, a clock set
/// by hand, and the library's globals as they are at load, put back afterwards.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/Log.h"
#include "core/StartUp.h"
#include "files/PathUtils.h"
#include "foundation/DStringArray.h"
#include "platform/Platform.h"
#include "support/DStringInspector.h"
#include "support/HandClock.h"
#include "support/HostVariable.h"
#include "support/NoHostNetwork.h"
#include "support/TempFolder.h"

using Strings = std::vector<std::string>;

inline Strings Items(DStringArray const &list)
{
    Strings items;
    for (int i = 0; i < list.Count(); ++i) items.push_back(bytesOf(list[i]));
    return items;
}

inline DStringArray List(Strings const &items)
{
    DStringArray list;
    for (std::string const &item : items) list.Add(fromBytes(item));
    return list;
}

class FilesTest : public testing::Test {
protected:
    FilesTest() : userFolder(folder.path("host-user"))
    {
        Platform::SetUserDataFolder(userFolder.c_str());
        folder.MakeFolder("user");
        globalsatload();
        UserPath = Path("user");
    }
    ~FilesTest() override
    {
        globalsatload();
        Platform::ClearShares();
        Platform::SetFaultHook(nullptr);
        Platform::SetUserDataFolder(nullptr);
        std::error_code ignored;
        std::filesystem::current_path(hostFolder, ignored);
    }

    /// Something in the fresh folder, as the system names it.
    DString Path(std::string const &relative) const { return fromBytes(folder.path(relative)); }

    void GoTo(std::string const &relative) const { std::filesystem::current_path(folder.native(relative)); }

    /// The bytes of the log.
    std::string LogText() const { return folder.Read("user/Log.txt"); }

    TempFolder folder;
    HandClock clock;

private:
    NoHostNetwork const noNetwork;
    static void globalsatload()
    {
        VoIni = DIni();
        VodrelPath = UserPath = WorkingPath = ComputerName = DString();
        SetNotify(nullptr);
        SetQNotify(nullptr);
        Logging = Silent = PublicWrite = false;
        StartTime = 0;
    }

    std::filesystem::path const hostFolder = std::filesystem::current_path();
    std::string const userFolder;
};
