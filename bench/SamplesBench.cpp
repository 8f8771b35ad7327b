/// Walks over the samples of a trace: scaling, resampling and the parameters, each beside a plain loop that takes the
/// same steps in the same order.

#include <cmath>
#include <cstdlib>
#include <string>

#include "Beside.h"

namespace {

int const nSamples = 1000000;
int const nAligned = 10000000;
float const highest = 1.0f;

/// Low all along, with the peak and a last fall at the very end, so that all searches go through nearly all of it.
Waveform late;

/// Above half of the peak everywhere, which stands in the middle.
Waveform plateau;

/// What the searches on a pair of traces read their answers from.
Waveform positions;

float ripple(int i)
{
    return static_cast<float>(i * 37 % 101) / 2000;
}

void prepare()
{
    late.Size(nSamples);
    plateau.Size(nSamples);
    positions.Size(nSamples);
    for (int i = 0; i < nSamples; ++i) {
        late[i] = ripple(i);
        plateau[i] = 0.75f + ripple(i);
        positions[i] = static_cast<float>(i);
    }
    for (int i = 0; i < 10; ++i) late[nSamples - 20 + i] = highest * static_cast<float>(i + 1) / 10;
    plateau[nSamples / 2] = highest;
    for (Waveform *trace : {&late, &plateau, &positions}) trace->Scale();
}

// ---- Scaling ----

struct Extremes {
    float high = -DFMax;
    float low = DFMax;
    int pointOfHigh = 0;
    int pointOfLow = 0;
};

void scaleBare()
{
    Extremes found;
    float *const y = late.Data();
    for (int i = 0; i < nSamples; ++i) {
        double const wide = y[i];
        if (!(wide > -9.9e34 && wide < 9.9e34)) y[i] = -3.3e38f;
        float const value = y[i];
        if (value > found.high) {
            found.high = value;
            found.pointOfHigh = i + 1;
        }
        if (found.low > value && static_cast<double>(value) > -9.9e33) {
            found.low = value;
            found.pointOfLow = i + 1;
        }
    }
    benchmark::DoNotOptimize(found);
}

// ---- Sums ----

float averageBare(Waveform const &trace)
{
    float const *const y = trace.Data();
    float sum = 0;
    for (int i = 0; i < nSamples - 1; ++i) sum += y[i];
    return sum / static_cast<float>(nSamples - 1);
}

float integralBare(Waveform const &trace)
{
    float const *const y = trace.Data();
    float sum = 0;
    for (int i = 1; i < nSamples; ++i) sum += y[i];
    return sum * trace.timeStep;
}

float peakOfIntegralBare(Waveform const &trace)
{
    float const *const y = trace.Data();
    float run = 0;
    float best = 0;
    for (int i = 1; i < nSamples; ++i) {
        run += y[i];
        if (!(best > run)) best = run;
    }
    return best * trace.timeStep;
}

float radialIntegralBare(Waveform const &trace)
{
    float const *const y = trace.Data();
    float const step = trace.timeStep;
    float area = 0;
    float const width = 3.14159274f * 2.0f * step;
    for (int i = 1; i < nSamples; ++i) {
        float const term = width * y[i] * step;
        double const radius = static_cast<double>(static_cast<float>(i)) - 0.5;
        area = static_cast<float>(static_cast<double>(area) + static_cast<double>(term) * radius);
    }
    return area;
}

float deviationBare(Waveform const &trace)
{
    float const *const y = trace.Data();
    float sum = 0;
    for (int i = 0; i < nSamples; ++i) sum += y[i];
    float const mean = sum / static_cast<float>(nSamples);
    float squares = 0;
    for (int i = 0; i < nSamples; ++i) {
        float const difference = y[i] - mean;
        squares += difference * difference;
    }
    return std::sqrt(squares / static_cast<float>(nSamples - 1));
}

float weightedTimeBare(Waveform const &trace)
{
    float const *const y = trace.Data();
    float const start = trace.Start();
    float const step = trace.timeStep;
    float sum = 0;
    float moment = 0;
    for (int i = 0; i < nSamples; ++i) {
        sum += y[i];
        moment += (static_cast<float>(i) * step + start) * y[i];
    }
    return moment / sum;
}

// ---- Searches. Each is a function of its own, so that all walk in the same way. ----

[[gnu::noinline]] int firstAbove(float const *y, int i, float value)
{
    while (i < nSamples - 1 && !(y[i] > value)) ++i;
    return i;
}

[[gnu::noinline]] int lastAbove(float const *y, int i, float value)
{
    while (i > 1 && !(y[i] > value)) --i;
    return i;
}

[[gnu::noinline]] int firstBelow(float const *y, int i, float value)
{
    while (i < nSamples - 1 && !(value > y[i])) ++i;
    return i;
}

[[gnu::noinline]] int lastBelow(float const *y, int i, float value)
{
    while (i > 1 && !(value > y[i])) --i;
    return i;
}

float forwardBare(Waveform const &trace)
{
    return static_cast<float>(firstAbove(trace.Data(), 1, highest));
}

float backwardBare(Waveform const &trace)
{
    return static_cast<float>(lastAbove(trace.Data(), nSamples - 2, highest));
}

float riseBare(Waveform const &trace)
{
    int const end = firstAbove(trace.Data(), 1, 0.9f * highest);
    return static_cast<float>(end - firstAbove(trace.Data(), 1, 0.1f * highest));
}

float widthBare(Waveform const &trace)
{
    int const peak = nSamples / 2;
    int const left = lastBelow(trace.Data(), peak, 0.5f * highest);
    return static_cast<float>(firstBelow(trace.Data(), peak, 0.5f * highest) - left);
}

struct Parameter {
    char const *code;
    Waveform &trace;
    float (*bare)(Waveform const &trace);
};

Parameter const parameters[] = {
    {"av", late, averageBare},        {"la[999999]", late, averageBare},
    {"ta[0]", late, averageBare},     {"in", late, integralBare},
    {"pi", late, peakOfIntegralBare}, {"ri", late, radialIntegralBare},
    {"sd", late, deviationBare},      {"wa", late, weightedTimeBare},
    {"fh", plateau, widthBare},       {"19", late, riseBare},
    {"28", late, riseBare},           {"tv[1]", late, forwardBare},
    {"t%[100]", late, forwardBare},   {"bv[1]", late, backwardBare},
    {"b%[100]", late, backwardBare},
};

Parameter const pairParameters[] = {
    {"19", late, riseBare},
    {"tv[1]", late, forwardBare},
    {"bv[1]", late, backwardBare},
};

// ---- Resampling ----

struct Grid {
    float start;
    float step;
};

/// Two grids that cover the same time, to and fro between which a trace is resampled without end.
Grid const grids[] = {{0, 1}, {0.25f, 0.999f}};

void alignOurs()
{
    static Waveform trace(nAligned);
    static int turn = 0;
    if (turn == 0) trace.Zero();
    Grid const &to = grids[++turn % 2];
    trace.Align(nAligned, to.start, to.step);
    benchmark::DoNotOptimize(trace.Data());
}

float *resampleBare(float const *y, Grid const &from, Grid const &to)
{
    auto *const out = static_cast<float *>(std::malloc(nAligned * sizeof(float)));
    float const last = static_cast<float>(nAligned - 1);
    float const ratio = to.step / from.step;
    float pos = (to.start - from.start) / from.step;
    int j = 0;
    for (; pos < 0 && j < nAligned; ++j, pos += ratio) out[j] = 0;
    for (; last > pos && j < nAligned; ++j, pos += ratio) {
        int const i = static_cast<int>(pos);
        float const f = pos - static_cast<float>(i);
        out[j] = (1 - f) * y[i] + f * y[i + 1];
    }
    if (pos == last && j < nAligned) out[j++] = y[nAligned - 1];
    for (; j < nAligned; ++j) out[j] = 0;
    return out;
}

void alignBare()
{
    static auto *trace = static_cast<float *>(std::calloc(nAligned, sizeof(float)));
    static int turn = 0;
    ++turn;
    float *const aligned = resampleBare(trace, grids[(turn + 1) % 2], grids[turn % 2]);
    std::free(trace);
    trace = aligned;
    benchmark::DoNotOptimize(trace);
}

// ---- Rows ----

Beside::Work walking(std::function<float()> walk)
{
    return Beside::Work([walk] { benchmark::DoNotOptimize(walk()); }).Per(nSamples);
}

void declare()
{
    using namespace Beside;
    std::string const unit = "sample";
    Measure("Waveform::Align to 10 million samples, beside the loop", unit, Speed(0.9), Work(alignOurs).Per(nAligned),
            Work(alignBare).Per(nAligned));
    Measure("Waveform::Scale, beside the loop", unit, Speed(0.9), Work([] { late.Scale(); }).Per(nSamples),
            Work(scaleBare).Per(nSamples));
    for (Parameter const &row : parameters) {
        Measure("Parameter " + std::string(row.code) + ", beside the loop", unit, Speed(0.9),
                walking([&row, code = DString(row.code)] { return row.trace.GetTraceParam(code); }),
                walking([&row] { return row.bare(row.trace); }));
    }
    for (Parameter const &row : pairParameters) {
        Measure("Parameter " + std::string(row.code) + " of a pair, beside the loop", unit, Speed(0.9),
                walking([&row, code = DString(row.code)] { return row.trace.GetXYTraceParam(code, positions); }),
                walking([&row] { return row.bare(row.trace); }));
    }
}

} // namespace

int main(int argc, char **argv)
{
    return Beside::Run(argc, argv, "Walks over samples", prepare, declare);
}
