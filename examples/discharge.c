/* Discharges of a capacitor bank through the coil of a pulsed magnet: computes them, stores each as a shot, and
 * prints a table of what the library makes of them by formulas.
 *
 *     discharge FOLDER
 *
 * FOLDER is the experiment; it is made if it is missing. Shots A001 to A008 differ in the voltage to which the bank was
 * charged. A second run on the same folder takes its own shots again and replaces their waveforms; a shot of one of
 * these names that came from elsewhere is left alone, and the program ends there.
 *
 * Exit status: 0 all went well, 1 something failed and was said on standard error, 2 wrong use. */
#include <math.h>
#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "interfaces/VodrelC.h"

enum {
    SHOTS = 8,
    SAMPLES = 100000, /* of each waveform as it is stored */
    COARSE = 2000,    /* of the current as it is read back */
    NAME_ROOM = 16,   /* for a shot's name, be its number the largest */
    FOLDER_ROOM = 1024,
    TEXT_ROOM = 256
};

static char const COMMENT[] = "Computed discharge of a capacitor bank through a coil";
static char const OPERATOR[] = "discharge example";

static double const SAMPLE_TIME = 1e-6;     /* s */
static double const FIRST_VOLTAGE = 2000.0; /* V, of the first shot */
static double const NEXT_VOLTAGE = 1000.0;  /* V, more for each further shot */
static double const VOLTAGE_NOISE = 0.2;    /* V, root mean square, of the voltage divider */
static double const CURRENT_NOISE = 1.0;    /* A, root mean square, of the current probe */
static double const PEAK_ERROR = 10.0;      /* A, by which noise and a coarse reading can change a peak */

/* ---- The circuit: bank, coil and resistance in series ---- */

typedef struct {
    double capacitance; /* F */
    double inductance;  /* H */
    double resistance;  /* ohm: coil, leads and switch */
} Circuit;

typedef struct {
    double voltage; /* V, across the bank */
    double current; /* A, through the coil */
} State;

static Circuit const MAGNET = {20e-3, 1.2e-3, 60e-3};

/* The bank loses the charge that the coil carries, dV/dt = -I / C, and what the resistance leaves of its
 * voltage drives the current, dI/dt = (V - R I) / L. The coil doesn't warm up here. */
static State slope(Circuit const *circuit, State state)
{
    State change;
    change.voltage = -state.current / circuit->capacitance;
    change.current = (state.voltage - circuit->resistance * state.current) / circuit->inductance;
    return change;
}

static State along(State state, State change, double time)
{
    state.voltage += change.voltage * time;
    state.current += change.current * time;
    return state;
}

/* One step of the classical Runge-Kutta method of fourth order. */
static State nextstate(Circuit const *circuit, State state, double step)
{
    State const k1 = slope(circuit, state);
    State const k2 = slope(circuit, along(state, k1, step / 2));
    State const k3 = slope(circuit, along(state, k2, step / 2));
    State const k4 = slope(circuit, along(state, k3, step));
    state = along(along(state, k1, step / 6), k2, step / 3);
    return along(along(state, k3, step / 3), k4, step / 6);
}

/* The peak in closed form. L I'' + R I' + I / C = 0 with I(0) = 0 and I'(0) = V / L has the solution
 *     I(t) = V / (w L) exp(-a t) sin(w t),   a = R / 2L,   w = sqrt(1 / LC - a^2)
 * for weak damping, as in any textbook of circuits. I' = 0 gives tan(w t) = w / a; there sin(w t) = w sqrt(LC), so that
 *     Imax = V sqrt(C / L) exp(-a t). */
static double peakcurrent(Circuit const *circuit, double chargevoltage)
{
    double const damping = circuit->resistance / (2 * circuit->inductance);
    double const frequency = sqrt(1 / (circuit->inductance * circuit->capacitance) - damping * damping);
    double const time = atan2(frequency, damping) / frequency;
    return chargevoltage * sqrt(circuit->capacitance / circuit->inductance) * exp(-damping * time);
}

