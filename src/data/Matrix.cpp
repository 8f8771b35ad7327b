/// The record: sizes, copies, scaling. The file is in MatrixFile.cpp, the axes in MatrixCoords.cpp.

#include "data/Matrix.h"

#include <climits>
#include <cmath>

#include "data/AxisTicks.h"

template class DArray<Matrix, 1>;

Matrix::MDim::MDim()
{
    zeroFill = true; // no coordinate is ever undefined memory
    DArray<float, 0>::Size(1);
}

namespace {

/// A partial read of one slice leaves the second coordinate behind the count, where the first interval is still asked
/// for; a copy takes it along.
void copyInterval(Matrix::MDim &to, Matrix::MDim const &from)
{
    if (from.Count() == 1 && from.Capacity() > 1) to[1] = from[1];
}

} // namespace

Matrix::MDim::MDim(MDim const &other) : DArray<float, 0>(other), step(other.step), origSize(other.origSize)
{
    copyInterval(*this, other);
}

Matrix::MDim::~MDim() = default;

Matrix::MDim &Matrix::MDim::operator=(MDim const &other)
{
    if (this == &other) return *this;
    DArray<float, 0>::operator=(other);
    step = other.step;
    origSize = other.origSize;
    copyInterval(*this, other);
    return *this;
}

Matrix::Matrix(int n1, int n2, int n3)
{
    DArray<float, 0>::Size(setcoords(n1, n2, n3));
}

Matrix::Matrix(Matrix const &other) : DArray<float, 0>(other)
{
    CopyHeader(other);
}

Matrix::~Matrix() = default;

Matrix &Matrix::operator=(Matrix const &other)
{
    if (this == &other) return *this;
    DArray<float, 0>::operator=(other);
    CopyHeader(other);
    return *this;
}

void Matrix::CopyHeader(Matrix const &other)
{
    rank = other.rank;
    maxValue = other.maxValue;
    minValue = other.minValue;
    scaleUnit = other.scaleUnit;
    for (int d = 0; d < nDims; ++d) dims[d] = other.dims[d];
    copyparameters(other);
    note = other.note;
    stamp = other.stamp;
    units = other.units;
}

void Matrix::copyparameters(Matrix const &other)
{
    t1 = other.t1;
    t2 = other.t2;
    t3 = other.t3;
    t4 = other.t4;
    t5 = other.t5;
}

Matrix &Matrix::InitFrom(Matrix const &other, bool copyParams)
{
    if (this == &other) return *this;
    DArray<float, 0>::Size(other.Count());
    rank = other.rank;
    for (int d = 0; d < nDims; ++d) dims[d] = other.dims[d];
    if (copyParams) {
        copyparameters(other);
        calibration = other.calibration;
    }
    return *this;
}

void Matrix::Size(int n1, int n2, int n3)
{
    DArray<float, 0>::Size(setcoords(n1, n2, n3));
}

void Matrix::ReSize(int n1, int n2, int n3)
{
    DArray<float, 0>::ReSize(setcoords(n1, n2, n3));
}

void Matrix::Reserve(int n1, int n2, int n3)
{
    DArray<float, 0>::Reserve(setcoords(n1, n2, n3));
}

int Matrix::GetSize(int d) const
{
    return isDimension(d) ? dims[d - 1].Count() : -1;
}

int Matrix::GetOrigSize(int d) const
{
    return isDimension(d) ? dims[d - 1].origSize : -1;
}

void Matrix::Zero()
{
    for (int i = 0; i < Count(); ++i) Data()[i] = 0.0f;
}

void Matrix::Scale()
{
    float const *const values = Data();
    int const n = Count();
    float highest = -DFMax;
    float lowest = DFMax;
    for (int i = 0; i < n; ++i) {
        if (values[i] > highest) highest = values[i];
        if (values[i] < lowest) lowest = values[i];
    }
    maxValue = highest;
    minValue = lowest;
    float const magnitude = std::fmax(std::fabs(highest), std::fabs(lowest));
    bool const tiny = static_cast<double>(magnitude) < smallestMagnitude;
    scaleUnit = TickSize(tiny ? static_cast<float>(smallestMagnitude) : magnitude);
}

void Matrix::SetCalibration(float c)
{
    if (c == 0.0f || !IsVF(c)) return;
    float const factor = c / calibration;
    for (int i = 0; i < Count(); ++i) Data()[i] *= factor;
    Scale();
    calibration = c;
}

void Matrix::SwapData(DArray<float, 0> &other)
{
    DArray<float, 0>::SwapData(other);
}

void Matrix::SwapData(Matrix &other)
{
    DArray<float, 0>::SwapData(other);
}

/// The product of the sizes of the axes, but for one if it is named. Beyond what any array holds it stays at a value
/// above that.
long long Matrix::product(MDim const *without) const
{
    long long total = 1;
    bool empty = false;
    for (MDim const &dim : dims) {
        if (&dim == without) continue;
        empty = empty || dim.Count() == 0;
        total *= dim.Count();
        if (total > INT_MAX) total = 1LL + INT_MAX;
    }
    return empty ? 0 : total;
}

float *Matrix::Slot(int i)
{
    static float Matrix::*const slots[] = {&Matrix::scaleUnit, &Matrix::t1, &Matrix::t2,
                                           &Matrix::t3,        &Matrix::t4, &Matrix::t5};
    int const nSlots = sizeof slots / sizeof *slots;
    return i >= 0 && i < nSlots ? &(this->*slots[i]) : nullptr;
}
