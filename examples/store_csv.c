/* Stores measured files as the waveforms of one new shot:
 *
 *     store_csv FOLDER SHOT FILE...
 *
 * FOLDER is the experiment, which is made if it is missing; SHOT is the new shot. Each file becomes a waveform that is
 * named after it, without folder and extension.
 *
 * A file is a text of lines, each with one sample, in one of two forms:
 *     time,value                     two columns
 *     name,value,,time,value         as oscilloscopes save: a setting of the instrument in the first two columns
 * Times are in seconds, equally spaced. In place of commas there may be semicolons or tabs, at the end of a line one
 * more of them, round each column blanks; lines end in LF or CR LF. Lines at the top whose time doesn't begin like a
 * number are headings and skipped. Lines without a sample may stand at the end.
 *
 * The settings become strings of the shot. One that all files agree on keeps its name: it holds for the whole shot.
 * Where files differ, or some lack it, each waveform has its own, with the waveform's name in front: "CH1 Vertical
 * Scale". So do "Shot", "Date" and "Comment", which mean the shot. What a name can't hold (= ; : and brackets) becomes
 * "_".
 *
 * All files are read and checked before the shot is made, so that a bad one leaves nothing behind. The comment of the
 * shot says that it is incomplete until all of it is stored and read back.
 *
 * Exit status: 0 all stored, 1 something failed and was said on standard error, 2 wrong use. */
#include <limits.h>
#include <math.h>
#include <stdarg.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "interfaces/VodrelC.h"

enum { FOLDER_ROOM = 1024, COLUMNS = 6 };

/* The library takes values up to this size for measured ones. */
static double const LARGEST = 9.9e34;

#ifdef _WIN32
static char const SEPARATORS[] = "/\\:";
#else
static char const SEPARATORS[] = "/";
#endif

/* No name of a file can hold these on every system, and brackets are references in a data name. */
static char const NOT_IN_NAMES[] = "[]\\/:*?\"<>|";

typedef struct {
    char *name;
    char *value;
} Setting;

typedef struct {
    double time;
    double value;
} Sample;

/* A file and what was read from it. */
typedef struct {
    char const *file;
    char *waveform; /* its name */
    Sample *samples;
    size_t nSamples;
    Setting *settings;
    size_t nSettings;
    int firstline; /* of the samples, counted from 1 */
    int gapline;   /* the first line without a sample behind them, 0 for none */
} Capture;

/* One column of a line, without the blanks round it. */
typedef struct {
    char const *text;
    size_t length;
} Field;

/* How a file is laid out: what stands between the columns, and in which of them the time, 0 or 3. */
typedef struct {
    char separator;
    int timecolumn;
} Form;

/* ---- Helpers ---- */

/* Says what is wrong with a line, or with the whole file if there is no line. */
static bool complain(char const *file, int line, char const *format, ...)
{
    va_list values;
    fprintf(stderr, "%s:", file);
    if (line) fprintf(stderr, "%d:", line);
    fprintf(stderr, " ");
    va_start(values, format);
    vfprintf(stderr, format, values);
    va_end(values);
    fprintf(stderr, "\n");
    return false;
}

static void *resized(void *block, size_t size)
{
    block = realloc(block, size);
    if (!block) {
        fprintf(stderr, "store_csv: out of memory\n");
        exit(1);
    }
    return block;
}

static char *copied(char const *text, size_t length)
{
    char *copy = resized(NULL, length + 1);
    memcpy(copy, text, length);
    copy[length] = '\0';
    return copy;
}

static char *joined(char const *a, char const *b, char const *c)
{
    size_t const room = strlen(a) + strlen(b) + strlen(c) + 1;
    char *text = resized(NULL, room);
    snprintf(text, room, "%s%s%s", a, b, c);
    return text;
}

static char lowercase(char c)
{
    return c >= 'A' && c <= 'Z' ? (char)(c - 'A' + 'a') : c;
}

/* Names are the same whatever their case, those of files and those of strings. */
static bool samename(char const *a, char const *b)
{
    while (*a && lowercase(*a) == lowercase(*b)) a++, b++;
    return lowercase(*a) == lowercase(*b);
}

/* What stands behind the last separator of a path. */
static char const *lastelement(char const *path, char const *separators)
{
    char const *last = path;
    for (; *path; path++)
        if (strchr(separators, *path)) last = path + 1;
    return last;
}

