/// A list of named shapes, each placed in space, with the bounding box of them all. On disk a .dgm file. What the
/// shapes mean beyond their extents is the business of the programs that use them.
#pragma once

#include "foundation/DArray.h"
#include "foundation/DString.h"

class DFile;

/// One shape. Number and meaning of `params` go by `type`, see `Geometry::Scale`.
struct VODREL_API Object {
    DString name;
    int type = 0; ///< 1 to 12
    int style1 = 3;
    int style2 = 0;
    int style3 = 0;
    float position[3] = {}; ///< x, y, z of the origin
    DArray<float, 0> params;
    float innerRadius = 0; ///< derived by `Scale` for some types
    float outerRadius = 0;
    float startAngle = 0;
    float endAngle = 360;
    float attr1 = 0.1f; ///< carried, as the following
    int attr2 = 0;
    int attr3 = 1;
    int attr4 = 0;
    int attr5 = 0;
    float attr6 = 1.0f;
    int attr7 = 0;
};

class VODREL_API Geometry : public DArray<Object, 1> {
public:
    int nObjects() const { return Count(); }
    /// An index behind the last removes the last; below 0 nothing happens.
    void DeleteObject(int i);

    /// Computes the box around all shapes, axis by axis, and the radii of shapes that have some. By `type`, with p
    /// for `params`: 1 sphere-like (p0 radius); 2 ring-like (p0 large, p1 small radius); 3 from z 0 to p1 with radius
    /// p0; 6 the same with radius p2 (p0 inner); 7 and 8 a profile p0, then pairs of z and radius; 9 box (p0, p1 half
    /// widths, p2 height); 10 to 12 a list of points. Types 4 and 5 take the extents of the object before them at
    /// their own position, and for 7 and 8 the inner radius begins with what the object before them left as its
    /// extent in x: programs rely on both. Any other type is skipped. A missing parameter is 0. Without objects the
    /// maxima are -DFMax and the minima DFMax.
    void Scale();

    /// The bounds on axis 0, 1 or 2, as last set by `Scale` or read; 0 for any other axis.
    float Max(int axis) const { return axis >= 0 && axis < 3 ? maxCoords[axis] : 0.0f; }
    float Min(int axis) const { return axis >= 0 && axis < 3 ? minCoords[axis] : 0.0f; }

    /// `name` comes without the extension ".dgm". False, with the object unchanged, only if the file can't be opened.
    /// What the file lacks is 0 or empty; but of more than 4096 objects of which it lacks more than half, and of more
    /// than a million parameters of one, only as many as it can have are taken.
    bool Read(DString name);
    bool Write(DString name); ///< stamps the object with the time

    DString units;
    DString note;
    DString stamp; ///< date and time of the last write
    float maxCoords[3] = {};
    float minCoords[3] = {};

protected:
    void Cleanup() { Clear(); }
};
