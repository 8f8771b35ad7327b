/// What can be derived from the discharges that `discharge` has stored, over the same experiment.
///
///     derived FOLDER
///
/// Into each shot goes a matrix "B", the magnetic field of the coil at the peak of the current, over radius and length.
/// Into the experiment folder goes a particle table "Tracers", to which each shot appends its electrons. The program
/// prints a table of numbers that the library derives from each shot's current, and ends with a label of the last shot.
///
/// Exit status: 0 all went well, 1 something failed and was said on standard error, 2 wrong use.

#include <cmath>
#include <cstdio>
#include <string>

#include "VodrelCore.h"

namespace {

// ---- The coil: that of the discharges, wound in one layer ----

double const turns = 109;
double const coilRadius = 0.10;            // m
double const coilLength = 0.30;            // m
double const fullTurn = 6.283185307179586; // rad
double const mu0 = 2e-7 * fullTurn;        // V s / (A m)

int const radii = 19;          // points from the axis to 90 mm
int const lengths = 41;        // points from -200 to 200 mm
float const gridStep = 0.005f; // m, in radius
float const lengthStep = 0.01f;
float const firstLength = -0.20f;

/// Complete elliptic integrals of the first and second kind of the parameter m = k^2, by the arithmetic-geometric mean
/// (Abramowitz and Stegun, 17.6).
struct Elliptic {
    double k;
    double e;
};

Elliptic elliptic(double m)
{
    double a = 1;
    double b = std::sqrt(1 - m);
    double c = std::sqrt(m);
    double sum = c * c / 2;
    for (double power = 1; c > 1e-12; power *= 2) {
        c = (a - b) / 2;
        double const mean = (a + b) / 2;
        b = std::sqrt(a * b);
        a = mean;
        sum += power * c * c;
    }
    double const k = fullTurn / (4 * a);
    return {k, k * (1 - sum)};
}

/// The axial field of one loop of 1 A at radius `r` and distance `z` from its plane (Smythe, Static and Dynamic
/// Electricity, 7.10).
double fieldOfLoop(double r, double z)
{
    double const a = coilRadius;
    double const outer = (a + r) * (a + r) + z * z;
    double const inner = (a - r) * (a - r) + z * z;
    Elliptic const integral = elliptic(4 * a * r / outer);
    return mu0 / (fullTurn * std::sqrt(outer)) * (integral.k + (a * a - r * r - z * z) / inner * integral.e);
}

/// The axial field of the whole coil, in T.
double fieldOfCoil(double current, double r, double z)
{
    double sum = 0;
    for (int i = 0; i < static_cast<int>(turns); ++i) {
        double const plane = coilLength * ((i + 0.5) / turns - 0.5);
        sum += fieldOfLoop(r, z - plane);
    }
    return current * sum;
}

/// The field over radius (first axis) and length (second axis), both in m.
bool storeField(float current)
{
    Matrix field(radii, lengths, 1);
    field.SetStep(1, gridStep, 0.0f);
    field.SetStep(2, lengthStep, firstLength);
    for (int j = 0; j < lengths; ++j) {
        for (int i = 0; i < radii; ++i) {
            double const b = fieldOfCoil(current, field.GetCoord(1, i), field.GetCoord(2, j));
            field(i, j) = static_cast<float>(b);
        }
    }
    field.units = "T";
    field.note = "axial field at the peak of the current";
    field.t1 = current;
    field.Scale();
    return field.Write(Expt.GetDataFileName("B"));
}

// ---- Tracers: electrons that start on a ring in the middle of the coil and turn in its field ----

int const tracersPerShot = 12;
double const ringRadius = 5e-3;          // m
double const speed = 1e7;                // m/s, outward at the start
double const flightTime = 2e-12;         // s
double const chargeToMass = -1.75882e11; // C/kg

/// Where an electron is after the flight in a uniform field: its velocity has turned by the cyclotron angle.
PGParticle tracer(double field, double angle, int shotNumber)
{
    double const turn = -chargeToMass * field * flightTime;
    double const gyroRadius = speed / (chargeToMass * field);
    double const vx = speed * std::cos(angle + turn);
    double const vy = speed * std::sin(angle + turn);
    double const x = ringRadius * std::cos(angle) - gyroRadius * (std::sin(angle + turn) - std::sin(angle));
    double const y = ringRadius * std::sin(angle) + gyroRadius * (std::cos(angle + turn) - std::cos(angle));
    PGParticle row = {};
    double const columns[] = {x, y, 0, vx, vy, 0, field, static_cast<double>(shotNumber)};
    for (int column = 0; column < ParticleGroup::nParticleCols; ++column) {
        row.column[column] = static_cast<float>(columns[column]);
    }
    return row;
}

bool appendTracers(float current, int shotNumber, DString const &file)
{
    double const field = fieldOfCoil(current, 0, 0);
    ParticleGroup electrons(tracersPerShot);
    for (int i = 0; i < tracersPerShot; ++i) {
        electrons.PData()[i] = tracer(field, fullTurn * i / tracersPerShot, shotNumber);
    }
    electrons.note = "electrons: x, y, z [m], vx, vy, vz [m/s], field [T], shot";
    electrons.Scale(); // the extremes go into the file's header
    return electrons.Append(file);
}

// ---- The table ----

struct Column {
    char const *head;
    char const *unit;
    char const *parameter; // of the trace, as users of the library write it
    double factor;         // from A and s to the unit
};

Column const columns[] = {
    {"Peak", "[kA]", "mx", 1e-3},         {"at", "[ms]", "tm", 1e3},     {"Rise 10-90", "[ms]", "19", 1e3},
    {"Width at half", "[ms]", "fh", 1e3}, {"Integral", "[As]", "in", 1},
};

void printHead()
{
    std::printf("\n%-6s", "Shot");
    for (Column const &column : columns) std::printf("%15s", column.head);
    std::printf("%15s\n%-6s", "Field", "");
    for (Column const &column : columns) std::printf("%15s", column.unit);
    std::printf("%15s\n", "[T]");
}

void printShot(DString const &shot, Waveform &current, Matrix const &field)
{
    std::printf("%-6s", shot.c_str());
    for (Column const &column : columns) {
        std::printf("%15.3f", column.factor * static_cast<double>(current.GetTraceParam(column.parameter)));
    }
    std::printf("%15.2f\n", static_cast<double>(field.GetMatrixParam("mx")));
}

bool fail(char const *sentence, DString const &shot)
{
    std::fprintf(stderr, "derived: shot %s: %s\n", shot.c_str(), sentence);
    return false;
}

/// Stores what is derived from one shot, and prints its line from what the cache of the library lends.
bool treatShot(DString const &shot, DString const &tracers)
{
    if (!Expt.SetShot(shot, -1)) return fail("it isn't there", shot);
    void *borrowed = Expt.GetDataPtr("I", DataWaveform);
    if (!borrowed) return fail("the current I can't be read", shot);
    Waveform &current = *static_cast<Waveform *>(borrowed);
    int number = 0;
    shot.EndNumber(number);
    bool const stored = storeField(current.Max()) && appendTracers(current.Max(), number, tracers);
    Matrix field;
    if (stored && field.Read(Expt.GetDataFileName("B"), -1, 0)) printShot(shot, current, field);
    Expt.ReleaseDataPtr("", DataWaveform, borrowed); // an empty name: nothing was changed
    return stored || fail("the field or the tracers can't be written", shot);
}

/// The class takes paths of the library: backslashes, and Z: for the root of the host.
DString systemPath(std::string folder)
{
    for (char &c : folder) {
        if (c == '/') c = '\\';
    }
    return DString(((folder.empty() || folder[0] != '\\' ? "" : "Z:") + folder).c_str());
}

void printEnd(DString const &tracers, char const *folder)
{
    ParticleGroup all;
    all.Read(tracers, 0, 0); // the header tells how many there are
    std::printf("\nAdded to %s:\n", folder);
    std::printf("  Shots/ShotA001/B.dmt ...      axial field [T] over radius and length, %d x %d points\n", radii,
                lengths);
    std::printf("  Tracers.dpt                   %d electrons, %d of each shot\n", all.nOrigParticles(),
                tracersPerShot);
    DString const label = Expt.GetExpandedLabel("Shot ![Shot]: peak ![I\\mx%.0f] A at ![ChargeVoltage%.1f] kV");
    std::printf("\n%s\n", label.c_str());
}

} // namespace

int main(int argc, char **argv)
{
    int const shots = 8;
    if (argc != 2) {
        std::fprintf(stderr, "usage: derived FOLDER\n");
        return 2;
    }
    CoreInit("");
    Expt.SetExperimentFolder(systemPath(argv[1]));
    DString const tracers = Expt.GetDataFileName(".\\Tracers");
    DeleteFileD(tracers + ".dpt"); // a second run begins anew
    printHead();
    for (int i = 1; i <= shots; ++i) {
        if (!treatShot("A" + Format(i, "%03i"), tracers)) return 1;
    }
    printEnd(tracers, argv[1]);
    return 0;
}