/* ---- Lines ---- */

static bool blank(char c)
{
    return c == ' ' || c == '\t';
}

static Field trimmed(char const *text, char const *end)
{
    while (text < end && blank(*text)) text++;
    while (text < end && blank(end[-1])) end--;
    Field const field = {text, (size_t)(end - text)};
    return field;
}

/* Cuts a line into its columns; those that aren't there are empty. Returns how many there are, be it more than fit. */
static int split(char const *line, char const *end, char separator, Field fields[COLUMNS])
{
    int n = 0;
    for (int i = 0; i < COLUMNS; i++) fields[i] = trimmed(end, end);
    for (;;) {
        char const *stop = memchr(line, separator, (size_t)(end - line));
        if (n < COLUMNS) fields[n] = trimmed(line, stop ? stop : end);
        n++;
        if (!stop) return n;
        line = stop + 1;
    }
}

/* Spelled out, since strtod would take a heading such as "Info" or "NaN" for a number too. */
static bool beginslikenumber(Field field)
{
    char const *c = field.text;
    char const *const end = field.text + field.length;
    if (c != end && (*c == '+' || *c == '-')) c++;
    if (c != end && *c == '.') c++;
    return c != end && *c >= '0' && *c <= '9';
}

static bool isnumber(Field field, double *value)
{
    char *end;
    if (!beginslikenumber(field) || strspn(field.text, "0123456789+-.eE") < field.length) return false;
    *value = strtod(field.text, &end);
    return end == field.text + field.length;
}

static bool hassample(Form form, Field const fields[COLUMNS])
{
    return fields[form.timecolumn].length || fields[form.timecolumn + 1].length;
}

/* Whether a line has the columns of this form, with or without an empty one at the end. Without a sample it may have
 * fewer. */
static bool fits(Form form, Field const fields[COLUMNS], int n)
{
    int const expected = form.timecolumn + 2;
    if (form.timecolumn == 3 && fields[2].length) return false;
    if (n == expected + 1) return !fields[expected].length;
    return n == expected || (n < expected && !hassample(form, fields));
}

/* Whether a line is meant as a sample in this form, if only one of its numbers can be told. */
static bool lookslikesample(Form form, char const *line, char const *end)
{
    Field fields[COLUMNS];
    int const n = split(line, end, form.separator, fields);
    if (form.timecolumn == 3)
        return fits(form, fields, n) && (beginslikenumber(fields[3]) || beginslikenumber(fields[4]));
    return beginslikenumber(fields[0]);
}

static bool issample(Form form, char const *line, char const *end)
{
    Field fields[COLUMNS];
    double time, value;
    int const n = split(line, end, form.separator, fields);
    return fits(form, fields, n) && isnumber(fields[form.timecolumn], &time) &&
           isnumber(fields[form.timecolumn + 1], &value);
}

/* ---- One file ---- */

static Form const FORMS[] = {{',', 3}, {',', 0}, {';', 3}, {';', 0}, {'\t', 3}, {'\t', 0}};
enum { FORM_COUNT = sizeof FORMS / sizeof FORMS[0] };

/* The form of the file, as its first sample shows it: the first form that takes the line as it stands, or else the
 * first in which it was meant as a sample, so that what is wrong with it can be said. Null for a heading. */
static Form const *formofline(char const *line, char const *end)
{
    for (int i = 0; i < FORM_COUNT; i++)
        if (issample(FORMS[i], line, end)) return &FORMS[i];
    for (int i = 0; i < FORM_COUNT; i++)
        if (lookslikesample(FORMS[i], line, end)) return &FORMS[i];
    return NULL;
}

/* Makes a name fit for a string of the shot, in place. */
static char *tidied(char *name)
{
    for (char *c = strpbrk(name, "=;:[]"); c; c = strpbrk(c, "=;:[]")) *c = '_';
    return name;
}

static char const *settingof(Capture const *capture, char const *name)
{
    for (size_t i = 0; i < capture->nSettings; i++)
        if (samename(capture->settings[i].name, name)) return capture->settings[i].value;
    return NULL;
}

/* The first of two settings of one name counts. */
static void takesetting(Capture *capture, Field const fields[COLUMNS])
{
    if (!fields[0].length || !fields[1].length) return;
    char *name = tidied(copied(fields[0].text, fields[0].length));
    if (settingof(capture, name)) {
        free(name);
        return;
    }
    capture->settings = resized(capture->settings, (capture->nSettings + 1) * sizeof(Setting));
    capture->settings[capture->nSettings].name = name;
    capture->settings[capture->nSettings++].value = copied(fields[1].text, fields[1].length);
}

