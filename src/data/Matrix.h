/// A block of single-precision values in two or three dimensions, with a coordinate axis for each. On disk a .dmt
/// file.
///
/// The first dimension runs fastest: the value at (i, j, k), from 0, is element i + n1 * (j + n2 * k). A slice of the
/// last dimension is contiguous, so that slices can be read alone. Dimensions are numbered 1, 2, 3 in every call.
/// Values are kept calibrated. An axis is uniform, with a `step` that gives all coordinates, or explicit, with a step
/// of 0.
#pragma once

#include "foundation/DArray.h"
#include "foundation/DString.h"

class DFile;

class VODREL_API Matrix : public DArray<float, 0> {
public:
    /// The coordinates of one dimension; their number is its present size.
    struct VODREL_API MDim : public DArray<float, 0> {
        MDim();
        MDim(MDim const &other);
        MDim &operator=(MDim const &other);
        ~MDim() override;
        float step = 1.0f; ///< spacing of a uniform axis, 0 for explicit coordinates
        int origSize = 1;  ///< size that the file announced, or that was set; a partial read leaves it
    };

    /// Values are undefined until filled, and so are the coordinates until `SetStep` or `SetAllCoords`. Sizes count
    /// as at least 1; the rank is 3 if `n3` is above 1, else 2.
    explicit Matrix(int n1 = 1, int n2 = 1, int n3 = 1);
    Matrix(Matrix const &other);
    Matrix &operator=(Matrix const &other);
    ~Matrix() override;

    /// Everything but the values and the calibration, which stay.
    void CopyHeader(Matrix const &other);
    /// Sizes this matrix like `other`, values undefined, with its axes; with `copyParams` also `t1` to `t5` and the
    /// calibration.
    Matrix &InitFrom(Matrix const &other, bool copyParams);

    void Size(int n1, int n2, int n3);    ///< drops the values
    void ReSize(int n1, int n2, int n3);  ///< keeps the values in their old positions
    void Reserve(int n1, int n2, int n3); ///< sets sizes and rank, makes room, and keeps the element count
    int Rank() const { return rank; }
    float &operator()(int i, int j) { return Data()[i + static_cast<long long>(dims[0].Count()) * j]; }
    /// -1 for a dimension that isn't 1, 2 or 3, as in the next.
    int GetSize(int d) const;
    int GetOrigSize(int d) const;

    float Min() const { return minValue; } ///< as last set by `Scale` or read
    float Max() const { return maxValue; }
    float Calibration() const { return calibration; }
    void Zero(); ///< all values 0; the extremes stay
    /// Finds the extremes and the tick size. Values aren't tested for validity.
    void Scale();
    /// Multiplies the values by `c` over the present calibration, and scales. Nothing for 0 or an invalid number.
    void SetCalibration(float c);
    /// Exchange the values alone; nothing of the header moves.
    void SwapData(DArray<float, 0> &other);
    void SwapData(Matrix &other);

    // ---- File. `name` comes without the extension ".dmt". ----

    /// Reads slices `first` up to but not including `count` of the last dimension, in 0 .. size; all of them for a
    /// negative `count` with `first` 0. At least one slice is read, so `count` 0 gives the first; and so does a
    /// negative `count` with `first` above 0. The coordinates kept of that dimension are its leading ones whatever
    /// `first` says. A name of the form `name[first, count]` overrides the arguments. A dimension beyond the rank of
    /// the file stays as it was: read into a fresh object. False, and nothing changed, if the file can't be opened; a
    /// file that ends early isn't told, what it lacks is 0; but of more than a million values of which the file lacks
    /// more than half only the slices that it has are taken.
    bool Read(DString name, int count, int first);
    bool Write(DString name); ///< stamps the object with the time; false if the file can't be opened
    /// Writes a file that is missing. One that exists is opened and left as it is: a matrix file can't be extended.
    bool Append(DString name);

    // ---- Coordinates. Out-of-range arguments do nothing, or give -1.0 or 0. ----

    float GetCoord(int d, int i) const;
    /// Not on a uniform axis. The value is raised to the coordinate before, so that the axis never falls.
    void SetCoord(int d, int i, float value);
    float GetStep(int d) const;
    /// With a step above 0 coordinate i becomes i * step + start; otherwise the coordinates stay.
    void SetStep(int d, float step, float start);
    /// For a dimension that isn't 1, 2 or 3 those of dimension 1.
    DArray<float, 0> GetAllCoords(int d) const;
    /// Makes the axis explicit. Nothing if the number doesn't fit.
    void SetAllCoords(int d, DArray<float, 0> const &coords);
    /// The coordinates within a range, at least one of them; an invalid limit is open.
    DArray<float, 0> GetPartialCoords(int d, float low, float high) const;
    /// Dimension `d` becomes a copy of dimension `fromD` of `source`.
    void CopyCoords(int d, int fromD, Matrix const &source);
    /// Exchanges coordinates and steps of two dimensions, not the values and not `origSize`. `d1` can't be the last
    /// one.
    void SwapCoords(int d1, int d2);
    /// Index of the first coordinate that is at least `value`, the last index if there is none.
    int PointAtCoord(int d, float value) const;
    /// Takes a dimension of size below 2 out of a matrix of rank 3. The third dimension has size 0 afterwards, so
    /// that the object is for writing only.
    void Collapse();

    /// A number about the matrix, by two letters of code in any case (docs/parameters.md); -DFMax for an unknown one.
    /// "rc" is the size in memory, "cc" and "lc" are the sizes that the file announced.
    float GetMatrixParam(DString const &code) const;

    /// The free parameters by number: 0 `scaleUnit`, 1 to 5 `t1` to `t5`. Null for any other number.
    float *Slot(int i);

    float scaleUnit = 1.0f; ///< tick size of the value axis
    float t1 = 0;           ///< free parameters
    float t2 = 0;
    float t3 = 0;
    float t4 = 0;
    float t5 = 0;
    DString note;
    DString units;
    DString stamp; ///< date and time of the last write
    MDim dims[3];
    float maxValue = 0;
    float minValue = 0;

protected:
    void Read(DFile &f, int count, int first);
    void Write(DFile &f);
    void Append(DFile &f);
    /// Sets number and sizes of the dimensions, raising the arguments to at least 1; gives the number of values. The
    /// first new coordinate of an axis that grows is undefined and the base of those behind it.
    int setcoords(int &n1, int &n2, int &n3);

    int rank = 2;
    float calibration = 1.0f;

private:
    struct Parameter;
    static Parameter const parameters[];

    void copyparameters(Matrix const &other);
    static bool isDimension(int d) { return d >= 1 && d <= nDims; }
    int usedDims() const { return rank < 0 ? 0 : rank > nDims ? nDims : rank; }
    long long product(MDim const *without = nullptr) const;
    void readAxis(DFile &f, MDim &dim);
    void writeAxis(DFile &f, MDim const &dim);
    int cutSlices(MDim &dim, int count, int first);
    void readValues(DFile &f, MDim &last, int first);
    void exchangeAxes(MDim &a, MDim &b);

    static int const nDims = 3;
};
