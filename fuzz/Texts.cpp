/// Any bytes as text: a settings file that is loaded, changed, compared and written, and text that is split, searched,
/// read as numbers and dates, and printed by.

#include <cstddef>
#include <cstdint>

#include "FuzzFile.h"
#include "VodrelCore.h"

namespace {

void askSettings(DString const &file)
{
    if (GetFileLen(file + ".ini") == 0) return; // an empty one costs its sleeps
    DIni ini(file + ".ini");
    DStringArray const sections = ini.GetSectionNames();
    for (int i = 0; i < sections.Count() && i < 8; ++i) {
        ini.SetSection(sections[i]);
        ini.GetKeyValue(sections[i]);
        ini.GetKeyIntValue("a", 0);
        ini.SetKeyValue(sections[i], "1");
    }
    ini.Changed();
    ini.RestoreFile();
}

void askText(DString text)
{
    int number = 0;
    double value = 0;
    long long time = 0;
    text.ToInt(number);
    text.ToDouble(value);
    text.ToDate(time);
    text.EndNumber(number);
    Format(number, text.c_str());
    Format(value, text.c_str());
    for (char const *delimiter : {" ", ",", "\r\n"}) DStringArray(text, delimiter, -1).Sort(nullptr);
    DStringArray table;
    table.Split2D(text, ",", 3);
    text.Replace("a", "bb", true).Trim().RTrim().RemoveExt();
    DString(text, 0, npos).LFtoCRLF();
    Expt.GetExpandedString(text, false);
    Expt.CleanDataFileName(text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *bytes, std::size_t size)
{
    FuzzFile const file(".ini", bytes, size);
    askText(DFile::GetText(file.Name() + ".ini"));
    askSettings(file.Name());
    return 0;
}