static bool tonumber(Capture const *capture, int line, Field field, double *value)
{
    if (!isnumber(field, value))
        return complain(capture->file, line, "\"%.*s\" is not a number", (int)field.length, field.text);
    if (!(fabs(*value) < LARGEST))
        return complain(capture->file, line, "%.*s is too large", (int)field.length, field.text);
    return true;
}

static bool takesample(Capture *capture, int line, Field time, Field value)
{
    Sample sample;
    if (capture->gapline) return complain(capture->file, capture->gapline, "no sample here, but more in line %d", line);
    if (!tonumber(capture, line, time, &sample.time) || !tonumber(capture, line, value, &sample.value)) return false;
    size_t const n = capture->nSamples;
    if (n == INT_MAX) return complain(capture->file, line, "too many samples");
    if (n && sample.time < capture->samples[n - 1].time) return complain(capture->file, line, "the time goes back");
    if ((n & (n - 1)) == 0) capture->samples = resized(capture->samples, (n ? 2 * n : 1) * sizeof(Sample));
    if (!n) capture->firstline = line;
    capture->samples[capture->nSamples++] = sample;
    return true;
}

/* A line of a file whose form is known. In headings, above the first sample, only settings count. */
static bool takeline(Capture *capture, Form form, bool heading, char const *line, char const *end, int number)
{
    Field fields[COLUMNS];
    int const n = split(line, end, form.separator, fields);
    bool const sample = hassample(form, fields);
    if (heading && (sample || !fits(form, fields, n))) return true;
    if (!fits(form, fields, n))
        return complain(capture->file, number, "not in the columns %s",
                        form.timecolumn ? "name,value,,time,value" : "time,value");
    if (form.timecolumn == 3) takesetting(capture, fields);
    if (sample) return takesample(capture, number, fields[form.timecolumn], fields[form.timecolumn + 1]);
    if (!heading && !capture->gapline) capture->gapline = number;
    return true;
}

/* Takes one line off the front of a text, without its LF or CR LF. False when there is none. */
static bool nextline(char const **text, char const *textend, char const **line, char const **end)
{
    if (*text == textend) return false;
    *line = *text;
    *end = memchr(*text, '\n', (size_t)(textend - *text));
    *text = *end ? *end + 1 : textend;
    if (!*end) *end = textend;
    if (*end > *line && (*end)[-1] == '\r') --*end;
    return true;
}

/* The first line that isn't a heading shows the form of the file. */
static Form const *findform(char const *text, char const *textend, int *number)
{
    char const *line, *end;
    for (*number = 1; nextline(&text, textend, &line, &end); ++*number) {
        Form const *form = formofline(line, end);
        if (form) return form;
    }
    return NULL;
}

static bool takelines(Capture *capture, char const *text, char const *textend)
{
    char const *line, *end;
    int first;
    Form const *form = findform(text, textend, &first);
    if (!form) return complain(capture->file, 0, "no line with a time and a value");
    for (int number = 1; nextline(&text, textend, &line, &end); number++)
        if (!takeline(capture, *form, number < first, line, end, number)) return false;
    return true;
}

/* All of a file, with a NUL behind it; null if it can't be read. */
static char *readfile(char const *name, size_t *length)
{
    FILE *file = fopen(name, "rb");
    char *text = NULL;
    size_t room = 0, n = 0;
    if (!file) return NULL;
    do {
        room = room ? 2 * room : 65536;
        text = resized(text, room);
        n += fread(text + n, 1, room - 1 - n, file);
    } while (n == room - 1);
    text[n] = '\0';
    *length = n;
    if (ferror(file)) {
        free(text);
        text = NULL;
    }
    fclose(file);
    return text;
}

/* A waveform is equally spaced: only its first and last time are stored, in single precision. Times that a file gives
 * with few digits may be off by as much as a step. */
