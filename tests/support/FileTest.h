/// The vocabulary of the tests of the file handle: one object over the file "data".
#pragma once

#include "files/DFile.h"
#include "support/FilesFixture.h"

class FileTest : public FilesTest {
protected:
    /// An open file of these bytes.
    void Begin(std::string const &bytes, int mode = 5)
    {
        folder.Write("data", bytes);
        ASSERT_TRUE(file.Open(Path("data"), mode));
    }
    /// The bytes of the file once it is closed.
    std::string End()
    {
        file.Close();
        return folder.Read("data");
    }
    /// What `BRead` leaves in four dots.
    std::string Read4(int size)
    {
        char target[] = "....";
        file.BRead(target, size);
        return target;
    }
    std::string Line(int maxLength)
    {
        DString line("old");
        file.ReadLine(line, maxLength);
        return bytesOf(line);
    }

    DFile file;
};
