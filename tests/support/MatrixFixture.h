/// The vocabulary of the tests of matrix files: a fresh folder in which files are put and read by the name of the
/// matrix, and the fields that come of a file.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include "data/Matrix.h"
#include "support/FreshSystem.h"
#include "support/MatrixBytes.h"

class MatrixFile : public testing::Test {
protected:
    MatrixFile() : system(false) { SetNotify(&system.listener); }

    /// The name by which a matrix of the fresh folder is read and written: no extension.
    DString Name(std::string const &stem) const { return Dstr(system.path(stem)); }
    DString FileName(std::string const &stem) const { return Dstr(system.path(stem + ".dmt")); }
    /// A file of these bytes. One of the same length is overwritten in place, which costs the disk least; any other is
    /// a new one, since some file systems flush one that is emptied and written again.
    void Put(std::string const &stem, std::string const &bytes) const
    {
        std::string const file = system.folder.native(stem + ".dmt");
        std::error_code missing;
        if (std::filesystem::file_size(file, missing) == bytes.size()) {
            std::fstream out(file, std::ios::in | std::ios::out | std::ios::binary);
            out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
            if (out.flush()) return;
        }
        std::filesystem::remove(file);
        system.folder.Write(stem + ".dmt", bytes);
    }
    std::string Disk(std::string const &stem) const { return system.folder.Read(stem + ".dmt"); }

    /// The fields of a fresh object after a read of these bytes.
    Fields FieldsRead(std::string const &bytes, int count = -1, int first = 0) const
    {
        OpenMatrix m;
        return FieldsReadInto(m, bytes, count, first);
    }

    Fields FieldsReadInto(OpenMatrix &m, std::string const &bytes, int count = -1, int first = 0) const
    {
        Put("read", bytes);
        EXPECT_TRUE(m.Read(Name("read"), count, first));
        return FieldsOf(m);
    }

    /// The bytes of the file that a write of the matrix makes.
    std::string BytesWritten(OpenMatrix &m) const
    {
        std::filesystem::remove(system.folder.native("written.dmt"));
        EXPECT_TRUE(m.Write(Name("written")));
        return Disk("written");
    }

    FreshSystem system;
};
