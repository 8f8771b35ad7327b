/// The axes of a matrix, and the two-letter parameters.

#include "data/Matrix.h"

#include <climits>
#include <new>

namespace {

/// The coordinate that lies in the block of an axis at `i`. A partial read keeps the leading coordinates and leaves
/// those behind them in the block, where a parameter may still ask for the first interval.
float stored(Matrix::MDim const &dim, int i)
{
    return i >= 0 && i < dim.Capacity() ? dim[i] : 0.0f;
}

float firstInterval(Matrix::MDim const &dim)
{
    return stored(dim, 1) - stored(dim, 0);
}

float lastOf(Matrix::MDim const &dim)
{
    return stored(dim, dim.Count() - 1);
}

} // namespace

int Matrix::setcoords(int &n1, int &n2, int &n3)
{
    int *const sizes[nDims] = {&n1, &n2, &n3};
    long long total = 1;
    for (int *size : sizes) {
        if (*size < 1) *size = 1;
        total *= *size;
        if (total > INT_MAX) throw std::bad_alloc();
    }
    rank = n3 > 1 ? 3 : 2;
    for (int d = 0; d < rank; ++d) {
        MDim &dim = dims[d];
        int const size = *sizes[d];
        int const old = dim.Count();
        dim.ReSize(size);
        dim.origSize = size;
        for (int k = 1; old + k < size; ++k) {
            float const distance = dim.step > 0 ? static_cast<float>(k) * dim.step : static_cast<float>(k);
            dim[old + k] = distance + dim[old];
        }
    }
    for (int d = rank; d < nDims; ++d) {
        dims[d].DArray<float, 0>::Size(1);
        dims[d][0] = 0.0f;
        dims[d].origSize = 1;
    }
    return static_cast<int>(total);
}

float Matrix::GetCoord(int d, int i) const
{
    if (!isDimension(d) || i < 0 || i >= dims[d - 1].Count()) return -1.0f;
    return dims[d - 1][i];
}

void Matrix::SetCoord(int d, int i, float value)
{
    double const smallestRise = 1e-30;
    if (!isDimension(d)) return;
    MDim &dim = dims[d - 1];
    if (i < 0 || i >= dim.Count() || dim.step > 0) return;
    if (i > 0) {
        double const least = static_cast<double>(dim[i - 1]) + smallestRise;
        if (static_cast<double>(value) < least) value = static_cast<float>(least);
    }
    dim[i] = value;
}

float Matrix::GetStep(int d) const
{
    return isDimension(d) ? dims[d - 1].step : -1.0f;
}

void Matrix::SetStep(int d, float step, float start)
{
    if (!isDimension(d)) return;
    MDim &dim = dims[d - 1];
    dim.step = step;
    if (!(step > 0)) return;
    for (int i = 0; i < dim.Count(); ++i) dim[i] = static_cast<float>(i) * step + start;
}

DArray<float, 0> Matrix::GetAllCoords(int d) const
{
    return dims[isDimension(d) ? d - 1 : 0];
}

void Matrix::SetAllCoords(int d, DArray<float, 0> const &coords)
{
    if (!isDimension(d) || coords.Count() != dims[d - 1].Count()) return;
    MDim &dim = dims[d - 1];
    dim.Replace(coords.Data(), 0, coords.Count());
    dim.step = 0;
}

DArray<float, 0> Matrix::GetPartialCoords(int d, float low, float high) const
{
    DArray<float, 0> result;
    if (!isDimension(d) || dims[d - 1].Count() == 0) return result;
    MDim const &dim = dims[d - 1];
    int const last = dim.Count() - 1;
    int from = 0;
    int to = last;
    if (IsVF(low)) {
        while (low > dim[from] && from < last) ++from;
    }
    if (IsVF(high)) {
        while (dim[to] > high && to > from) --to;
    }
    result.Insert(dim.Data() + from, npos, to - from + 1);
    return result;
}

