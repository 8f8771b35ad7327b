/* Every flat function, called by a program in C99 that has nothing of the library but its header and is linked with
 * nothing but the shared library, in a folder of its own. Ends with 0 if all was as expected, and names the line where
 * it wasn't. */
#include "interfaces/VodrelC.h"
#include "interfaces/VodrelC.h" /* a second time: the header guards itself */

/* For the folder, which is no matter of plain C. */
#define _XOPEN_SOURCE 700
#include <ftw.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#if defined _WIN32
#include <direct.h>
#include <io.h>
#endif

/* How the folder for the user ends. */
#if defined _WIN32
#define USER "\\Local\\Vodrel"
#else
#define USER "\\user\\Vodrel"
#endif

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
static void (*const getMatrix)(char const *, int, float, float, int, float, float, int, float, float,
                               float *) = GetMatrixC;
static void (*const getMatrixInfo)(char const *, int *, float *, float *, int *, float *, float *, int *, float *,
                                   float *) = GetMatrixInfoC;
static void (*const setMatrix)(char const *, int, float, float, int, float, float, int, float, float,
                               float const *) = SetMatrixC;
static void (*const getPGroup)(char const *, int *, int, float *) = GetPGroupC;
static void (*const getPGroupInfo)(char const *, int *, int *, float *, float *) = GetPGroupInfoC;
static void (*const setPGroup)(char const *, int, int, float, float, float const *) = SetPGroupC;
static void (*const appendPGroup)(char const *, int, int, float, float, float const *) = AppendPGroupC;
static float (*const getScalarData)(char const *) = GetScalarDataC;
static void (*const getScalarDataSafe)(char const *, int *, char *) = GetScalarDataSafeC;
static void (*const setScalarData)(char const *, float) = SetScalarDataC;
static int (*const getNodes)(int) = GetNodesC;

static int textIs(char const *expected, char const *buffer, int length)
{
    return length == (int)strlen(expected) && memcmp(expected, buffer, (size_t)length) == 0;
}

static int codeIs(int code, char const *expected)
{
    char buffer[1000];
    int length = (int)sizeof buffer;
    getString(code, &length, buffer);
    return textIs(expected, buffer, length);
}

static int endsWith(int code, char const *expected)
{
    char buffer[1000];
    int const wanted = (int)strlen(expected);
    int length = (int)sizeof buffer;
    getString(code, &length, buffer);
    return length > wanted && memcmp(buffer + length - wanted, expected, (size_t)wanted) == 0;
}

static int runShots(void)
{
    char buffer[100];
    int length;
    EXPECT(createShot("A1") == 1);
    EXPECT(codeIs(1, "A1"));
    EXPECT(endsWith(2, "\\X\\E\\Shots\\ShotA1"));
    setStringData("Run", "seven");
    length = 3;
    getStringData("Run", &length, buffer);
    EXPECT(textIs("sev", buffer, length));
    EXPECT(createShot("B1") == 1);
    EXPECT(createShot("A1") == 0);
    EXPECT(setShot("None") == 0);
    EXPECT(setShot("A1") == 1);
    EXPECT(codeIs(1, "A1"));
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
    getWaveform("W", 3, 1.75f, 0.5f, values);
    EXPECT(values[0] == 1.5f && values[1] == 0.75f && values[2] == 0.0f && values[3] == 9.0f);
    setWaveformXY("XY", 2, pairs);
    getWaveformInfo("XY", &n, &start, &step);
    EXPECT(n == 2 && start == 1.0f && step == 2.0f);
    return 0;
}

static int runMatrices(void)
{
    float const cube[] = {1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f, 7.0f, 8.0f, 9.0f, 10.0f, 11.0f, 12.0f};
    float values[13];
    float start[3], step[3];
    int n[3];
    int i;
    for (i = 0; i < 13; ++i) values[i] = 99.0f;
    setMatrix("M", 2, 10.0f, 0.5f, 3, -1.0f, 2.0f, 2, 3.0f, 0.25f, cube);
    getMatrix("M", 3, 0.0f, 0.0f, 2, 0.0f, 0.0f, 2, 0.0f, 0.0f, values);
    for (i = 0; i < 13; ++i) EXPECT(values[i] == 99.0f);
    getMatrix("M", 2, 0.0f, 0.0f, 3, 0.0f, 0.0f, 2, 0.0f, 0.0f, values);
    EXPECT(memcmp(cube, values, sizeof cube) == 0 && values[12] == 99.0f);
    getMatrixInfo("M", &n[0], &start[0], &step[0], &n[1], &start[1], &step[1], &n[2], &start[2], &step[2]);
    EXPECT(n[0] == 2 && start[0] == 10.0f && step[0] == 0.5f);
    EXPECT(n[1] == 3 && start[1] == -1.0f && step[1] == 2.0f);
    EXPECT(n[2] == 2 && start[2] == 3.0f && step[2] == 0.25f);
    return 0;
}

static int runParticles(void)
{
    float const rows[] = {1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f, 7.0f, 8.0f,
                          9.0f, 0.0f, 1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f};
    float values[25];
    float header1 = 0.0f, header2 = 0.0f;
    int n = 0, geometry = -1, count = 3;
    values[24] = 99.0f;
    setPGroup("P", 2, 1, 20.0f, 10.0f, rows);
    appendPGroup("P", 1, 1, 40.0f, 30.0f, rows);
    getPGroupInfo("P", &n, &geometry, &header2, &header1);
    EXPECT(n == 3 && geometry == 1 && header2 == 20.0f && header1 == 10.0f);
    getPGroup("P", &count, 0, values);
    EXPECT(count == 3 && memcmp(rows, values, sizeof rows) == 0 && memcmp(rows, values + 16, 32) == 0);
    EXPECT(values[24] == 99.0f);
    count = 5;
    getPGroup("P", &count, 2, values);
    EXPECT(count == 1 && memcmp(rows, values, 32) == 0);
    count = 2;
    getPGroup("P", &count, -77, values); /* the second lies on the axis: radius 9 at angle 0 */
    EXPECT(count == 2 && values[8] == 9.0f && values[9] == 0.0f && values[0] != 1.0f);
    return 0;
}

