/// The vocabulary of the tests of trace files: a fresh folder in which files are put and read by the name of the
/// trace, and the fields that come of a file.
#pragma once

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "data/Waveform.h"
#include "support/FreshSystem.h"
#include "support/WaveformBytes.h"

class WaveformFile : public testing::Test {
protected:
    WaveformFile() : system(false) { SetNotify(&system.listener); }

    /// The name by which a trace of the fresh folder is read and written: no extension.
    DString Name(std::string const &stem) const { return Dstr(system.path(stem)); }
    DString FileName(std::string const &stem) const { return Dstr(system.path(stem + ".wvf")); }
    /// A file of these bytes. A new one each time: some file systems flush one that is emptied and written again.
    void Put(std::string const &stem, std::string const &bytes) const
    {
        std::filesystem::remove(system.folder.native(stem + ".wvf"));
        system.folder.Write(stem + ".wvf", bytes);
    }
    std::string Disk(std::string const &stem) const { return system.folder.Read(stem + ".wvf"); }
    std::string DiskHex(std::string const &stem) const { return BytesHex(Disk(stem)); }

    /// The fields of `into` after a read of these bytes.
    Fields FieldsRead(std::string const &bytes, int n, OpenWaveform into = OpenWaveform()) const
    {
        Put("read", bytes);
        EXPECT_TRUE(into.Read(Name("read"), n));
        return FieldsOf(into);
    }

    /// The bytes of the file that a write of the trace makes.
    std::string BytesWritten(Waveform &w) const
    {
        std::filesystem::remove(system.folder.native("written.wvf"));
        EXPECT_TRUE(w.Write(Name("written")));
        return Disk("written");
    }

    FreshSystem system;
};

/// What the version field of a file comes to.
struct Version {
    char const *hex;
    bool locked, hasSecondDelay;
};

/// The fields of `SampleRows` in a file of that version.
inline Fields FieldsOfVersion(Version const &version)
{
    Fields fields = SampleFields();
    if (version.locked) fields["lockState"] = "1";
    if (version.hasSecondDelay) return fields;
    return With(fields, {{"scopeDelay2", "00 00 00 00"}, {"startTime", "00 00 C0 40"}}); // 6 = 7 - 1
}
