/* The flat functions of VodrelCore, for programs in C or in any language that can call a C function.
 *
 * A stand-alone program calls InitializeVodrelC, then SetExperimentC, then anything else. Inside a host
 * that has started the library itself InitializeVodrelC isn't called, and changes of the current shot are
 * reported to that host. There is no closing call: what was written is on disk.
 *
 * Texts in are NUL-terminated; null counts as empty. Texts out take `*len` as the room of the buffer and return the
 * number of characters there; no NUL is written behind them. A negative count counts as 0. The caller owns all
 * arrays, and they hold as many elements as he says. All calls come from one thread at a time. */
#ifndef VODREL_C_H
#define VODREL_C_H

#ifdef __cplusplus
extern "C" {
#endif

/* Starts the library with its installation folder, and a new log. A path that ends in "$L" asks for lines about
 * progress in the log. The same path again, whatever its case, only writes a line to the log; so does an empty
 * path on the first call, which starts nothing. A native absolute name ("/opt/vodrel") is taken too. */
void InitializeVodrelC(char const *path);

/* Sends a text to the notifier. The library's own prints it for code 2, appends it to the log for code 5 and drops the
 * rest; a host's notifier gets everything. */
void NotifyC(int code, int arg, char const *text);

/* Sleeps for so many milliseconds. */
void CSleep(int milliseconds);

/* Text by code: 0 installation folder, 1 current shot, 2 its folder, 3 experiment folder, 4 per-user folder,
 * 5 the host list "MPIHosts.txt" there, 6 experiment name, 99 a test text; empty for any other. */
void GetStringC(int code, int *len, char *buf);

/* Answers 316. */
int TestFuncC(void);

/* Opens an experiment folder, making what is missing; does nothing before InitializeVodrelC. A native absolute
 * name is taken too. */
void SetExperimentC(char const *folder);

/* Creates a shot and makes it current; 1, or 0 with a message if it exists. A leading "*" takes an existing one; "*"
 * alone names the shot in whose folder the program runs. */
int CreateShotC(char const *name);

/* Makes an existing shot current, with or without a leading "*"; 1, or 0 with a message. */
int SetShotC(char const *name);

/* A string of the current shot: by its name, "Shot" for the shot's own name, "A::B" for B where A has no value. An
 * empty value deletes the string. */
void GetStringDataC(char const *name, int *len, char *buf);
void SetStringDataC(char const *name, char const *value);

/* Waveforms by name: "W" of the current shot, "A1\W" of another. Times in seconds. A name that leads to no shot
 * reads as a file that isn't there, and what is stored under it is dropped.
 *
 * GetWaveformC resamples onto n values from `start`, `step` apart. Where the trace isn't, and for a file that isn't
 * there, the values are 0; with a step of 0 or less the samples come as they are. */
void GetWaveformC(char const *name, int n, float start, float step, float *out);

/* Number of samples, time of the first and step, from the file's header. Without a file 0, 0 and 1. */
void GetWaveformInfoC(char const *name, int *n, float *start, float *step);

/* Stores n values. */
void SetWaveformC(char const *name, int n, float start, float step, float const *data);

/* Stores n pairs (time, value) as an equally spaced waveform from the first to the last time; the times between
 * aren't looked at. Nothing is stored for fewer than two pairs. */
void SetWaveformXYC(char const *name, int n, float const *xy);

#ifdef __cplusplus
}
#endif

#endif
