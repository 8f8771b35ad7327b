/// Numbers, truth values and dates to text and back.

#include <cstdio>
#include <cstring>
#include <ctime>

#include "foundation/DString.h"
#include "platform/Platform.h"

namespace {

int const addFormattedRoom = 20;
int const intRoom = 12;
int const floatRoom = 15;
int const doubleRoom = 25;
int const dateRoom = 25;

char const *const intFormat = "%i";
char const *const unsignedFormat = "%u";
char const *const floatFormat = "%.8g";
char const *const doubleFormat = "%.16g";

double widened(float value)
{
    return value;
}
double widened(double value)
{
    return value;
}
int widened(int value)
{
    return value;
}
unsigned int widened(unsigned int value)
{
    return value;
}

/// Prints a pointer as the host's routine does.
int printPointer(char *target, int limit, void *value)
{
    char local[64];
    int const n = std::snprintf(local, sizeof local, "%p", value);
    if (n < 0 || n > limit) return 0;
    std::memcpy(target, local, static_cast<std::size_t>(n));
    return n;
}

bool isSeparator(char c)
{
    return c == ' ' || c == '-' || c == '/' || c == ':';
}

/// The six fields of a date text, in their order, with what stands for a missing one.
enum DateField { Month, Day, Year, Hour, Minute, Second, nDateFields };
int const missingField[nDateFields] = {1, 1, 0, 0, 0, 0};

struct DateText {
    DString field[nDateFields];
    bool pm = false;

    int value(DateField which) const
    {
        int number = 0;
        return field[which].ToInt(number) ? number : missingField[which];
    }
};

/// Cuts the text into fields, up to an AM or PM mark. False if the mark stands too far in front.
bool cutDate(DString const &text, DateText &date)
{
    unsigned int mark = text.RFind('M');
    if (mark == npos) mark = text.RFind('m');
    if (mark < 2) return false;
    int limit = text.Len();
    if (mark != npos) {
        limit = static_cast<int>(mark) - 1;
        date.pm = text[limit] == 'P' || text[limit] == 'p';
    }
    int fields = 0;
    int start = 0;
    for (int i = 1; i < limit && fields < nDateFields; ++i) {
        if (!isSeparator(text[i])) continue;
        date.field[fields++] = DString(text, start, i - start);
        start = i + 1;
    }
    // To the very end of the text, mark included; reading stops at the first character that is no digit.
    if (fields < nDateFields && start < limit) date.field[fields] = DString(text, start, npos);
    return true;
}

/// `n` less one, for a number that a text may have driven to the end of the range.
int lessOne(int n)
{
    return n > -2147483647 ? n - 1 : n;
}

} // namespace

// ---- Values to text ----

/// Prints behind the old end, with just that room.
template <typename Value>
DString &DString::addPrinted(Value value, char const *format, int room)
{
    int const old = Len();
    ReAlloc(old + room);
    int const n = PrintBounded(chars + old, room, format, value);
    setLength(old + (n < 0 ? 0 : n));
    return *this;
}

DString &DString::operator<<(int value)
{
    return addPrinted(value, intFormat, intRoom);
}

DString &DString::operator<<(unsigned int value)
{
    return addPrinted(value, unsignedFormat, intRoom);
}

DString &DString::operator<<(float value)
{
    return addPrinted(widened(value), floatFormat, floatRoom);
}

DString &DString::operator<<(double value)
{
    return addPrinted(value, doubleFormat, doubleRoom);
}

DString &DString::operator<<(void *value)
{
    int const old = Len();
    ReAlloc(old + doubleRoom);
    setLength(old + printPointer(chars + old, doubleRoom, value));
    return *this;
}

DString &DString::operator<<(long long time)
{
    int const old = Len();
    ReAlloc(old + dateRoom);
    std::tm local = {};
    char text[dateRoom + 1] = {};
    int n = 0;
    // Systems differ in how they write a year of few digits, or one before the first.
    if (Platform::LocalTime(time, local))
        n = std::snprintf(text, sizeof text, "%02d/%02d/%04lld %02d:%02d:%02d", local.tm_mon + 1, local.tm_mday,
                          1900LL + local.tm_year, local.tm_hour, local.tm_min, local.tm_sec);
    if (n > dateRoom) n = 0;
    std::memcpy(chars + old, text, static_cast<std::size_t>(n));
    setLength(old + n);
    return *this;
}

DString &DString::operator<<(bool value)
{
    return *this << (value ? "True" : "False");
}

DString::DString(int value) : DString()
{
    *this << value;
}

DString::DString(unsigned int value) : DString()
{
    *this << value;
}

DString::DString(float value) : DString()
{
    *this << value;
}

DString::DString(double value) : DString()
{
    *this << value;
}

DString::DString(void *value) : DString()
{
    *this << value;
}

DString::DString(long long time) : DString()
{
    *this << time;
}

DString::DString(bool value) : DString()
{
    *this << value;
}

DString Now()
{
    return DString(Platform::UnixTime());
}

