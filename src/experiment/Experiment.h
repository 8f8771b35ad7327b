/// The centre of the system: which experiment folder is open, which shot is current, where every data file of every
/// shot lies. An experiment is a folder; a shot is a folder named "Shot" and the shot's name inside one of the
/// experiment's shot paths; the folders are all the record there is.
///
/// Shot path 0 is "Shots" in the experiment folder; more come from section "Groups" of the experiment's ini. A group
/// number is an index into them; -1 as an argument means that the group is to be found. One thread at a time; no
/// locks.
#pragma once

#include "data/DataPtr.h"
#include "files/DIni.h"
#include "foundation/DArray.h"
#include "foundation/DStringArray.h"

/// The constants of formulas: what an exponent stands behind, and what is no code of a parameter.
extern DString const NumberChars;
extern DString const OperatorChars;

/// A host's own values for formulas: stores the value of a name that it knows and answers true; false is no opinion.
using ScalarLookup = bool (*)(DString const &name, float &value);

/// A line of section "Groups": a path whose last element may hold wildcards, and a name.
struct VODREL_API GroupName {
    DString Path;
    DString Name;
};

/// A line of section "ShotCreation": in which group a new shot is made, from the look of its name.
struct VODREL_API GroupCue {
    DString Cue;
    int Group = 0;
};

/// A copy shares the borrowed data objects of its source, so that only one of the two may release them or be destroyed.
class VODREL_API Experiment {
public:
    static int const CurDataVersion;

    // ---- The experiment folder ----

    /// Opens an experiment, making its folders; always true. There is no current shot afterwards. A trailing backslash
    /// sets the paths and changes nothing else. An empty `folder` forgets name, folder and shot; groups, cues and
    /// shot paths stay what they were.
    bool SetExperimentFolder(DString const &folder);
    DString GetExperimentFolder() const { return ExperimentFolder; }
    DString GetExperimentName() const { return ExperimentName; }
    /// The folder that contains the experiment, not the experiment's own.
    DString GetExperimentPath() const { return ExperimentPath; }
    DString GetExperimentUNCFolder() const { return ExperimentUNCFolder; }
    DString AppendExptPathElts(DString const &a) const;
    DString AppendExptPathElts(DString const &a, DString const &b) const;
    /// The lines of section "Groups". A line may have given none or several shot paths: these don't correspond by
    /// index.
    DArray<GroupName, 1> const &GetGroupNames() const { return GroupNames; }

    /// The shot path of the current group, empty if there is none.
    DString GetCurPath() const;
    int GetCurrentGroup() const { return CurrentGroup; }
    /// A shot path, empty for a number out of range.
    DString GetShotGroupPath(int gnum) const;
    /// The group number of a path in any form, -1 for none.
    int GetShotGroupNumber(DString const &path) const;

    /// A dot and a backslash lead to the experiment folder, two dots and a backslash to the folder that contains it,
    /// anything else goes through `GetLocalFileName`.
    DString FullPath(DString const &path) const;
    /// The inverse, or the network form of a path under neither. The test is one of plain prefixes: a neighbour whose
    /// name begins like the experiment's counts as inside it and loses a character.
    DString RelativePath(DString const &path) const;

    // ---- The current shot and its values ----

    /// Makes a shot current; a leading "*" is dropped. With a group number the disk isn't looked at. Ends a pause,
    /// unless the shot, spelled exactly so, is current already. False if there is no such group, with nothing changed,
    /// or no experiment: then the current group is -1 and the shot folder is the experiment folder.
    bool SetShot(DString shot, int gnum);
    /// Saves the current shot, in a single place, and sets another.
    void SetTempShot(DString const &shot, int gnum);
    /// Sets the saved shot; without one, the shot of an empty name in group 0.
    void ResetShot();
    DString GetShotName() const { return ShotName; }
    DString GetShotFolder() const { return ShotFolder; }