void Matrix::CopyCoords(int d, int fromD, Matrix const &source)
{
    if (isDimension(d) && isDimension(fromD)) dims[d - 1] = source.dims[fromD - 1];
}

void Matrix::exchangeAxes(MDim &a, MDim &b)
{
    a.DArray<float, 0>::SwapData(b);
    float const step = a.step;
    a.step = b.step;
    b.step = step;
}

void Matrix::SwapCoords(int d1, int d2)
{
    int const used = usedDims();
    if (d1 < 1 || d2 < 1 || d1 >= used || d2 > used) return;
    exchangeAxes(dims[d1 - 1], dims[d2 - 1]);
}

int Matrix::PointAtCoord(int d, float value) const
{
    if (d < 1 || d > usedDims()) return 0;
    MDim const &dim = dims[d - 1];
    for (int i = 0; i < dim.Count(); ++i) {
        if (dim[i] >= value) return i;
    }
    return dim.Count() - 1;
}

void Matrix::Collapse()
{
    if (rank < nDims) return;
    int d = nDims - 1;
    while (d >= 0 && dims[d].Count() >= 2) --d;
    if (d < 0) return;
    for (; d < nDims - 1; ++d) exchangeAxes(dims[d], dims[d + 1]);
    dims[nDims - 1].Clear();
    rank = nDims - 1;
}

// ---- Parameters ----

struct Matrix::Parameter {
    char const *code;
    float (*value)(Matrix const &m);
};

/// r, c, l are dimensions 1, 2, 3. The size of the first is the one in memory, of the others that of the file; the
/// intervals are asked for by the same sizes.
Matrix::Parameter const Matrix::parameters[] = {
    {"t1", [](Matrix const &m) { return m.t1; }},
    {"t2", [](Matrix const &m) { return m.t2; }},
    {"t3", [](Matrix const &m) { return m.t3; }},
    {"t4", [](Matrix const &m) { return m.t4; }},
    {"t5", [](Matrix const &m) { return m.t5; }},
    {"su", [](Matrix const &m) { return m.scaleUnit; }},
    {"mx", [](Matrix const &m) { return m.maxValue; }},
    {"mn", [](Matrix const &m) { return m.minValue; }},
    {"rc", [](Matrix const &m) { return static_cast<float>(m.dims[0].Count()); }},
    {"rs", [](Matrix const &m) { return m.dims[0].step; }},
    {"rb", [](Matrix const &m) { return stored(m.dims[0], 0); }},
    {"r1", [](Matrix const &m) { return m.dims[0].Count() >= 2 ? firstInterval(m.dims[0]) : 0.0f; }},
    {"re", [](Matrix const &m) { return lastOf(m.dims[0]); }},
    {"cc", [](Matrix const &m) { return static_cast<float>(m.dims[1].origSize); }},
    {"cs", [](Matrix const &m) { return m.dims[1].step; }},
    {"cb", [](Matrix const &m) { return stored(m.dims[1], 0); }},
    {"c1", [](Matrix const &m) { return m.dims[1].origSize >= 2 ? firstInterval(m.dims[1]) : 0.0f; }},
    {"ce", [](Matrix const &m) { return lastOf(m.dims[1]); }},
    {"lc", [](Matrix const &m) { return static_cast<float>(m.dims[2].origSize); }},
    {"ls", [](Matrix const &m) { return m.dims[2].step; }},
    {"lb", [](Matrix const &m) { return stored(m.dims[2], 0); }},
    {"l1", [](Matrix const &m) { return m.dims[2].origSize > 1 ? firstInterval(m.dims[2]) : 0.0f; }},
    {"le", [](Matrix const &m) { return lastOf(m.dims[2]); }},
};

float Matrix::GetMatrixParam(DString const &code) const
{
    for (Parameter const &row : parameters) {
        if (code.Len() == 2 && (code %= row.code)) return row.value(*this);
    }
    return -DFMax;
}
