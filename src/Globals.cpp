/// Every global object of the library, in the order in which they come up; they go in the reverse order at unload.
/// The constants and plain values are ready before any constructor runs.

#include "VodrelCore.h"

namespace {

/// Its count is never touched, and its length of 0 keeps every write off it.
struct EmptyText {
    int refs;
    int len;
    int allocLen;
    char text[4];
};
constexpr EmptyText emptyText = {-1, 0, 0, {}};

/// An array of its own, which no linker merges with another text of these characters: the pointer itself is a command
/// to DStringArray.
constexpr char lineDelimiter[] = {'\r', '\n', '\0'};

} // namespace

// ---- Constants ----

unsigned int const npos = 0x7FFFFFFF;
float const DFMax = 3.3e38f;
float const pi = 3.14159274f;
char const *const DEmptyString = emptyText.text;
char const *const LDelim = lineDelimiter;
int const LenLD = 2;
int const Experiment::CurDataVersion = 19;
int const MaxParticleBatch = 10000000;
int const ParticleGroup::nParticleCols = 8;

// ---- Plain values ----

bool Logging = false;
bool Silent = false;
bool PublicWrite = false;
QNotify *QNot = nullptr;
DNotify *InstalledNotifier = nullptr;
double StartTime = 0;
bool ExternalInit = false;

// ---- Objects ----

CFNotify CNotifier;
DIni VoIni;
Experiment Expt;
DStringArray SheetData;
ModuleHandles ModuleTable;
DString VodrelPath;
DString UserPath;
DString WorkingPath;
DString ComputerName;
DString const NumberChars = "1234567890.";
DString const OperatorChars = " +-*/^(";
CFNotify IDLNotifier;
