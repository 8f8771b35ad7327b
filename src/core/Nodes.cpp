#include "core/Nodes.h"

#include "core/StartUp.h"
#include "files/DFile.h"
#include "files/PathUtils.h"

namespace {

DString nameOf(DString line)
{
    return line.BeforeFirst('=', true);
}

bool isBlank(DString name)
{
    return !name.Trim();
}

} // namespace

void GetNodes(DStringArray &list, int n)
{
    DStringArray lines = VoIni.GetFullSection("Nodes");
    if (lines.Count() == 0) lines.Add(GetComputerNameD() + "=Node");
    list.Clear();
    for (int i = 0; i < lines.Count(); ++i) {
        DString const name = nameOf(lines[i]);
        if (!isBlank(name)) list.Add(name);
    }
    int const count = list.Count();
    for (int i = count; count > 0 && i < n; ++i) list.Add(DString(list[i % count]));
    DFile::WriteLines(AppendPathElts(GetUserPath(), "MPIHosts.txt"), list);
}

void GetPaths(DStringArray &list)
{
    DStringArray const lines = VoIni.GetFullSection("Paths");
    list.Clear();
    for (int i = 0; i < lines.Count(); ++i) list.Add(nameOf(lines[i]));
}

void GetServers(DStringArray &list)
{
    DStringArray const lines = VoIni.GetFullSection("Servers");
    DString const own = GetComputerNameD();
    list.Clear();
    for (int i = 0; i < lines.Count(); ++i) {
        DString const name = nameOf(lines[i]);
        if (!isBlank(name) && (name /= own)) list.Add(name);
    }
}
