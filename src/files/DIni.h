/// The settings store: the image in memory of one text file of sections and key lines. A change is
/// written through to the file at once unless it is held back.
///
/// A section begins with a line whose first character is `[`; its name runs to the last `]` of the line. All
/// other lines of a section are kept as they stand, comments too; blank lines and lines before the first section are
/// dropped on loading. A key line is name, `=`, value: spaces count, and the value runs to the end of the line.
/// Names of sections and keys ignore case. There is no lock on the file.
#pragma once

#include "foundation/DArray.h"
#include "foundation/DStringArray.h"

class VODREL_API DIni {
public:
    DIni() = default;
    explicit DIni(DString const &name);
    DIni(DIni const &other) = default;
    DIni &operator=(DIni const &other) = default;

    /// Loads a file; a missing one is created. An existing file that reads as empty is tried again ten times, 50 ms
    /// apart, since another process may be rewriting it. Clears the hold, and the current section. False for an
    /// empty name, or a file that can't be created: the store then has no file.
    bool SetFileName(DString const &name);
    /// Reloads from the disk; the current section is lost.
    bool Refresh();
    DString FileName() const { return fileName; }

    int nSections() const { return sectionLines.Count(); }
    /// The number of lines of the current section, comments included; 0 without one.
    int nKeys() const;

    /// Makes `name` the current section, creating it if it is missing. A new section reaches the file
    /// with the next write.
    void SetSection(DString const &name);
    bool SectionExists(DString const &name) const;
    DStringArray GetSectionNames() const { return sectionNames; }
    DStringArray GetFullSection(DString const &name) const;
    void SetFullSection(DString const &name, DStringArray const &lines);
    void AddSection(DString const &name, DStringArray const &lines); ///< the same as SetFullSection
    void RenameSection(DString const &from, DString const &to);
    /// The current section is lost in any case.
    void DeleteSection(DString const &name);

    // Keys of the current section. A key that begins with `;` is never found.

    /// `def` also for an empty value.
    DString GetKeyValue(DString const &key, char const *def = nullptr) const;
    /// Makes `section` the current one (none if it doesn't exist). The value may be empty; `def` only
    /// if section or key is missing.
    DString GetSectionKeyValue(DString const &section, DString const &key, char const *def = nullptr);
    /// True for "True" in any case and for exactly "1".
    bool GetKeyBoolValue(DString const &key, bool def) const;
    /// A leading number; with an `e` in the value all of it must be a number, which is truncated.
    int GetKeyIntValue(DString const &key, int def) const;
    float GetKeyFloatValue(DString const &key, float def) const;
    DStringArray GetKeyRow(DString const &key, int minCount, char const *delim, char const *def = nullptr) const;
    /// Replaces the first line of the key, in the new spelling, or adds one. Nothing without a current section.
    void SetKeyValue(DString const &key, DString const &value);
    /// Makes `section` the current one, or none.
    void DeleteKey(char const *section, DString const &key);

    /// Writes to `name`, or to the own file if it is empty, in place; without either true and nothing is written.
    /// `keepName` true saves a copy and stays with the own file. False, and a line in the log, if the file
    /// can't be opened.
    bool WriteFile(DString name, bool keepName);
    /// Holds changes in memory; the end of a hold writes the file.
    void HoldWrite(bool hold);
    /// Writes, and moves the snapshot that `RestoreFile` goes back to.
    void CommitFile();
    /// Puts the last loaded or committed text back, in memory and on the disk.
    void RestoreFile();
    /// Compares the file's content with memory, section by section, without regard to order and case. Blank lines,
    /// lines before the first section and outer spaces in the file count as changes.
    bool Changed() const;

protected:
    /// The line of a key in the current section, -1 for none; the value begins at `valueIndex`.
    int keyindex(DString const &key, int &valueIndex) const;
    /// Builds sections and lines from `fileText`. The number of the current section stays as it was.
    void loadstring();

private:
    bool findvalue(DString const &key, DString &value) const;
    bool hassection() const { return currentSection >= 0 && currentSection < sectionLines.Count(); }
    void appendsection(DString const &name);
    void writethrough();
    void clearsections();

    DString fileName;
    int currentSection = -1;
    DString fileText;
    DStringArray sectionNames;
    DArray<DStringArray, 1> sectionLines;
    bool holdWrite = false;
};
