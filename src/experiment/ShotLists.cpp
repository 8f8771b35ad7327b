/// From a list, a range or a wildcard to the shots themselves.
///
/// A selection first becomes a vector of shots, and only at the end the arrays of the caller. Whether a shot is there
/// is asked of the disk one by one. For a range of many numbers the shot paths are listed first, and only the numbers
/// that some folder there ends in are asked for: the others would have found nothing, each at the price of a look into
/// every shot path.

#include "experiment/Experiment.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/Log.h"
#include "experiment/FolderNames.h"
#include "files/DFile.h"
#include "files/PathUtils.h"
#include "platform/Platform.h"

namespace {

char const *const listKeyword = "(Shot list)";
char const *const listExtension = ".txt";
char const rangeMark = ':';
char const pathMark = ';';

int const mostTested = 64; ///< numbers of a range that are asked for one by one
int const mostDigits = 20; ///< that `Format` prints

struct Shot {
    DString name;
    int group = 0;
    DString word = shotWord; ///< as the folder is spelled
};
using Shots = std::vector<Shot>;

/// Empty for a group that there isn't.
DString folderOf(Experiment const &experiment, Shot const &shot)
{
    DString const path = experiment.GetShotGroupPath(shot.group);
    return ~path ? AppendPathElts(path, shot.word + shot.name) : DString();
}

bool exists(Experiment const &experiment, Shot const &shot)
{
    DString folder = folderOf(experiment, shot);
    return ~folder && FolderExists(folder);
}

/// Hands the shots out. Their dates are those of a file in the folder, or of the folder itself.
void deliver(Experiment const &experiment, Shots const &shots, char const *dated, DStringArray &names,
             DArray<int, 0> &gnums, DArray<long long, 0> *dates)
{
    int const n = static_cast<int>(shots.size());
    names.Size(n);
    gnums.Size(n);
    if (dates) dates->Size(n);
    for (int i = 0; i < n; ++i) {
        Shot const &shot = shots[static_cast<std::size_t>(i)];
        names[i] = shot.name;
        gnums[i] = shot.group;
        if (dates) (*dates)[i] = FileDate(AppendPathElts(folderOf(experiment, shot), dated));
    }
}

// ---- Lists

/// "name" or "name;path", the whole line perhaps in double quotes.
Shot shotOfLine(Experiment const &experiment, DString line)
{
    if (line.EndsWith("\"")) line.TruncateBy(1);
    if (line.StartsWith("\"")) line = line.Mid(1);
    Shot shot;
    shot.name = line.BeforeFirst(pathMark, true);
    if (line.Find(pathMark) != npos)
        shot.group = experiment.GetShotGroupNumber(experiment.FullPath(line.AfterFirst(pathMark, true)));
    return shot;
}

/// All shots of a list file, with group -1 for a path that is no shot path.
Shots readList(Experiment const &experiment, DString file)
{
    if (!file.EndsWith(listExtension)) file << listExtension;
    DStringArray lines;
    DFile::GetLines(file, lines);
    // A look that fails reads as an empty list, and a merge into the list itself would lose what it held.
    if (lines.Count() == 0) DFile::GetLines(file, lines);
    Shots shots;
    for (int i = 0; i < lines.Count(); ++i) shots.push_back(shotOfLine(experiment, lines[i]));
    return shots;
}

Shots existingOfList(Experiment const &experiment, DString const &name)
{
    DString const folder = experiment.AppendExptPathElts(shotListFolder);
    CreateFolder(folder);
    Shots shots = readList(experiment, AppendPathElts(folder, name));
    auto const isGone = [&](Shot const &shot) { return !exists(experiment, shot); };
    shots.erase(std::remove_if(shots.begin(), shots.end(), isGone), shots.end());
    return shots;
}

// ---- Ranges

struct Range {
    DString prefix;
    DString format;
    int first = 0;
    int last = 0;

