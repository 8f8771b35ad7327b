/// A disk that ignores case, as those of Windows machines do. None can be mounted where the tests run, so the C
/// library's services are replaced: all that the platform layer asks about a name below the disk's folder is answered
/// for the entry that differs by case alone, under whatever spelling it is asked. The spelling on the disk stays as it
/// was made, and a rename of case alone changes nothing and succeeds, as on such disks.
#pragma once

#include <string>

class CaseIgnoringDisk {
public:
    /// Whether all of the disk ignores case, as a network share does, or single folders, as on a disk of Linux.
    enum class Kind { All, SomeFolders };

    CaseIgnoringDisk(std::string const &folder, Kind kind);
    CaseIgnoringDisk(CaseIgnoringDisk const &) = delete;
    CaseIgnoringDisk &operator=(CaseIgnoringDisk const &) = delete;
    ~CaseIgnoringDisk();
};

/// How often `stat`, `lstat`, `statx` and `statfs` were called, and how often a folder was opened, anywhere, since the
/// last question.
struct Looks {
    int names = 0;
    int listings = 0;
};
Looks TakeLooks();
