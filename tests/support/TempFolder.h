/// A fresh, empty folder for one test, below the host's folder for temporary files. It goes away with
/// the object, and all that was put into it. Used by the tests of every folder.
///
///     TempFolder folder;
///     folder.Write("Run1/shot.dat", "abc");
///     EXPECT_TRUE(opens(folder.path("run1\\SHOT.dat")));
#pragma once

#include <filesystem>
#include <fstream>
#include <ios>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>

class TempFolder {
public:
    TempFolder() : folder(makefresh()) {}
    TempFolder(TempFolder const &) = delete;
    TempFolder &operator=(TempFolder const &) = delete;

    /// Leaves the folder first if the test went into it, since not every system removes a folder in use.
    ~TempFolder()
    {
        std::error_code ignored;
        std::string const current = std::filesystem::current_path(ignored).string();
        if (current.compare(0, folder.size(), folder) == 0)
            std::filesystem::current_path(std::filesystem::temp_directory_path(ignored), ignored);
        std::filesystem::remove_all(folder, ignored);
    }

    /// The folder as the host names it, without a slash behind it.
    std::string const &native() const { return folder; }

    /// Something in it as the host names it; `relative` has slashes.
    std::string native(std::string const &relative) const { return folder + "/" + relative; }

    /// The folder as the system names it, fully qualified (`Z:\tmp\...` on Linux), without a backslash behind it.
    std::string path() const { return hosthasbackslashes() ? folder : "Z:" + withbackslashes(folder); }

    /// Something in it as the system names it; `relative` has backslashes.
    std::string path(std::string const &relative) const { return path() + "\\" + relative; }

    /// Makes a file that holds these bytes, and the folders on the way; `relative` has slashes.
    void Write(std::string const &relative, std::string const &bytes = std::string()) const
    {
        std::filesystem::path const file = native(relative);
        std::filesystem::create_directories(file.parent_path());
        std::ofstream out(file, std::ios::binary);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        if (!out.flush()) throw std::runtime_error("can't write " + file.string());
    }

    /// Makes a folder and those on the way.
    void MakeFolder(std::string const &relative) const { std::filesystem::create_directories(native(relative)); }

    /// The bytes of a file, "(missing)" if there is none.
    std::string Read(std::string const &relative) const
    {
        std::ifstream in(native(relative), std::ios::binary);
        if (!in) return "(missing)";
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }

    /// Whether there is anything under exactly this name, be it a link that leads nowhere.
    bool Has(std::string const &relative) const
    {
        std::filesystem::path const wanted = native(relative);
        std::error_code ignored;
        for (auto const &entry : std::filesystem::directory_iterator(wanted.parent_path(), ignored))
            if (entry.path().filename() == wanted.filename()) return true;
        return false;
    }

private:
    static constexpr bool hosthasbackslashes() { return std::filesystem::path::preferred_separator == '\\'; }

    static std::string withbackslashes(std::string text)
    {
        for (char &c : text)
            if (c == '/') c = '\\';
        return text;
    }

    /// A name that no other test has: making the folder tells whether it was new.
    static std::string makefresh()
    {
        std::filesystem::path const place = std::filesystem::temp_directory_path();
        std::random_device random;
        for (int i = 0; i < 100; i++) {
            std::filesystem::path const name = place / ("vodrel-test-" + std::to_string(random()));
            std::error_code error;
            if (std::filesystem::create_directory(name, error)) return name.string();
        }
        throw std::runtime_error("can't make a folder for a test in " + place.string());
    }

    std::string const folder;
};