    DString NumberText(int number) const { return Format(number, format.c_str()); }
    DString NameOf(int number) const { return prefix + NumberText(number); }
    long long Count() const { return 1LL + last - first; }
};

int countDigits(DString const &text, int at)
{
    int n = 0;
    for (int i = at; i < text.Len(); ++i) n += text[i] >= '0' && text[i] <= '9';
    return n;
}

/// False if a side has no number at its end.
bool parseRange(DString const &spec, Range &range)
{
    DString const left = DString(spec).BeforeFirst(rangeMark, true);
    unsigned int const begin = left.EndNumber(range.first);
    if (begin == npos || spec.EndNumber(range.last) == npos) return false;
    int const at = static_cast<int>(begin);
    range.prefix = DString(left, 0, at);
    range.format = "%.0" + DString(countDigits(left, at)) + 'i';
    return true;
}

/// The numbers of the range in which a name ends, as the range would write them.
void addEndings(DString const &name, Range const &range, std::set<int> &numbers)
{
    int const lowest = std::max(0, name.Len() - mostDigits);
    for (int at = name.Len() - 1; at >= lowest; --at) {
        if ((name[at] < '0' || name[at] > '9') && name[at] != '-') return;
        int number = 0;
        DString const ending(name, at, npos);
        bool const isOurs = ending.ToInt(number) && number >= range.first && number <= range.last;
        if (isOurs && ending == range.NumberText(number)) numbers.insert(number);
    }
}

/// The numbers to ask for: all of the range, or those that some folder could stand for.
std::set<int> candidates(Experiment const &experiment, Range const &range)
{
    std::set<int> numbers;
    if (range.Count() <= mostTested) {
        for (long long number = range.first; number <= range.last; ++number) numbers.insert(static_cast<int>(number));
        return numbers;
    }
    for (int group = 0; ~experiment.GetShotGroupPath(group); ++group) {
        DString const pattern = folderOf(experiment, {range.prefix + '*', group});
        Platform::Search search(pattern.c_str(), Platform::Detail::Names); // which shows names with a dot in front, too
        for (Platform::Entry entry; search.Next(entry);) {
            if (entry.isFolder) addEndings(DString(entry.name.c_str()), range, numbers);
        }
    }
    return numbers;
}

/// From the last shot to the first: a run of shots lies in one group, so that one guess serves all before it, and a
/// range may cross from one group to another.
Shots existingOfRange(Experiment const &experiment, Range const &range, int group)
{
    if (group < 0) group = std::max(0, experiment.GuessPathFromShot(range.NameOf(range.first)));
    std::set<int> const numbers = candidates(experiment, range);
    LogProgress("Got names of shots in range");
    Shots shots;
    for (auto number = numbers.rbegin(); number != numbers.rend(); ++number) {
        Shot shot{range.NameOf(*number), group};
        if (!exists(experiment, shot)) {
            int const found = experiment.GuessPathFromShot(shot.name);
            if (found < 0) continue;
            shot.group = group = found;
        }
        shots.push_back(shot);
    }
    std::reverse(shots.begin(), shots.end());
    return shots;
}

/// The shots of a list or range; false for what is neither.
bool findShots(Experiment const &experiment, DString const &spec, int group, Shots &shots)
{
    Range range;
    if (!spec) return false;
    if (spec.Find(rangeMark) == npos) shots = existingOfList(experiment, spec);
    else if (parseRange(spec, range)) shots = existingOfRange(experiment, range, group);
    else return false;
    LogProgress("Got shot list and checked for existance");
    return true;
}

// ---- Wildcards and files

Shots matching(Experiment const &experiment, DString const &pattern, int group)
{
    DStringArray folders;
    GetFolders(folderOf(experiment, {pattern, group}), folders, true);
    Shots shots;
    int const length = dStrlen(shotWord);
    for (int i = 0; i < folders.Count(); ++i) shots.push_back({folders[i].Mid(length), group, folders[i].Left(length)});
    return shots;
}

void keepHolders(Experiment const &experiment, DString file, Shots &shots)
{
    if (!file || file == "*") return;
    if (file.Find('.') == npos) file << ".wvf";
    auto const lacks = [&](Shot const &shot) {
        DString path = AppendPathElts(folderOf(experiment, shot), file);
        return !FileExists(path);
    };
    shots.erase(std::remove_if(shots.begin(), shots.end(), lacks), shots.end());
}

/// What makes two entries of lists one shot.
std::pair<int, std::string> identity(DString const &name, int group)
{
    std::string text(name.c_str(), static_cast<std::size_t>(name.Len()));
    for (char &c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return {group, text};
}

} // namespace

void Experiment::GetShotList(DString const &spec, int gnum, DStringArray &names, DArray<int, 0> &gnums,
                             DArray<long long, 0> *dates)
{
    DString const wanted = spec; // which may be one of the names
    Shots shots;
    names.Clear();
    if (findShots(*this, wanted, gnum, shots)) deliver(*this, shots, "", names, gnums, dates);
}

void Experiment::GetShotSet(DString const &group, DString const &shots, DString file, DStringArray &names,
                            DArray<int, 0> &gnums, DArray<long long, 0> *dates)
{
    Shots found;
    char const *dated = "";
    int const gnum = ShotPaths.Index(FullPath(group));
    if (group %= listKeyword) {
        findShots(*this, shots, -1, found);
    } else if (gnum >= 0 && shots.Find(rangeMark) != npos) {
        findShots(*this, shots, gnum, found);
    } else if (gnum >= 0) {
        found = matching(*this, shots, gnum);
        dated = valuesFile;
    }
    keepHolders(*this, file, found);
    deliver(*this, found, dated, names, gnums, dates);
}

void Experiment::SaveShotList(DString const &name, DStringArray &names, DArray<int, 0> &gnums)
{
    DStringArray lines(names.Count());
    for (int i = 0; i < names.Count(); ++i) {
        int const group = i < gnums.Count() ? gnums[i] : -1;
        lines[i] = names[i] + pathMark + RelativePath(GetShotGroupPath(group));
    }
    DFile::WriteLines(AppendPathElts(AppendExptPathElts(shotListFolder), name), lines);
}

void Experiment::MergeShotList(DString file, DString const &name, DStringArray &names, DArray<int, 0> &gnums)
{
    DStringArray mergedNames;
    DArray<int, 0> mergedGroups;
    std::set<std::pair<int, std::string>> known;
    for (Shot const &shot : readList(*this, file)) {
        mergedNames.Add(shot.name);
        mergedGroups.Add(shot.group);
        known.insert(identity(shot.name, shot.group));
    }
    for (int i = 0; i < names.Count() && i < gnums.Count(); ++i) {
        if (known.count(identity(names[i], gnums[i])) > 0) gnums[i] = -1;
        if (gnums[i] < 0) continue;
        mergedNames.Add(names[i]);
        mergedGroups.Add(gnums[i]);
    }
    SaveShotList(name, mergedNames, mergedGroups);
}
