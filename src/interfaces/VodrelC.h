/** @file
 * The flat functions of VodrelCore, for programs in C or in any language that can call a C function.
 *
 * A stand-alone program calls InitializeVodrelC, then SetExperimentC, then anything else. Inside a host
 * that has started the library itself InitializeVodrelC isn't called, and changes of the current shot are
 * reported to that host. There is no closing call: what was written is on disk.
 *
 * Texts in are NUL-terminated; null counts as empty. Texts out take `*len` as the room of the buffer and return the
 * number of characters there; no NUL is written behind them. A negative count counts as 0, if nothing else is said. The
 * caller owns all arrays, and they hold as many elements as he says; a null array is neither read nor written. All
 * calls come from one thread at a time. docs/c-interface.md tells of each function what it does when it fails. */
#ifndef VODREL_C_H
#define VODREL_C_H

#ifdef __cplusplus
extern "C" {
#endif

/** Starts the library with its installation folder, and a new log. A path that ends in "$L" asks for lines about
 * progress in the log. The same path again, whatever its case, only writes a line to the log; so does an empty
 * path on the first call, which starts nothing. A native absolute name ("/opt/vodrel") is taken too. */
void InitializeVodrelC(char const *path);

/** Sends a text to the notifier. The library's own prints it for code 2, appends it to the log for code 5 and drops the
 * rest; a host's notifier gets everything. */
void NotifyC(int code, int arg, char const *text);

/** Sleeps for so many milliseconds. */
void CSleep(int milliseconds);

/** Text by code: 0 installation folder, 1 current shot, 2 its folder, 3 experiment folder, 4 per-user folder,
 * 5 the host list "MPIHosts.txt" there, 6 experiment name, 99 a test text; empty for any other. */
void GetStringC(int code, int *len, char *buf);

/** Answers 316. */
int TestFuncC(void);

/** Opens an experiment folder, making what is missing; does nothing before InitializeVodrelC. A native absolute
 * name is taken too. */
void SetExperimentC(char const *folder);

/** Creates a shot and makes it current; 1, or 0 with a message if it exists. A leading "*" takes an existing one; "*"
 * alone names the shot in whose folder the program runs. */
int CreateShotC(char const *name);

/** Makes an existing shot current, with or without a leading "*"; 1, or 0 with a message. */
int SetShotC(char const *name);

/** A string of the current shot: by its name, "Shot" for the shot's own name, "A::B" for B where A has no value. An
 * empty value deletes the string. */
void GetStringDataC(char const *name, int *len, char *buf);
void SetStringDataC(char const *name, char const *value);

/** Waveforms by name: "W" of the current shot, "A1\W" of another. Times in seconds. A name that leads to no shot
 * reads as a file that isn't there, and what is stored under it is dropped.
 *
 * GetWaveformC resamples onto n values from `start`, `step` apart. Where the trace isn't, and for a file that isn't
 * there, the values are 0; with a step of 0 or less the samples come as they are. */
void GetWaveformC(char const *name, int n, float start, float step, float *out);

/** Number of samples, time of the first and step, from the file's header. Without a file 0, 0 and 1. */
void GetWaveformInfoC(char const *name, int *n, float *start, float *step);

/** Stores n values. */
void SetWaveformC(char const *name, int n, float start, float step, float const *data);

/** Stores n pairs (time, value) as an equally spaced waveform from the first to the last time; the times between
 * aren't looked at. Nothing is stored for fewer than two pairs. */
void SetWaveformXYC(char const *name, int n, float const *xy);

/** Matrices by name, as waveforms. The first dimension runs fastest: value (i, j, k) is element i + n1 * (j + n2 * k);
 * a matrix of two dimensions has n3 = 1. Coordinate i of a dimension is start + i * step.
 *
 * GetMatrixC copies all values if the three sizes are those of the matrix, otherwise nothing; starts and steps aren't
 * looked at. Without a file the matrix is one value, 0. */
void GetMatrixC(char const *name, int n1, float start1, float step1, int n2, float start2, float step2, int n3,
                float start3, float step3, float *out);

/** Size, first coordinate and step of each dimension, from the file's header; the step is 0 for coordinates that aren't
 * equally spaced. Without a file sizes of 1. */
void GetMatrixInfoC(char const *name, int *n1, float *start1, float *step1, int *n2, float *start2, float *step2,
                    int *n3, float *start3, float *step3);

/** Stores n1 * n2 * n3 values. A step of 0 or less sets no coordinates: they are 0, 0, 1, 2 and so on. A size below 1
 * stores a size of 1, and values that are not given are 0. A matrix of more than 2^31 - 1 values isn't stored. */
void SetMatrixC(char const *name, int n1, float start1, float step1, int n2, float start2, float step2, int n3,
                float start3, float step3, float const *data);

/** Particle groups by name, as waveforms. A particle is a row of 8 values, the position in columns 0 and 1, a vector in
 * columns 3 and 4; with geometry 0 rectangular, otherwise polar.
 *
 * GetPGroupC copies at most *count particles from number `first` on, all of them (10,000,000 at most) for a negative
 * *count, as they are in the file; a `first` of -77 means from 0 on and in rectangular coordinates. *count becomes the
 * number copied; without a file 0. */
void GetPGroupC(char const *name, int *count, int first, float *out);

/** Number of particles in the file, geometry, and two values of the header that programs use as they like. Without a
 * file all are 0. */
void GetPGroupInfoC(char const *name, int *nOrig, int *geometry, float *header2, float *header1);

/** Stores `count` particles, or adds them to a file, which is made if it isn't there. A file that grows keeps its own
 * geometry and header values. Counts below 0, and of 2^28 and more, store none. */
void SetPGroupC(char const *name, int count, int geometry, float header2, float header1, float const *data);
void AppendPGroupC(char const *name, int count, int geometry, float header2, float header1, float const *data);

/** The value of a formula over the current shot (docs/language.md): "2*ChargeVoltage", "U\mx". -3.3e38 if it has none.
 */
float GetScalarDataC(char const *name);

/** The same as text, if *len is below 60 on entry: the value with eight digits, "-3.3e+38" for none. With more room
 * `expr` is a text in which {formula} is replaced by its value; if it has none the answer is "Error evaluating scalar
 * expression" and the formula. Only the first formula of a text works so: behind it, what stands after each further "}"
 * is taken as a formula. */
void GetScalarDataSafeC(char const *expr, int *len, char *buf);

/** Stores a number as a value of the current shot, or as a free parameter of a data file, "U\T2". */
void SetScalarDataC(char const *name, float value);

/** Writes the host list "MPIHosts.txt" (GetStringC, code 5) with at least n of the nodes in the user's settings, each
 * of them once for n below 1; answers n, which has no upper limit. */
int GetNodesC(int n);

#ifdef __cplusplus
}
#endif

#endif
