#include "files/DIni.h"

#include "core/Log.h"
#include "files/DFile.h"
#include "files/PathUtils.h"

namespace {

int const readRetries = 10;
int const retryPause = 50; // milliseconds
int const binaryWrite = 6;

/// The name in a line that begins a section: up to the last `]`, or to the end of the line.
DString sectionName(DString const &line)
{
    unsigned int const end = line.RFind(']');
    return DString(line, 1, end == npos ? npos : static_cast<int>(end) - 1);
}

bool isSectionLine(DString const &line)
{
    return line.Len() > 0 && line[0] == '[';
}

void writeText(DFile &file, DString const &text)
{
    file.DSWrite(text, 0);
}

/// Nothing for lines that join to an empty text; else a delimiter behind each, but for the last line of the file.
void writeLines(DFile &file, DStringArray const &lines, bool lastSection)
{
    int const last = lines.Count() - 1;
    if (last == 0 && !lines[0]) return;
    for (int i = 0; i <= last; ++i) {
        writeText(file, lines[i]);
        if (i < last || !lastSection) file.BWrite(LDelim, LenLD);
    }
}

/// Apart from case; what differs behind a NUL alone counts by its length.
int compareLines(void const *a, void const *b)
{
    auto const &first = *static_cast<DString const *>(a);
    auto const &second = *static_cast<DString const *>(b);
    int const difference = CompareFolded(first.c_str(), second.c_str());
    return difference != 0 ? difference : first.Len() - second.Len();
}

/// Whether both hold the same lines, apart from order and case.
bool sameLines(DStringArray &a, DStringArray b)
{
    if (a.Count() != b.Count()) return false;
    a.Sort(compareLines);
    b.Sort(compareLines);
    for (int i = 0; i < a.Count(); ++i) {
        if (a[i] /= b[i]) return false;
    }
    return true;
}

} // namespace

DIni::DIni(DString const &name)
{
    SetFileName(name);
}

// ---- Loading ----

bool DIni::SetFileName(DString const &name)
{
    DString copy(name); // `name` may be our own
    clearsections();
    currentSection = -1;
    if (!copy) {
        fileName = DString();
        return false; // the snapshot stays
    }
    if (FileExists(copy)) {
        fileText = DFile::GetText(copy);
        int retries = 0;
        for (; !fileText && retries < readRetries; ++retries) {
            DSleep(retryPause);
            fileText = DFile::GetText(copy);
        }
        if (Logging && retries >= 2) Log(DString(retries) + " tries needed to read from " + copy);
    } else {
        if (!DFile::MakeFile(copy)) {
            fileText = fileName = DString();
            return false;
        }
        fileText = DFile::GetText(copy); // which is empty, unless the disk didn't show us a file that is there
    }
    fileName = copy;
    loadstring();
    holdWrite = false;
    return true;
}

bool DIni::Refresh()
{
    return SetFileName(fileName);
}

void DIni::clearsections()
{
    sectionNames.Clear();
    sectionLines.Clear();
}

void DIni::appendsection(DString const &name)
{
    sectionNames.Add(name);
    sectionLines.AddBlank(1);
}

void DIni::loadstring()
{
    DStringArray const lines(fileText, LDelim, -1);
    clearsections();
    for (int i = 0; i < lines.Count(); ++i) {
        DString const &line = lines[i];
        if (isSectionLine(line)) appendsection(sectionName(line));
        else if (sectionLines.Count() > 0 && line.FindFirstNotOf(" ") != npos) sectionLines.Last().Add(line);
    }
}

// ---- Sections ----

int DIni::nKeys() const
{
    return hassection() ? sectionLines[currentSection].Count() : 0;
}

void DIni::SetSection(DString const &name)
{
    if (hassection() && (sectionNames[currentSection] %= name)) return;
    currentSection = sectionNames.Index(name);
    if (currentSection >= 0) return;
    appendsection(name);
    currentSection = sectionLines.Count() - 1;
}

bool DIni::SectionExists(DString const &name) const
{
    return sectionNames.Index(name) >= 0;
}

DStringArray DIni::GetFullSection(DString const &name) const
{
    int const section = sectionNames.Index(name);
    return section < 0 ? DStringArray() : sectionLines[section];
}

void DIni::SetFullSection(DString const &name, DStringArray const &lines)
{
    DStringArray const copy(lines); // may be one of our own sections
    int section = sectionNames.Index(name);
    if (section < 0) {
        appendsection(name);
        section = sectionLines.Count() - 1;
    }
    sectionLines[section] = copy;
    writethrough();
}

void DIni::AddSection(DString const &name, DStringArray const &lines)
{
    SetFullSection(name, lines);
}

void DIni::RenameSection(DString const &from, DString const &to)
{
    int const section = sectionNames.Index(from);
    if (section < 0) return;
    sectionNames[section] = to;
    writethrough();
}

