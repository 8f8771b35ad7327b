/* The flat functions as a program in C99 sees them. Built with nothing of the library but its header, and linked with
 * nothing but the shared library. Ends with 0 if all was as expected, and names the line where it wasn't. */
#include "interfaces/VodrelC.h"
#include "interfaces/VodrelC.h" /* a second time: the header guards itself */

/* For a folder of its own, which is no matter of plain C. */
#define _XOPEN_SOURCE 700
#include <ftw.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define EXPECT(condition)                                                                                              \
    do {                                                                                                               \
        if (!(condition)) return __LINE__;                                                                             \
    } while (0)

/* The functions with exactly these types. */
static void (*const initialize)(char const *) = InitializeVodrelC;
static void (*const notify)(int, int, char const *) = NotifyC;
static void (*const sleepFor)(int) = CSleep;
static void (*const getString)(int, int *, char *) = GetStringC;
static int (*const testFunction)(void) = TestFuncC;
static void (*const setExperiment)(char const *) = SetExperimentC;
static int (*const createShot)(char const *) = CreateShotC;
static int (*const setShot)(char const *) = SetShotC;
static void (*const getStringData)(char const *, int *, char *) = GetStringDataC;
static void (*const setStringData)(char const *, char const *) = SetStringDataC;
static void (*const getWaveform)(char const *, int, float, float, float *) = GetWaveformC;
static void (*const getWaveformInfo)(char const *, int *, float *, float *) = GetWaveformInfoC;
static void (*const setWaveform)(char const *, int, float, float, float const *) = SetWaveformC;
static void (*const setWaveformXY)(char const *, int, float const *) = SetWaveformXYC;

static int textIs(char const *expected, char const *buffer, int length)
{
    return length == (int)strlen(expected) && memcmp(expected, buffer, (size_t)length) == 0;
}

static int runShots(void)
{
    char buffer[100];
    int length = (int)sizeof buffer;
    EXPECT(createShot("A1") == 1);
    getString(1, &length, buffer);
    EXPECT(textIs("A1", buffer, length));
    setStringData("Run", "seven");
    length = 3;
    getStringData("Run", &length, buffer);
    EXPECT(textIs("sev", buffer, length));
    EXPECT(createShot("B1") == 1);
    EXPECT(setShot("A1") == 1);
    return 0;
}

static int runWaveforms(void)
{
    float const samples[] = {1.0f, 2.0f, -0.5f};
    float const pairs[] = {1.0f, 4.0f, 3.0f, 5.0f};
    float values[4] = {9.0f, 9.0f, 9.0f, 9.0f};
    float start = 0.0f, step = 0.0f;
    int n = 0;
    setWaveform("W", 3, 1.5f, 0.5f, samples);
    getWaveform("W", 3, 1.5f, 0.5f, values);
    EXPECT(memcmp(samples, values, sizeof samples) == 0 && values[3] == 9.0f);
    setWaveformXY("XY", 2, pairs);
    getWaveformInfo("XY", &n, &start, &step);
    EXPECT(n == 2 && start == 1.0f && step == 2.0f);
    return 0;
}

/* All that a client does, from the start on. */
static int runClient(char const *folder)
{
    char path[1000];
    char buffer[1000];
    int length = (int)sizeof buffer;
    int failed;
    EXPECT(testFunction() == 316);
    sprintf(path, "%.900s/vodrel$L", folder);
    initialize(path);
    notify(5, 0, "a line from C");
    sleepFor(1);
    sprintf(path, "%.900s/X/E", folder);
    setExperiment(path);
    getString(6, &length, buffer);
    EXPECT(textIs("E", buffer, length));
    failed = runShots();
    return failed ? failed : runWaveforms();
}

static int fileExists(char const *folder, char const *name)
{
    char path[1000];
    FILE *file;
    sprintf(path, "%.900s/%s", folder, name);
    file = fopen(path, "rb");
    return file && fclose(file) == 0;
}

static int runInFolder(char const *folder)
{
    int const failed = runClient(folder);
    if (failed) return failed;
    EXPECT(fileExists(folder, "user/Vodrel/Log.txt"));
    EXPECT(fileExists(folder, "X/E/Shots/ShotA1/W.wvf"));
    EXPECT(fileExists(folder, "X/E/Shots/ShotB1/Scalars.ini"));
    return 0;
}

static int removeEntry(char const *path, struct stat const *info, int kind, struct FTW *place)
{
    (void)info, (void)kind, (void)place;
    return remove(path);
}

int main(void)
{
    char const *const temporary = getenv("TMPDIR");
    char folder[500];
    char user[600];
    int failed;
    sprintf(folder, "%.400s/vodrel-test-XXXXXX", temporary && *temporary ? temporary : "/tmp");
    if (!mkdtemp(folder)) return 2;
    sprintf(user, "%s/user", folder);
    setenv("XDG_DATA_HOME", user, 1);
    failed = runInFolder(folder);
    nftw(folder, removeEntry, 8, FTW_DEPTH | FTW_PHYS);
    if (failed) fprintf(stderr, "CHeader.c:%d: not as expected\n", failed);
    return failed ? 1 : 0;
}
