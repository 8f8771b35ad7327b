/// The bounds of shapes. Each type has a function that sets the extents of a shape around its position; the extents
/// live on from one object to the next, and some types leave them or begin with them.

#include "data/Geometry.h"

namespace {

struct Extents {
    float low[3] = {};
    float high[3] = {};
};

/// A parameter of a shape, 0 where the list is too short.
float param(Object const &object, int i)
{
    return i < object.params.Count() ? object.params[i] : 0.0f;
}

float smaller(float a, float b)
{
    return b < a ? b : a;
}

float larger(float a, float b)
{
    return b > a ? b : a;
}

void around(Extents &extents, int axis, float radius)
{
    extents.high[axis] = radius;
    extents.low[axis] = -radius;
}

void upFromZero(Extents &extents, float height)
{
    extents.low[2] = 0;
    extents.high[2] = height;
}

void sphere(Object &object, Extents &extents)
{
    float const radius = param(object, 0);
    for (int axis = 0; axis < 3; ++axis) around(extents, axis, radius);
    object.outerRadius = radius;
}

void ring(Object &object, Extents &extents)
{
    float const outer = param(object, 0) + param(object, 1);
    around(extents, 0, outer);
    around(extents, 1, outer);
    around(extents, 2, param(object, 1));
    object.outerRadius = outer;
    object.innerRadius = param(object, 0) - param(object, 1);
}

void cylinder(Object &object, Extents &extents)
{
    around(extents, 0, param(object, 0));
    around(extents, 1, param(object, 0));
    upFromZero(extents, param(object, 1));
    object.outerRadius = param(object, 0);
}

void asBefore(Object &, Extents &) {}

void cone(Object &object, Extents &extents)
{
    around(extents, 0, param(object, 2));
    around(extents, 1, param(object, 2));
    upFromZero(extents, param(object, 1));
    object.innerRadius = param(object, 0);
    object.outerRadius = param(object, 2);
}

void profile(Object &object, Extents &extents)
{
    float radius = param(object, 0);
    extents.low[2] = extents.high[2] = 0;
    object.outerRadius = radius;
    object.innerRadius = extents.high[0];
    for (int i = 1; i < object.params.Count() - 1; i += 2) {
        float const z = object.params[i];
        float const r = object.params[i + 1];
        extents.high[0] = smaller(extents.high[0], r);
        object.innerRadius = extents.high[0];
        radius = larger(radius, r);
        object.outerRadius = radius;
        extents.high[2] = larger(extents.high[2], z);
        extents.low[2] = smaller(extents.low[2], z);
    }
    around(extents, 0, radius);
    around(extents, 1, radius);
}

void box(Object &object, Extents &extents)
{
    around(extents, 0, param(object, 0));
    around(extents, 1, param(object, 1));
    upFromZero(extents, param(object, 2));
}

void points(Object &object, Extents &extents)
{
    int const triples = object.params.Count() / 3;
    for (int i = 0; i < triples; ++i) {
        for (int axis = 0; axis < 3; ++axis) {
            float const value = object.params[3 * i + axis];
            extents.low[axis] = i == 0 ? value : smaller(extents.low[axis], value);
            extents.high[axis] = i == 0 ? value : larger(extents.high[axis], value);
        }
    }
}

/// By type, from 1 on.
void (*const shapes[])(Object &, Extents &) = {sphere,  ring,    cylinder, asBefore, asBefore, cone,
                                               profile, profile, box,      points,   points,   points};
int const nShapes = sizeof shapes / sizeof *shapes;

} // namespace

template class DArray<Object, 1>;

void Geometry::DeleteObject(int i)
{
    if (i >= 0) Remove(i, 1);
}

void Geometry::Scale()
{
    for (int axis = 0; axis < 3; ++axis) {
        maxCoords[axis] = -DFMax;
        minCoords[axis] = DFMax;
    }
    Extents extents;
    for (int i = 0; i < Count(); ++i) {
        Object &object = (*this)[i];
        if (object.type < 1 || object.type > nShapes) continue;
        shapes[object.type - 1](object, extents);
        for (int axis = 0; axis < 3; ++axis) {
            minCoords[axis] = smaller(minCoords[axis], extents.low[axis] + object.position[axis]);
            maxCoords[axis] = larger(maxCoords[axis], extents.high[axis] + object.position[axis]);
        }
    }
}
