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

    /// ".\" leads to the experiment folder, one "..\" to the folder that contains it, anything else goes through
    /// `GetLocalFileName`.
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
    /// Tests a name against the characters !"#$&*,/:;<>?{|}~ (`set` true) or !"#$*:;=?@\{}~ (false).
    bool IsValidName(DString const &name, bool set) const;

    // ---- Text ----

    /// Replaces references "![key]", and with `marked` false also "[key]", by values of the current shot. A key
    /// without a value empties the whole text.
    DString GetExpandedString(DString const &text, bool marked);

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
    void readGroups(DStringArray const &lines);
    void readCues(DStringArray const &lines);
    bool isGroup(int gnum) const { return gnum >= 0 && gnum < ShotPaths.Count(); }
    DString shotFolder(int gnum, DString const &shot) const;
    bool hasShot(int gnum, DString const &shot) const;
    void loadStores();
    bool holdsDataFile(int gnum, DString const &shot, DString const &file) const;
    int groupForNewShot(DString const &shot) const;
    DString cacheSection() const;

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