static bool checktimes(Capture const *capture)
{
    size_t const n = capture->nSamples;
    if (n < 2) return complain(capture->file, 0, "fewer than two samples");
    double const first = capture->samples[0].time;
    double const last = capture->samples[n - 1].time;
    double const step = (last - first) / (double)(n - 1);
    double const stored = (double)((float)last - (float)first);
    if (!(step > 0)) return complain(capture->file, 0, "all samples have the same time");
    for (size_t i = 0; i < n; i++)
        if (fabs(capture->samples[i].time - (first + (double)i * step)) > step)
            return complain(capture->file, capture->firstline + (int)i,
                            "the time is more than a step off an even spacing of %g s", step);
    if (fabs(stored - (last - first)) > fmax(step / 2, 1e-6 * (last - first)))
        return complain(capture->file, 0,
                        "steps of %g s around %g s get lost in single precision: take an offset off the times", step,
                        last);
    return true;
}

static bool readcapture(Capture *capture)
{
    static char const MARK[] = "\xEF\xBB\xBF"; /* with which some programs begin a text in UTF-8 */
    size_t length;
    char *text = readfile(capture->file, &length);
    if (!text) return complain(capture->file, 0, "can't be read");
    size_t const skip = strncmp(text, MARK, strlen(MARK)) ? 0 : strlen(MARK);
    bool const plain = !memchr(text, '\0', length) || complain(capture->file, 0, "holds zero bytes: not a plain text");
    bool const good = plain && takelines(capture, text + skip, text + length) && checktimes(capture);
    free(text);
    return good;
}

/* ---- Names ---- */

static bool isname(char const *name)
{
    for (char const *c = name; *c; c++)
        if ((unsigned char)*c < ' ' || strchr(NOT_IN_NAMES, *c)) return false;
    return *name != '\0';
}

/* A data name that begins with a dot is a path, one that begins with "@" isn't a file. */
static bool namewaveform(Capture *capture)
{
    char const *file = lastelement(capture->file, SEPARATORS);
    char const *dot = strrchr(file, '.');
    capture->waveform = copied(file, dot && dot != file ? (size_t)(dot - file) : strlen(file));
    if (isname(capture->waveform) && *capture->waveform != '.' && *capture->waveform != '@') return true;
    return complain(capture->file, 0,
                    "\"%s\" can't be the name of a waveform: none of %s in it, no \".\" or \"@\" in front, not empty",
                    capture->waveform, NOT_IN_NAMES);
}

static bool checkclashes(Capture const *captures, int n)
{
    for (int i = 1; i < n; i++)
        for (int j = 0; j < i; j++)
            if (samename(captures[i].waveform, captures[j].waveform))
                return complain(captures[i].file, 0, "would be the same waveform as %s", captures[j].file);
    return true;
}

/* ---- Storing ---- */

static bool isrelative(char const *path)
{
    return path[0] && path[0] != '/' && path[0] != '\\' && path[1] != ':';
}

/* An experiment's folder as users type it, for the library. That knows absolute names of the host. In a relative one it
 * looks for backslashes, and makes what is missing below its first element, which has to be there: hence ".\". A
 * separator at the end would leave the experiment without a name. */
static bool systemfolder(char const *folder, char path[FOLDER_ROOM])
{
    int const printed = snprintf(path, FOLDER_ROOM, "%s%s", isrelative(folder) ? ".\\" : "", folder);
    if (printed >= FOLDER_ROOM) return complain(folder, 0, "too long a name for an experiment");
    size_t length = strlen(path);
    for (size_t i = 0; path[0] != '/' && i < length; i++)
        if (path[i] == '/') path[i] = '\\';
    while (length > 0 && !*lastelement(path, "/\\")) path[--length] = '\0';
    char const *name = lastelement(path, "/\\");
    bool const good = *name && strcmp(name, ".") && strcmp(name, "..") && !strpbrk(name, ":*?");
    return good || complain(folder, 0, "can't name an experiment");
}

/* Texts come out of the library without a NUL and cut to the room that there is, so that one more is asked for. */
static bool isstringstored(char const *name, char const *value)
{
    size_t const length = strlen(value);
    int n = (int)length + 1;
    char *text = resized(NULL, length + 1);
    GetStringDataC(name, &n, text);
    bool const same = n == (int)length && !memcmp(text, value, length);
    free(text);
    return same;
}

static bool storestring(char const *name, char const *value)
{
    SetStringDataC(name, value);
    return isstringstored(name, value) || complain("store_csv", 0, "the string \"%s\" could not be stored", name);
}