    /// A value of the current shot; "Shot" in any case is its name; `A::B` is B where A has no value. A missing
    /// "Scalars.ini" is created.
    DString GetShotData(DString const &key);
    /// Writes a value to the shot's file and the group's cache at once; an empty value deletes the key. The shot's
    /// own name isn't taken as "Comment".
    void SetShotData(DString const &key, DString const &value);
    /// Copies all values of the current shot into the group's cache. In a pause this leaves both stores without a
    /// current section.
    void SetShotCacheData();
    /// The shot and the group of a data file name; of a bare file name the current ones.
    int GetShotGNumFromFileName(DString const &name, DString &shot);
    /// The group in which a shot's folder exists, the current one first; -1 for none.
    int GuessPathFromShot(DString const &shot) const;
    /// The current shot's name with its trailing number stepped, in the same width.
    DString GetOffsetShotName(int offset) const;

    /// In a pause the two stores of the shot aren't reloaded before each access. It doesn't hold back writes: loading
    /// the files for the pause ends the hold, so that each change is on disk at once, and the end of the pause writes
    /// nothing.
    void SetPauseIO(bool pause);

    // ---- Data file names ----

    /// The path, without extension, of a file of the current shot, of another ("A1\W"), or of a path that begins with
    /// "." or two backslashes. References in brackets are expanded first. Empty for a shot that isn't found.
    DString GetDataFileName(DString name);
    /// Data names that match a pattern, in the form `GetDataFileName` takes. With `clear` false the old entries are
    /// treated again: they lose a further extension and gain the shot.
    void GetDataFileNames(DString const &pattern, DStringArray &names, bool clear);
    /// Resolves a shot offset: ">2\W", "<\W". A bare "<" steps forward, as ">" does.
    DString CleanDataFileName(DString const &name) const;

    // ---- Life of a shot ----

    /// Makes a shot current, creating its folder; a leading "*", which is dropped from `name`, allows one that exists.
    /// Gives its group, or the complement of the group where it already stands (-1 without an experiment). `stamp`
    /// writes "Date" for a reused shot too. With a file behind a backslash ("A1\W") an existing shot is taken as long
    /// as no file of it ends in "W.wvf"; none is made. The name isn't tested by `IsValidName`.
    ///
    /// The first cue that fits gives the group of a new shot: "*" fits all, "#" numbers, "False" names that begin with
    /// a capital "A", "True" all others, anything else names that begin with it. Without one it is group 0.
    int CreateShot(DString &name, DString const &comment, bool stamp);
    /// Deletes the current shot's folder for good, with its section in the group's cache. False without a current
    /// shot, otherwise true whatever came of it; the shot stays current. A shot whose name holds a wildcard or leads
    /// out of the shot path keeps its folder.
    bool DeleteShot();
    /// True, with the new name in force, even if the folder couldn't be renamed, as with names that hold a wildcard or
    /// lead out of the shot path; false, with a message, if another shot has the name, and false without a current
    /// shot. A change of case alone is no other shot.
    bool RenameShot(DString name);
    /// Tests a name against these characters, those of the first line with `set` true, of the second with false:
    ///
    ///     !"#$&*,/:;<>?{|}~
    ///     !"#$*:;=?@\{}~
    bool IsValidName(DString const &name, bool set) const;

    // ---- Lists and sets of shots: names, group numbers, and with `dates` not null a date for each, in seconds since
    // 1970 UTC. Only shots that are on the disk are given, names in the spelling of the selection. ----