/// `usual` and `room` are the default format of the type and its room. What comes of a text that doesn't fit is told by
/// whether the sum of the old length and -1 is negative: only an empty string gets the default format.
template <typename Value>
bool DString::addFormatted(Value value, char const *format, char const *usual, int room)
{
    DString const kept(format); // it may lie in our own block
    int const old = Len();
    ReAlloc(old + addFormattedRoom);
    int const end = PrintBounded(chars + old, addFormattedRoom, kept.c_str(), widened(value)) + old;
    if (end >= 0) {
        setLength(end);
        return true;
    }
    if (Len() >= addFormattedRoom) ReAlloc(Len() - addFormattedRoom);
    addPrinted(widened(value), usual, room);
    return false;
}

/// Takes one leading zero and the plus sign out of the exponent behind the last `e` of the whole text.
void DString::tidyExponent()
{
    unsigned int const found = RFind('e');
    if (found == npos) return;
    int const e = static_cast<int>(found);
    int removed = 0;
    for (int at : {e + 2, e + 1}) { // the zero first, since it stands behind the sign
        char const drop = at == e + 2 ? '0' : '+';
        if (at >= Len() || chars[at] != drop) continue;
        std::memmove(chars + at, chars + at + 1, static_cast<std::size_t>(Len() - at));
        ++removed;
    }
    ReAlloc(Len() - removed);
}

DString &DString::AddFormatted(int value, char const *format)
{
    addFormatted(value, format, intFormat, intRoom);
    return *this;
}

DString &DString::AddFormatted(unsigned int value, char const *format)
{
    addFormatted(value, format, unsignedFormat, intRoom);
    return *this;
}

DString &DString::AddFormatted(float value, char const *format)
{
    if (addFormatted(value, format, floatFormat, floatRoom)) tidyExponent();
    return *this;
}

DString &DString::AddFormatted(double value, char const *format)
{
    if (addFormatted(value, format, doubleFormat, doubleRoom)) tidyExponent();
    return *this;
}

DString Format(int value, char const *format)
{
    return DString().AddFormatted(value, format);
}

DString Format(unsigned int value, char const *format)
{
    return DString().AddFormatted(value, format);
}

DString Format(float value, char const *format)
{
    return DString().AddFormatted(value, format);
}

DString Format(double value, char const *format)
{
    return DString().AddFormatted(value, format);
}

// ---- Text to values ----

int DString::parseStart(int start) const
{
    return start < 0 ? 0 : start < Len() ? start : Len();
}

bool DString::ToInt(int &out, int start) const
{
    if (!counted()) return false;
    char const *const text = chars + parseStart(start);
    return ParseInt(text, out) != text;
}

bool DString::ToUint(unsigned int &out, int start) const
{
    if (!counted()) return false;
    char const *const text = chars + parseStart(start);
    return ParseUint(text, out) != text;
}

bool DString::ToDouble(double &out, int start) const
{
    if (!counted()) return false;
    char const *const text = chars + parseStart(start);
    char const *end = text;
    out = Platform::ParseNumber(text, &end);
    return end != text && end == chars + Len();
}

bool DString::ToFloat(float &out, int start) const
{
    double wide = 0;
    if (!counted()) return false;
    bool const whole = ToDouble(wide, start);
    out = static_cast<float>(wide);
    return whole;
}

bool DString::IsNumeric() const
{
    double ignored = 0;
    return ToDouble(ignored, 0);
}

bool DString::IsSemiNumeric() const
{
    return Len() == 0 || IsNumeric() || StartsWith("1.#") || StartsWith("-1.#");
}

/// Walks from the end to the front as long as a number starts at each place, which one look at the neighbour
/// tells: a digit always, a sign in front of a digit, white space in front of a start of a number.
unsigned int DString::EndNumber(int &out) const
{
    out = 0;
    int i = Len();
    for (; i > 0; --i) {
        char const c = chars[i - 1];
        bool const digit = c >= '0' && c <= '9';
        bool const sign = (c == '-' || c == '+') && chars[i] >= '0' && chars[i] <= '9';
        bool const space = (c == ' ' || (c >= '\t' && c <= '\r')) && i < Len();
        if (!digit && !sign && !space) break;
    }
    if (i == Len()) return npos;
    unsigned int value = 0;
    ParseUint(chars + i, value);
    out = static_cast<int>(value);
    return static_cast<unsigned int>(i);
}

bool DString::ToDate(long long &out, int) const
{
    DateText date;
    if (Len() < 2 || !cutDate(*this, date)) return false;
    int const year = date.value(Year);
    int const hour = date.value(Hour);
    std::tm local = {};
    local.tm_mon = lessOne(date.value(Month));
    local.tm_mday = lessOne(date.value(Day));
    local.tm_year = year > 1900 ? year - 1900 : year;
    local.tm_hour = date.pm && hour < 12 ? hour + 12 : hour;
    local.tm_min = date.value(Minute);
    local.tm_sec = date.value(Second);
    local.tm_isdst = -1;
    out = Platform::TimeFromLocal(local);
    return true;
}