/* Whether the files agree on a setting, so that it holds for the whole shot. */
static bool isshared(Capture const *captures, int n, Setting const *setting)
{
    if (samename(setting->name, "Shot") || samename(setting->name, "Date") || samename(setting->name, "Comment"))
        return false;
    for (int i = 0; i < n; i++) {
        char const *value = settingof(&captures[i], setting->name);
        if (!value || strcmp(value, setting->value)) return false;
    }
    return true;
}

static bool storesetting(Capture const *captures, int n, int index, Setting const *setting)
{
    if (isshared(captures, n, setting)) return index > 0 || storestring(setting->name, setting->value);
    char *name = tidied(joined(captures[index].waveform, " ", setting->name));
    bool const good = storestring(name, setting->value);
    free(name);
    return good;
}

static bool storesettings(Capture const *captures, int n)
{
    for (int i = 0; i < n; i++)
        for (size_t j = 0; j < captures[i].nSettings; j++)
            if (!storesetting(captures, n, i, &captures[i].settings[j])) return false;
    return true;
}

/* The library doesn't say whether it could write; what it reads back tells. */
static bool iswaveformstored(Capture const *capture)
{
    int n;
    float start, step;
    GetWaveformInfoC(capture->waveform, &n, &start, &step);
    if ((size_t)n != capture->nSamples) return false;
    float *values = resized(NULL, capture->nSamples * sizeof(float));
    GetWaveformC(capture->waveform, n, start, step, values);
    bool same = true;
    for (int i = 0; i < n; i++) same = same && values[i] == (float)capture->samples[i].value;
    free(values);
    if (same) printf("%s: %d samples from %g s in steps of %g s\n", capture->waveform, n, start, step);
    return same;
}

static bool storewaveform(Capture const *capture)
{
    float *pairs = resized(NULL, 2 * capture->nSamples * sizeof(float));
    for (size_t i = 0; i < capture->nSamples; i++) {
        pairs[2 * i] = (float)capture->samples[i].time;
        pairs[2 * i + 1] = (float)capture->samples[i].value;
    }
    SetWaveformXYC(capture->waveform, (int)capture->nSamples, pairs);
    free(pairs);
    return iswaveformstored(capture) || complain(capture->file, 0, "could not be stored");
}

/* The library doesn't take the name of the shot as its comment; with a colon in it a comment never is. */
static bool storeall(Capture const *captures, int n)
{
    bool good = storestring("Comment", "Incomplete: store_csv was interrupted");
    for (int i = 0; good && i < n; i++) good = storewaveform(&captures[i]);
    return good && storesettings(captures, n) && storestring("Comment", "Measured files: stored by store_csv");
}

static bool createshot(char const *folder, char const *shot)
{
    char path[FOLDER_ROOM];
    if (!isname(shot)) return complain(shot, 0, "can't name a shot: none of %s in it, not empty", NOT_IN_NAMES);
    if (!systemfolder(folder, path)) return false;
    /* The installation folder is where service modules are looked for; none is used here. */
    InitializeVodrelC(".");
    SetExperimentC(path);
    return CreateShotC(shot) || complain("store_csv", 0, "there is a shot %s already; give a new one", shot);
}

static bool storefiles(char const *folder, char const *shot, Capture *captures, int n)
{
    bool good = true;
    for (int i = 0; i < n; i++) {
        bool const named = namewaveform(&captures[i]);
        good = readcapture(&captures[i]) && named && good;
    }
    if (!good || !checkclashes(captures, n) || !createshot(folder, shot)) return false;
    if (storeall(captures, n)) return true;
    return complain("store_csv", 0, "what there is of shot %s in %s is incomplete; delete it and try again", shot,
                    folder);
}

static void forget(Capture *capture)
{
    for (size_t i = 0; i < capture->nSettings; i++) {
        free(capture->settings[i].name);
        free(capture->settings[i].value);
    }
    free(capture->settings);
    free(capture->samples);
    free(capture->waveform);
}

int main(int argc, char **argv)
{
    if (argc < 4) {
        fprintf(stderr, "usage: store_csv FOLDER SHOT FILE...\n");
        return 2;
    }
    int const n = argc - 3;
    size_t const size = (size_t)n * sizeof(Capture);
    Capture *captures = memset(resized(NULL, size), 0, size);
    for (int i = 0; i < n; i++) captures[i].file = argv[3 + i];
    bool const good = storefiles(argv[1], argv[2], captures, n);
    for (int i = 0; i < n; i++) forget(&captures[i]);
    free(captures);
    return good ? 0 : 1;
}
