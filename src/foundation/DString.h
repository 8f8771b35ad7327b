/// The string of the system: 8-bit characters behind a hidden header, shared between copies by a
/// reference count and copied only when written. Every name, path, settings line and message is one.
///
/// Counts and free list are plain data: all strings of a process belong to one thread at a time.
#pragma once

#include "foundation/Export.h"
#include "foundation/Numbers.h"

/// What a search answers when nothing is found; as a count, all that remains. A search result is
/// compared with it as it stands: it is 0x7FFFFFFF, not -1.
extern VODREL_API unsigned int const npos;

/// The shared empty string that a default-constructed DString holds. Never counted, never freed.
extern VODREL_API char const *const DEmptyString;

/// Carriage return and line feed, the line delimiter of all text files. DStringArray takes this very
/// pointer as the command to split into lines.
extern VODREL_API char const *const LDelim;

/// The length of LDelim, 2.
extern VODREL_API int const LenLD;

/// The length of a C string, 0 for a null pointer.
VODREL_API int dStrlen(char const *text);

/// Compares at most `n` bytes apart from ASCII case, up to the first NUL: negative, 0 or positive.
int CompareFolded(char const *a, char const *b, int n = npos);

/// The object is one pointer to the first character, so that it can be handed to whatever wants a
/// NUL-terminated text. The block behind it is a multiple of 32 bytes strictly above length + 25 and
/// never grows ahead of need. Blocks of 32 bytes are recycled on a free list.
///
/// A null pointer is the state between a release and the next assignment; it counts as length 0,
/// except where an operation says otherwise.
class VODREL_API DString {
public:
    DString() noexcept : chars(const_cast<char *>(DEmptyString)) {}
    DString(DString const &other);

    /// The slice of `count` characters from `start`, cut at the end. A negative count gives an empty text.
    DString(DString const &source, int start, int count);

    /// `n` copies of `c`; `n` below 1 gives no characters.
    DString(char c, int n = 1);

    /// At most `n` characters of a C string; null counts as empty.
    DString(char const *text, int n = npos);

    /// The text that the matching `operator<<` appends: a bool is "True" or "False", a `long long` a date.
    DString(int value);
    DString(unsigned int value);
    DString(float value);
    DString(double value);
    DString(void *value);
    DString(long long time);
    DString(bool value);

    ~DString();

    DString &operator=(DString const &other);
    DString &operator=(char const *text);
    /// One character; a NUL gives a string of length 1.
    DString &operator=(char c);

    /// A deep copy: the only way to assign without sharing. Of a string that shares the block already it does nothing.
    DString &Copy(DString const &other);

    void operator+=(DString const &other);
    void operator+=(char const *text);
    void operator+=(char c);

    DString &operator<<(DString const &other);
    DString &operator<<(char const *text);
    DString &operator<<(char c);
    DString &operator<<(int value);          ///< "%i"
    DString &operator<<(unsigned int value); ///< "%u"
    DString &operator<<(float value);        ///< "%.8g"
    DString &operator<<(double value);       ///< "%.16g"
    DString &operator<<(void *value);        ///< "%p"
    /// Not a number but a time: seconds since 1970 as local "%m/%d/%Y %H:%M:%S". A time that the calendar
    /// doesn't reach appends nothing.
    DString &operator<<(long long time);
    DString &operator<<(bool value); ///< "True" or "False"

    char const *c_str() const { return chars; }
    int Len() const { return chars ? header()->len : 0; }

    /// The character at `i`, which isn't checked; 0 for a null pointer.
    char operator[](int i) const { return chars ? chars[i] : '\0'; }

    /// Writes one character, after making a shared string private. An index outside is ignored.
    void SetChar(int i, char c);

    /// Room for exactly `n` characters, those behind the old length undefined. The length is `n` at once: the caller
    /// fills all of it, or calls `Truncate` afterwards. Writing on after the string was shared changes the copies too.
    char *GetBuffer(int n);

    /// Sets the length to `n`. Characters beyond the old length are NULs.
    DString &Truncate(int n);

    /// Drops `n` characters from the end; more than there are drops nothing.
    DString &TruncateBy(int n);

    /// `==` compares bytes up to the first NUL, `%=` the same apart from ASCII case, `/=` is its
    /// opposite. None of them changes the string, whatever the operators' usual meaning.
    bool operator==(DString const &other) const;
    bool operator==(char const *text) const;
    bool operator!=(DString const &other) const;
    bool operator!=(char const *text) const;
    bool operator%=(DString const &other) const;
    bool operator%=(char const *text) const;
    bool operator/=(DString const &other) const;
    bool operator/=(char const *text) const;
    bool operator<(DString const &other) const;
    bool operator>(DString const &other) const;

    bool operator!() const { return Len() == 0; } ///< empty
    bool operator~() const { return Len() > 0; }  ///< not empty

    /// -1, 0 or 1 by bytes.
    int Compare(DString const &other) const;
    int Compare(char const *text) const;

    /// Both ignore case.
    bool StartsWith(DString const &text) const;
    bool StartsWith(char const *text) const;

    /// Ignores case. The two forms differ for an empty text: the DString form answers false, the other
    /// true. Callers rely on both.
    bool EndsWith(DString const &text) const;
    bool EndsWith(char const *text) const;

    /// Searches give an index or `npos`. `Find` regards case, `FindI` doesn't. A start at or behind
    /// the end finds nothing, not even an empty text.
    unsigned int Find(char c, int start = 0) const;
    unsigned int Find(char const *text, int start = 0) const;
    unsigned int Find(DString const &text, int start = 0) const;
    unsigned int FindI(char const *text, int start = 0) const;
    unsigned int FindI(DString const &text, int start = 0) const;
    unsigned int FindFirstOf(char const *set, int start = 0) const;
    unsigned int FindFirstOf(DString const &set, int start = 0) const;
    unsigned int FindFirstNotOf(char const *set, int start = 0) const;
    unsigned int FindFirstNotOf(DString const &set, int start = 0) const;