void DIni::DeleteSection(DString const &name)
{
    int const section = sectionNames.Index(name);
    currentSection = -1;
    if (section >= 0) {
        sectionNames.Remove(section, 1);
        sectionLines.Remove(section, 1);
    }
    writethrough();
}

// ---- Keys ----

int DIni::keyindex(DString const &key, int &valueIndex) const
{
    if (!hassection() || (key.Len() > 0 && key[0] == ';')) return -1;
    DString const pattern = key + '=';
    valueIndex = pattern.Len();
    DStringArray const &lines = sectionLines[currentSection];
    for (int i = 0; i < lines.Count(); ++i) {
        if (lines[i].StartsWith(pattern)) return i;
    }
    return -1;
}

bool DIni::findvalue(DString const &key, DString &value) const
{
    int valueIndex = 0;
    int const line = keyindex(key, valueIndex);
    if (line < 0) return false;
    value = DString(sectionLines[currentSection][line], valueIndex, npos);
    return true;
}

DString DIni::GetKeyValue(DString const &key, char const *def) const
{
    DString value;
    return findvalue(key, value) && ~value ? value : DString(def);
}

DString DIni::GetSectionKeyValue(DString const &section, DString const &key, char const *def)
{
    currentSection = sectionNames.Index(section);
    DString value;
    return findvalue(key, value) ? value : DString(def);
}

bool DIni::GetKeyBoolValue(DString const &key, bool def) const
{
    DString value;
    if (!findvalue(key, value)) return def;
    return (value %= "True") || value == "1";
}

int DIni::GetKeyIntValue(DString const &key, int def) const
{
    DString value;
    if (!findvalue(key, value)) return def;
    int whole = 0;
    if (value.FindI("e") == npos) return value.ToInt(whole) ? whole : def;
    double number = 0;
    return value.ToDouble(number) ? TruncateToInt(number) : def;
}

float DIni::GetKeyFloatValue(DString const &key, float def) const
{
    DString value;
    float number = 0;
    return findvalue(key, value) && value.ToFloat(number) ? number : def;
}

DStringArray DIni::GetKeyRow(DString const &key, int minCount, char const *delim, char const *def) const
{
    return DStringArray(GetKeyValue(key, def), delim, minCount);
}

void DIni::SetKeyValue(DString const &key, DString const &value)
{
    if (!hassection()) return;
    DStringArray &lines = sectionLines[currentSection];
    DString const line = key + '=' + value;
    int valueIndex = 0;
    int const found = keyindex(key, valueIndex);
    if (found < 0) lines.Add(line);
    else lines[found] = line;
    writethrough();
}

void DIni::DeleteKey(char const *section, DString const &key)
{
    currentSection = sectionNames.Index(section);
    int valueIndex = 0;
    int const line = keyindex(key, valueIndex);
    if (line < 0) return;
    sectionLines[currentSection].Remove(line, 1);
    writethrough();
}

// ---- Writing ----

void DIni::writethrough()
{
    if (!holdWrite) WriteFile(fileName, false);
}

bool DIni::WriteFile(DString name, bool keepName)
{
    if (!name) name = fileName;
    if (!name) return true;
    DFile file;
    if (!file.Open(name, binaryWrite)) {
        Log("error opening for write");
        return false;
    }
    int const last = sectionLines.Count() - 1;
    for (int section = 0; section <= last; ++section) {
        writeText(file, '[' + sectionNames[section] + ']' + LDelim);
        writeLines(file, sectionLines[section], section == last);
    }
    if (!keepName) fileName = name;
    return true;
}

void DIni::HoldWrite(bool hold)
{
    bool const ends = holdWrite && !hold;
    holdWrite = hold;
    if (ends) WriteFile(fileName, false);
}

void DIni::CommitFile()
{
    WriteFile(fileName, false);
    fileText = DFile::GetText(fileName);
}

void DIni::RestoreFile()
{
    currentSection = -1;
    loadstring();
    WriteFile(fileName, false);
}

// ---- Comparison ----

bool DIni::Changed() const
{
    DStringArray const lines(DFile::GetText(fileName), LDelim, -1);
    if (lines.Count() == 0) return nSections() > 0;
    if (!isSectionLine(lines[0])) return true;
    DStringArray unseen(sectionNames);
    for (int i = 0; i < lines.Count();) {
        DString const name = sectionName(lines[i]);
        DStringArray inFile;
        for (++i; i < lines.Count() && !isSectionLine(lines[i]); ++i) inFile.Add(DString(lines[i]).Trim());
        if (!SectionExists(name) || !sameLines(inFile, GetFullSection(name))) return true;
        int const left = unseen.Index(name);
        if (left >= 0) unseen.Remove(left, 1);
    }
    return unseen.Count() > 0;
}