    /// The shots of a list or of a range. A `spec` without ":" names a file in "ShotLists", with or without ".txt",
    /// of lines "name;shot path" or "name", which means group 0; lines may be wrapped in double quotes, and `gnum`
    /// isn't used. "A001:A020" and "A001:20" are the range of the numbers at the ends of the two sides, in the width
    /// and with the prefix of the left one. It is looked for in group `gnum` (below 0: where its first shot is, else
    /// group 0), and a shot that isn't there in the others; the group where it is found is then tried first for all
    /// shots before it.
    ///
    /// An empty `spec`, and a range without two numbers, empty `names` and leave the other arrays as they were. The
    /// dates are those of the folders.
    void GetShotList(DString const &spec, int gnum, DStringArray &names, DArray<int, 0> &gnums,
                     DArray<long long, 0> *dates);
    /// The shots of a shot path that match the wildcard `shots`, in the order of the platform, with the dates of their
    /// "Scalars.ini"; or of a range in that path; or, with the group "(Shot list)", of a list or range. Of these the
    /// ones that hold a data file `file` (".wvf" without an extension, may hold wildcards; all for "" and "*"). A group
    /// that is no shot path empties all arrays.
    void GetShotSet(DString const &group, DString const &shots, DString file, DStringArray &names,
                    DArray<int, 0> &gnums, DArray<long long, 0> *dates);
    /// Writes a list to "ShotLists", under `name` exactly as given: only with ".txt" can it be read again. The folder
    /// must be there. A shot in a group that there isn't gets an empty path.
    void SaveShotList(DString const &name, DStringArray &names, DArray<int, 0> &gnums);
    /// Saves the shots of the list in `file`, a path with or without ".txt", followed by those of `names` that it
    /// lacks. A shot that it has is marked in `gnums` of the caller by -1; entries of a negative group are left out,
    /// doubles in `names` stay. Shots of `file` that aren't on the disk stay, and lines of unknown groups too, without
    /// their path.
    void MergeShotList(DString file, DString const &name, DStringArray &names, DArray<int, 0> &gnums);

    // ---- Scalars: numbers of the current shot, and formulas over them (docs/language.md) ----

    /// The value of a formula, -DFMax if it has none. `lookup`, which may be null, is asked before the shot for each
    /// name; if it gives an invalid value the name has none. References "![key]" are replaced first.
    ///
    /// A formula is text that is rewritten until it is a number. Brackets and parentheses are replaced by their value
    /// with eight significant digits: "(1/3)" goes on as "0.33333334", "3(2)" is 32. Blanks aren't skipped: "2 * 3" has
    /// no value. A name in memory, "@W", is gone after a formula has asked for a parameter of it. All arithmetic is in
    /// single precision from left to right, functions and powers are computed in double precision and rounded to it,
    /// the arc tangent too, whose single form differs from system to system.
    float GetScalarData(DString expr, ScalarLookup lookup);
    /// Stores a number as a value of the shot, or, by a name like "W\T2", as free parameter 2 of a waveform or matrix
    /// of the current shot: the digit is 0 to 9 as in `Waveform::Slot`, 0 to 5 as in `Matrix::Slot`. Any other name
    /// with a backslash does nothing.
    void SetScalarData(DString const &name, float value);

    // ---- Text ----

    /// Replaces references "![key]", and with `marked` false also "[key]", by values of the current shot. A key
    /// without a value empties the whole text.
    DString GetExpandedString(DString const &text, bool marked);
    /// Replaces references "![key]", "![formula]" and "![formula%.2f]", whose end is a print format for a number, by
    /// values of the current shot; "(undefined)" where there is none. A text value and the shot's name drop the format.
    /// The format begins at the first "%", so that "![W\t%[50]]" is none of a parameter; a key whose value is a number
    /// is evaluated as a formula too. With unbalanced brackets the whole label stays as it is.
    ///
    /// The number is added by `DString::AddFormatted`: a format that doesn't take a number, or needs more than 20
    /// characters, takes the last character of the text before it along, or gives the usual form if there is none.
    DString GetExpandedLabel(DString const &text);

    // ---- Backups ----

