/** @file
 * The functions of VodrelCore for the data language IDL, called by CALL_EXTERNAL. docs/idl-interface.md shows the
 * calls.
 *
 * All answer 0 for success and -1 for failure. A wrong number of arguments, or a null pointer for a number or an array,
 * gives -1 and has no other effect. Texts
 * are passed by value, numbers and arrays by reference: 32-bit floats and 32-bit integers (LONG). The caller owns the
 * arrays, and they hold as many elements as he says; a negative count counts as 0. Failures are told on standard
 * output. */
#ifndef VODREL_IDL_H
#define VODREL_IDL_H

#ifdef __cplusplus
extern "C" {
#endif

/** Installation folder, experiment folder: starts the library, with a new log, and opens the experiment, making what is
 * missing. Each call starts it anew; SetExperimentC stays inert. Native absolute names are taken too. */
int InitializeVodrelIDL(int argc, void *argv[]);

/** Shot name: creates a shot and makes it current; with a leading "*" an existing one is taken. */
int CreateShotIDL(int argc, void *argv[]);

/** Shot name: makes an existing shot current. */
int SetShotIDL(int argc, void *argv[]);

/** Formula, float result: -3.3e38 if it has no value, which is no failure. */
int GetScalarIDL(int argc, void *argv[]);

/** Name, float value. */
int SetScalarIDL(int argc, void *argv[]);

/** Name, float start, float step, number of points, float array: resamples as GetWaveformC does. Without such a
 * waveform -1, and the array is left alone. */
int GetWaveformIDL(int argc, void *argv[]);

/** Name, and out: float start, float step, number of points. Without such a waveform -1 and 0, 1, 0. */
int GetWaveformInfoIDL(int argc, void *argv[]);

/** Name, float start, float step, number of points, float array. A write that fails isn't told. */
int SetWaveformIDL(int argc, void *argv[]);

#ifdef __cplusplus
}
#endif

#endif