/* ---- Noise of the instruments ---- */

/* From 0 to 1; a generator of its own (xorshift, 32 bits) gives the same numbers on every machine. */
static double uniform(uint32_t *seed)
{
    *seed ^= *seed << 13;
    *seed ^= *seed >> 17;
    *seed ^= *seed << 5;
    return *seed / 4294967296.0;
}

/* The sum of twelve numbers from 0 to 1 has a variance of 1 and is as good as normally distributed. */
static double noise(uint32_t *seed, double rms)
{
    double sum = -6.0;
    for (int i = 0; i < 12; i++) sum += uniform(seed);
    return sum * rms;
}

/* ---- Storing ---- */

static bool failed(char const *what, char const *which)
{
    fprintf(stderr, "discharge: %s %s\n", which, what);
    return false;
}

static double chargevoltage(int index)
{
    return FIRST_VOLTAGE + NEXT_VOLTAGE * index;
}

static void shotname(int index, char *name, size_t room)
{
    snprintf(name, room, "A%03d", index + 1);
}

/* Texts come out of the library without a NUL; these two put it behind them. `room` counts it. */
static void systemtext(int code, char *text, int room)
{
    int length = room - 1;
    GetStringC(code, &length, text);
    text[length] = '\0';
}

static void shottext(char const *name, char *text, int room)
{
    int length = room - 1;
    GetStringDataC(name, &length, text);
    text[length] = '\0';
}

/* What stands behind the last separator of a path. */
static char const *lastelement(char const *path)
{
    char const *last = path;
    for (; *path; path++)
        if (*path == '/' || *path == '\\') last = path + 1;
    return last;
}

static bool isrelative(char const *path)
{
    return path[0] && path[0] != '/' && path[0] != '\\' && path[1] != ':';
}

/* Opens an experiment by a name as users type it. The library knows absolute names of the host. In a relative one it
 * looks for backslashes, and makes what is missing below its first element, which has to be there: hence ".\". A
 * separator at the end would leave the experiment without a name. */
static bool openexperiment(char const *folder)
{
    char path[FOLDER_ROOM];
    int const printed = snprintf(path, sizeof path, "%s%s", isrelative(folder) ? ".\\" : "", folder);
    if (printed >= FOLDER_ROOM) return failed("is too long a name for an experiment", folder);
    size_t length = strlen(path);
    for (size_t i = 0; path[0] != '/' && i < length; i++)
        if (path[i] == '/') path[i] = '\\';
    while (length > 0 && !*lastelement(path)) path[--length] = '\0';
    char const *name = lastelement(path);
    if (!*name || !strcmp(name, ".") || !strcmp(name, "..") || strpbrk(name, ":*?"))
        return failed("can't name an experiment", folder);
    SetExperimentC(path);
    return true;
}

static void compute(double voltage, uint32_t seed, float *voltages, float *currents)
{
    State state = {0, 0};
    state.voltage = voltage;
    for (int i = 0; i < SAMPLES; i++) {
        voltages[i] = (float)(state.voltage + noise(&seed, VOLTAGE_NOISE));
        currents[i] = (float)(state.current + noise(&seed, CURRENT_NOISE));
        state = nextstate(&MAGNET, state, SAMPLE_TIME);
    }
}

/* Whether an earlier run has left this shot. The header of a waveform can be asked for without making the
 * shot current, and without a message if there is none. */
static bool isourshot(char const *shot)
{
    char waveform[TEXT_ROOM];
    char comment[TEXT_ROOM];
    int n;
    float start, step;
    snprintf(waveform, sizeof waveform, "%s\\V", shot);
    GetWaveformInfoC(waveform, &n, &start, &step);
    if (n == 0 || !SetShotC(shot)) return false;
    shottext("Comment", comment, sizeof comment);
    return !strcmp(comment, COMMENT);
}