    /// Where backups go: "Path" in section "Backup" of the experiment's ini, else "Backup" beside the experiment. The
    /// folder is made. A "BackupLocation.ini" in it may lead elsewhere, to a path that is taken as it stands.
    DString GetBackupPath();
    /// Stores that folder. A path that ends in an element with the experiment's name means the folder above it.
    void SetBackupPath(DString path);
    /// A free name for the backup of a shot's folder, of the current one if `folder` is empty: the same place below
    /// the backup path as it has below `GetExperimentPath()`, with "_1", "_2" ... behind it if it is taken. The test is
    /// one of plain prefixes, apart from case, and every occurrence of that path in `folder` is replaced. A folder that
    /// lies elsewhere goes to "Backup" beside the experiment whatever the backup path, as a backup of the current shot.
    DString GetBackupShotFolder(DString folder);
    /// Copies the current shot to a folder of its own; nothing is told.
    void BackupShot();
    /// Writes section "LastRun" anew, with shot, shot path and time.
    void StampConfigFile(DIni &ini);

    // ---- Borrowed data objects. They belong to the cache: a caller gives them
    // back and never deletes them. ----

    /// An object, by the name of its data file, loaded anew at each call; by an "@" name, one that lives in memory;
    /// by an empty name, a new one. Null if there is no such object or file. Particle groups always come from a file.
    void *GetDataPtr(DString const &name, DataType type);
    /// A new object in memory under a name; null for an empty name or a particle group. Only an "@" name can be found
    /// again, and of two of one name the first.
    void *InitDataPtr(DString const &name, DataType type);
    /// Gives an object back, and sets `data` to null: with an empty name it is dropped, with an "@" name kept under
    /// it, with another written to that file and dropped. False only if the file couldn't be written; the object is
    /// gone all the same.
    bool ReleaseDataPtr(DString const &name, DataType type, void *&data);
    /// Drops all objects and saves none.
    void ClearDataPtrs();

private:
    DataPtr &appendDataPtr(DataType type);
    int findDataPtr(void const *object, DataType type, int start) const;
    void readGroups(DStringArray const &lines);
    void readCues(DStringArray const &lines);
    bool isGroup(int gnum) const { return gnum >= 0 && gnum < ShotPaths.Count(); }
    DString shotFolder(int gnum, DString const &shot) const;
    bool hasShot(int gnum, DString const &shot) const;
    void loadStores();
    bool holdsDataFile(int gnum, DString const &shot, DString const &file) const;
    int groupForNewShot(DString const &shot) const;
    DString cacheSection() const;

    // The levels of the language of formulas, the lowest first.
    float ParseInput(DString text, ScalarLookup lookup);
    float ParseAddend(DString text, ScalarLookup lookup);
    float ParseFactor(DString text, ScalarLookup lookup);
    float ParsePower(DString text, ScalarLookup lookup);
    float ParseSingle(DString text, ScalarLookup lookup);
    bool replacebrackets(DString &text, ScalarLookup lookup, float &result);
    bool replaceparentheses(DString &text, ScalarLookup lookup, float &result);
    float parsealternative(DString const &text, ScalarLookup lookup);
    float parsefallback(DString const &text, ScalarLookup lookup);
    float parameterOf(DString const &dataName, DString const &parameter);
    bool istrue(DString const &key) { return GetShotData(key) %= "True"; }
    DString settingsFile() const;
    DString backupSetting() const;
    void appendreference(DString &label, DString const &reference);

    DArray<GroupName, 1> GroupNames;
    DArray<GroupCue, 1> GroupCues;
    DStringArray ShotPaths;
    DString Description;
    DString ExperimentPath;
    DString ExperimentFolder;
    DString ExperimentName;
    DString ExperimentUNCFolder;
    int CurrentGroup = 0;
    DString ShotFolder;
    DString ShotName;
    DString SavedShotName;
    int SavedGroup = 0;
    DString ScalarsFile;
    DString ScalarCacheFile;
    DIni ScalarsIni;
    DIni ScalarCacheIni;
    bool PauseIO = false;
    DArray<DataPtr, 1> DataPtrs;
};

/// The one experiment on which all call interfaces work.
extern VODREL_API Experiment Expt;
