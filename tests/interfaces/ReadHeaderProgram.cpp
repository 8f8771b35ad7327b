// Reads the header of a waveform a number of times: folder, name without extension, count. A test counts what it
// asks of the operating system. The folder is the current one meanwhile, so that the name is found as it stands.

#include <cstdio>
#include <cstdlib>

#include "data/Waveform.h"
#include "files/PathUtils.h"

int main(int argc, char **argv)
{
    if (argc != 4) return 2;
    DString const name = AppendPathElts(argv[1], argv[2]);
    Waveform wave;
    for (int i = std::atoi(argv[3]); i > 0; i--)
        if (!wave.Read(name, 0)) return 1;
    std::printf("%d\n", wave.fileCount);
    return 0;
}