/* A leading "*" takes a shot that exists; without it an existing shot is refused. */
static bool createshot(char const *shot, bool *again)
{
    char name[TEXT_ROOM];
    *again = isourshot(shot);
    snprintf(name, sizeof name, "%s%s", *again ? "*" : "", shot);
    if (!CreateShotC(name)) return failed("isn't a shot of this program; give another folder", shot);
    return true;
}

/* The library doesn't say whether it could write; a waveform that it can't find again has no samples. */
static bool isstored(char const *waveform)
{
    int n;
    float start, step;
    GetWaveformInfoC(waveform, &n, &start, &step);
    return n == SAMPLES;
}

static bool storeshot(int index, bool *again)
{
    static float voltages[SAMPLES];
    static float currents[SAMPLES];
    char shot[NAME_ROOM];
    shotname(index, shot, sizeof shot);
    compute(chargevoltage(index), (uint32_t)(2463534242u + (uint32_t)index), voltages, currents);
    if (!createshot(shot, again)) return false;
    SetStringDataC("Comment", COMMENT);
    SetScalarDataC("ChargeVoltage", (float)(chargevoltage(index) / 1e3));
    SetStringDataC("Operator", OPERATOR);
    SetWaveformC("V", SAMPLES, 0.0f, (float)SAMPLE_TIME, voltages);
    SetWaveformC("I", SAMPLES, 0.0f, (float)SAMPLE_TIME, currents);
    return (isstored("V") && isstored("I")) || failed("could not be stored", shot);
}

static bool storeshots(void)
{
    int replaced = 0;
    for (int i = 0; i < SHOTS; i++) {
        bool again;
        if (!storeshot(i, &again)) return false;
        replaced += again;
    }
    printf("Stored %d shots", SHOTS);
    if (replaced) printf("; %d of them stood there from an earlier run and have new waveforms", replaced);
    printf(".\n\n");
    return true;
}

/* ---- Reading back ---- */

/* The library computes the derived numbers: each is a formula over the shot, in the units in which the shot was
 * stored (kV, A, s). */
typedef struct {
    char const *head;
    char const *formula;
    char const *unit;
    double factor; /* to that unit */
    int decimals;
} Column;

enum { CHARGE_VOLTAGE, PEAK, RISE_TIME, WIDTH, HALF_SQUARE, COLUMNS };

static Column const columns[COLUMNS] = {
    {"Charge voltage", "ChargeVoltage*1000", "[V]", 1, 0},
    {"Peak current", "I\\mx", "[kA]", 1e-3, 2},
    {"Rise 10-90", "I\\19", "[ms]", 1e3, 2},
    {"Width at half", "I\\fh", "[ms]", 1e3, 2},
    {"Charge^2 / 2", "(I\\in)^2*0.5", "[(As)^2]", 1, 0}, /* over the capacitance: the energy that this charge had */
};

typedef struct {
    float values[COLUMNS];
    float largest; /* A, of the samples */
} Row;

/* The length of a waveform's file in the current shot. The library's name of the folder becomes one of the host: Linux
 * has slashes, and no drives. */
static long filelength(char const *waveform)
{
    char folder[FOLDER_ROOM];
    char name[FOLDER_ROOM + TEXT_ROOM];
    char *path = name;
    systemtext(2, folder, sizeof folder);
    snprintf(name, sizeof name, "%s\\%s.wvf", folder, waveform);
#ifndef _WIN32
    for (char *c = name; *c; c++)
        if (*c == '\\') *c = '/';
    if (name[0] && name[1] == ':') path += 2;
#endif
    FILE *file = fopen(path, "rb");
    if (!file) return -1;
    long const length = fseek(file, 0, SEEK_END) ? -1 : ftell(file);
    fclose(file);
    return length;
}

static float largest(float const *values, int n)
{
    float found = values[0];
    for (int i = 1; i < n; i++)
        if (values[i] > found) found = values[i];
    return found;
}