    /// Backward searches, which begin at `start` and regard case.
    unsigned int RFind(char c, int start = npos) const;
    unsigned int RFind(char const *text, int start = npos) const;
    unsigned int RFind(DString const &text, int start = npos) const;

    // Slices change nothing and return a new string. An empty slice of a text has a block of its own, one of an empty
    // text is the shared empty string: `ToInt` tells them apart.
    DString Left(int n);
    DString Mid(int start, int n = npos);
    DString Right(int n);

    /// The text before or after the first or last `c`. Where `c` is absent, all of it if `whole`, else nothing.
    DString BeforeFirst(char c, bool whole);
    DString AfterFirst(char c, bool whole);
    DString BeforeLast(char c, bool whole);
    DString AfterLast(char c, bool whole);

    /// Without leading and trailing spaces. Only the space itself counts; tabs stay.
    DString Trim();

    /// Without any space.
    DString Despace();

    /// `find` replaced once or, with `all`, everywhere, regarding case; what was put in isn't searched
    /// again. Without an occurrence, and for an empty `find`, the text comes back shared.
    DString Replace(DString const &find, DString const &put, bool all);
    DString Replace(char const *find, DString const &put, bool all);
    DString Replace(char const *find, char const *put, bool all);

    /// A copy in which each bare line feed has become carriage return and line feed. The source, and
    /// all that share its block, keep the byte 0xC9 where those line feeds stood; and a 0xC9 that was
    /// in the text before becomes a line break too.
    DString LFtoCRLF();

    /// Removes trailing spaces in place, but never the first character, so that a text of spaces ends
    /// as one space. What stands behind a NUL goes as well.
    DString &RTrim();

    /// Removes the last dot and all behind it, in place, unless it is the first character. The search
    /// doesn't stop at a backslash.
    DString &RemoveExt();

    /// In place, up to the first NUL, ASCII letters only.
    DString &ToLower();
    DString &ToUpper();

    /// Appends a value in a print format for it, in 20 characters at most, and shortens an exponent:
    /// 1e+05 becomes 1e5. The exponent looked at is that of the last `e` in the whole text. A result
    /// that doesn't fit, or a format that doesn't take the value, gives the default format on an empty
    /// string; a string that already holds text loses its last character instead. Callers format into
    /// an empty string.
    DString &AddFormatted(int value, char const *format);
    DString &AddFormatted(unsigned int value, char const *format);
    DString &AddFormatted(float value, char const *format);
    DString &AddFormatted(double value, char const *format);

    /// The number at `start`; anything may follow it. 32 bits on every system: what doesn't fit is
    /// clamped. An empty string in a block of its own stores 0 and answers false, the shared empty
    /// string leaves `out` alone.
    bool ToInt(int &out, int start = 0) const;
    bool ToUint(unsigned int &out, int start = 0) const;

    /// True only if the whole rest of the text is the number; the value read so far is stored in any case.
    bool ToDouble(double &out, int start = 0) const;
    bool ToFloat(float &out, int start = 0) const;

    /// The whole text is a number; white space may lead, not follow.
    bool IsNumeric() const;

    /// Empty, a number, or the text of a non-finite value ("1.#", "-1.#").
    bool IsSemiNumeric() const;

    /// Where the number at the end of the text begins, `npos` for none; `out` is its value. A sign and
    /// white space in front belong to it.
    unsigned int EndNumber(int &out) const;

    /// Reads month, day, year, hour, minute, second, with or without an AM or PM mark. The time is one
    /// day before the text: the day of the month counts from 0 here as the month does, and callers
    /// rely on it. The second argument has no effect.
    bool ToDate(long long &out, int = 0) const;

private:
    friend struct DStringInspector;

    struct Header {
        int refs;
        int len;
        int allocLen;
    };

    Header *header() const { return reinterpret_cast<Header *>(chars) - 1; }
    bool counted() const { return chars && chars != DEmptyString; }
    bool reusable(int size) const;

    int GetRefs() const { return chars ? header()->refs : 0; }
    int GetAllocLength() const { return chars ? header()->allocLen : 0; }

    static int blockSize(long long n);
    static char *AllocBuffer(int size);
    static void freeBuffer(char *block);
    void Release();
    void ReAlloc(int n);
    void AllocCopy(int n, char const *source);
    void ConcatSelf(long long n, char const *source);
    void setLength(int n);
    template <typename Value>
    DString &addPrinted(Value value, char const *format, int room);
    template <typename Value>
    bool addFormatted(Value value, char const *format, char const *usual, int room);
    void tidyExponent();
    int parseStart(int start) const;

    char *chars;
};

VODREL_API DString operator+(DString const &a, DString const &b);
VODREL_API DString operator+(DString const &a, char const *b);
VODREL_API DString operator+(DString const &a, char b);
VODREL_API DString operator+(char a, DString const &b);
VODREL_API DString operator+(char const *a, DString const &b);

/// A value in a print format for it, by `DString::AddFormatted` on an empty text.
VODREL_API DString Format(int value, char const *format);
VODREL_API DString Format(unsigned int value, char const *format);
VODREL_API DString Format(float value, char const *format);
VODREL_API DString Format(double value, char const *format);

/// The present local date and time as text, "%m/%d/%Y %H:%M:%S".
VODREL_API DString Now();
