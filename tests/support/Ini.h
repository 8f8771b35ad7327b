/// The vocabulary of the tests of settings files: a store over the file "s.ini".
#pragma once

#include "files/DIni.h"
#include "support/FilesFixture.h"

class IniTest : public FilesTest {
protected:
    /// Puts a file in place and loads it.
    void Load(std::string const &text)
    {
        folder.Write("s.ini", text);
        ASSERT_TRUE(ini.SetFileName(Path("s.ini")));
    }
    /// Loads a file of one section "A" with these lines, and makes it the current one.
    void LoadA(std::string const &lines)
    {
        Load("[A]\r\n" + lines);
        ini.SetSection("A");
    }
    /// The bytes of the file.
    std::string File() const { return folder.Read("s.ini"); }
    /// The bytes that a write of the memory gives.
    std::string Image()
    {
        ini.WriteFile(Path("image"), true);
        return folder.Read("image");
    }
    std::string Value(std::string const &key, char const *def = "def") const
    {
        return bytesOf(ini.GetKeyValue(fromBytes(key), def));
    }
    Strings Lines(std::string const &section) const { return Items(ini.GetFullSection(fromBytes(section))); }
    Strings Names() const { return Items(ini.GetSectionNames()); }

    struct Store : DIni {
        using DIni::keyindex;
        using DIni::loadstring;
    };
    Store ini;
};