static int runScalars(void)
{
    char buffer[100];
    int length = 59;
    setScalarData("Gain", 2.5f);
    EXPECT(getScalarData("2*Gain+1") == 6.0f);
    EXPECT(getScalarData("W\\mx") == 2.0f);
    EXPECT(getScalarData("none") == -3.3e38f);
    getScalarDataSafe("Gain/3", &length, buffer);
    EXPECT(textIs("0.83333331", buffer, length));
    length = (int)sizeof buffer;
    getScalarDataSafe("gain {2*Gain} V", &length, buffer);
    EXPECT(textIs("gain 5 V", buffer, length));
    length = (int)sizeof buffer;
    getScalarDataSafe("gain {none} V", &length, buffer);
    EXPECT(textIs("Error evaluating scalar expression none", buffer, length));
    return 0;
}

static int runParts(void)
{
    int failed = runShots();
    if (!failed) failed = runWaveforms();
    if (!failed) failed = runMatrices();
    if (!failed) failed = runParticles();
    return failed ? failed : runScalars();
}

/* All that a client does, from the start on. */
static int runClient(char const *folder)
{
    char path[1000];
    EXPECT(testFunction() == 316);
    EXPECT(codeIs(99, "Test string from Vodrel"));
    sprintf(path, "%.900s/X/E", folder);
    setExperiment(path); /* does nothing before the start */
    EXPECT(codeIs(3, ""));
    sprintf(path, "%.900s/vodrel$L", folder);
    initialize(path);
    EXPECT(endsWith(0, "\\vodrel"));
    EXPECT(endsWith(4, USER));
    EXPECT(endsWith(5, USER "\\MPIHosts.txt"));
    notify(5, 0, "a line from C");
    sleepFor(1);
    sprintf(path, "%.900s/X/E", folder);
    setExperiment(path);
    EXPECT(codeIs(6, "E"));
    EXPECT(endsWith(3, "\\X\\E"));
    EXPECT(getNodes(4) == 4);
    return runParts();
}

/* Whether a file of the folder holds a text. */
static int fileHas(char const *folder, char const *name, char const *text)
{
    static char content[1000000];
    char path[1000];
    FILE *file;
    size_t n, length = strlen(text), i;
    sprintf(path, "%.900s/%s", folder, name);
    file = fopen(path, "rb");
    if (!file) return 0;
    n = fread(content, 1, sizeof content, file);
    fclose(file);
    for (i = 0; i + length <= n; ++i)
        if (memcmp(content + i, text, length) == 0) return 1;
    return 0;
}

static char userFolder[600]; /* in which the library has a folder for what is the user's */

static int runInFolder(char const *folder)
{
    int const failed = runClient(folder);
    if (failed) return failed;
    EXPECT(fileHas(userFolder, "Vodrel/Log.txt", "a line from C by "));
    EXPECT(fileHas(userFolder, "Vodrel/MPIHosts.txt", "\r\n"));
    EXPECT(fileHas(folder, "X/E/Shots/ShotA1/Scalars.ini", "Run=seven\r\nGain=2.5"));
    EXPECT(fileHas(folder, "X/E/Shots/ShotA1/W.wvf", ""));
    EXPECT(fileHas(folder, "X/E/Shots/ShotA1/XY.wvf", ""));
    EXPECT(fileHas(folder, "X/E/Shots/ShotA1/M.dmt", ""));
    EXPECT(fileHas(folder, "X/E/Shots/ShotA1/P.dpt", ""));
    EXPECT(fileHas(folder, "X/E/Shots/ShotB1/Scalars.ini", ""));
    return 0;
}

static int removeEntry(char const *path, struct stat const *info, int kind, struct FTW *place)
{
    (void)info, (void)kind, (void)place;
    return remove(path);
}

/* Makes a folder whose name ends in X's, in place of which it gets letters of its own, and has the library put what is
 * a user's below it, where the host lets a variable say so. */
static int makeFolder(char *folder)
{
#if defined _WIN32
    sprintf(userFolder, "%.500s", getenv("LOCALAPPDATA"));
    return _mktemp(folder) && _mkdir(folder) == 0;
#else
    if (!mkdtemp(folder)) return 0;
    sprintf(userFolder, "%s/user", folder);
    setenv("XDG_DATA_HOME", userFolder, 1);
    return 1;
#endif
}

int main(void)
{
    char const *const temporary = getenv("TMPDIR") ? getenv("TMPDIR") : getenv("TEMP");
    char folder[500];
    int failed;
    sprintf(folder, "%.400s/vodrel-test-XXXXXX", temporary && *temporary ? temporary : "/tmp");
    if (!makeFolder(folder)) return 2;
    failed = runInFolder(folder);
    nftw(folder, removeEntry, 8, FTW_DEPTH | FTW_PHYS);
    if (failed) fprintf(stderr, "EveryFunction.c:%d: not as expected\n", failed);
    return failed ? 1 : 0;
}