/* A disk that was full leaves a file that is too short for its samples; the library reads what is missing as 0. */
static bool iswhole(char const *shot)
{
    int n;
    float start, step;
    GetWaveformInfoC("I", &n, &start, &step);
    if (n != SAMPLES) return failed("has another number of samples than were stored", shot);
    if (filelength("I") < (long)sizeof(float) * SAMPLES) return failed("is cut off: is the disk full?", shot);
    return true;
}

static bool readshot(char const *shot, Row *row)
{
    static float currents[COARSE];
    if (!SetShotC(shot)) return failed("can't be made the current shot", shot);
    if (!iswhole(shot)) return false;
    for (int i = 0; i < COLUMNS; i++) row->values[i] = GetScalarDataC(columns[i].formula);
    GetWaveformC("I", COARSE, 0.0f, (float)(SAMPLE_TIME * (SAMPLES / COARSE)), currents);
    row->largest = largest(currents, COARSE);
    return true;
}

/* Neither the circuit nor the samples as they are read back may have another peak than the formula gives. */
static bool ispeak(Row const *row, double expected)
{
    double const peak = row->values[PEAK];
    return fabs(peak - expected) <= PEAK_ERROR && fabs(peak - row->largest) <= PEAK_ERROR;
}

static bool printrow(char const *shot, Row const *row)
{
    double const expected = peakcurrent(&MAGNET, row->values[CHARGE_VOLTAGE]);
    printf("%-4s", shot);
    for (int i = 0; i < COLUMNS; i++) printf(" %18.*f", columns[i].decimals, columns[i].factor * row->values[i]);
    printf(" %14.2f\n", expected / 1e3);
    return ispeak(row, expected) || failed("has a peak that the circuit can't have", shot);
}

static void printhead(void)
{
    printf("%-4s", "Shot");
    for (int i = 0; i < COLUMNS; i++) printf(" %18s", columns[i].head);
    printf(" %14s\n%-4s", "Peak by theory", "");
    for (int i = 0; i < COLUMNS; i++) printf(" %18s", columns[i].formula);
    printf("\n%-4s", "");
    for (int i = 0; i < COLUMNS; i++) printf(" %18s", columns[i].unit);
    printf(" %14s\n", "[kA]");
}

/* What stands in braces is a formula. */
static void printsentence(char const *text)
{
    char sentence[TEXT_ROOM];
    int length = sizeof sentence - 1;
    GetScalarDataSafeC(text, &length, sentence);
    sentence[length] = '\0';
    printf("\n%s\n", sentence);
}

static bool printtable(void)
{
    char shot[NAME_ROOM];
    Row row;
    printhead();
    for (int i = 0; i < SHOTS; i++) {
        shotname(i, shot, sizeof shot);
        if (!readshot(shot, &row) || !printrow(shot, &row)) return false;
    }
    printsentence("The last shot sent {I\\in} As through the coil.");
    return true;
}

static void printfolder(char const *folder)
{
    char settings[TEXT_ROOM];
    systemtext(6, settings, sizeof settings - 4);
    strcat(settings, ".ini");
    printf("\nThe experiment stays in %s. In it lie\n", folder);
    printf("  Shots/ShotA001 ... ShotA%03d   the shots, and in each of them\n", SHOTS);
    printf("    %-27s voltage of the bank [V], current in the coil [A]\n", "V.wvf, I.wvf");
    printf("    %-27s Comment, ChargeVoltage [kV], Operator, Date\n", "Scalars.ini");
    printf("  %-29s the same strings of all shots in one file\n", "Shots/ScalarCache.ini");
    printf("  %-29s settings of the experiment, all left as they are by default\n", settings);
    printf("  %-29s room for queries and macros\n", "Query, Macros");
}

int main(int argc, char **argv)
{
    if (argc != 2) {
        fprintf(stderr, "usage: discharge FOLDER\n");
        return 2;
    }
    /* The installation folder is where service modules are looked for. There are none here, so any folder will do. */
    InitializeVodrelC(".");
    if (!openexperiment(argv[1]) || !storeshots() || !printtable()) return 1;
    printfolder(argv[1]);
    return 0;
}
