/// Searches over samples, four a turn, so that the end isn't tested with each: the walk is all that most parameters of
/// a trace cost.
#pragma once

/// The first sample from `p` on that lies beyond, `end` if there is none.
template <typename Beyond>
float const *findForward(float const *p, float const *end, Beyond beyond)
{
    for (; end - p >= 4; p += 4) {
        if (beyond(p[0])) return p;
        if (beyond(p[1])) return p + 1;
        if (beyond(p[2])) return p + 2;
        if (beyond(p[3])) return p + 3;
    }
    while (p < end && !beyond(*p)) ++p;
    return p;
}

/// The same from `p` down to `end`, which isn't tested.
template <typename Beyond>
float const *findBackward(float const *p, float const *end, Beyond beyond)
{
    for (; p - end >= 4; p -= 4) {
        if (beyond(p[0])) return p;
        if (beyond(p[-1])) return p - 1;
        if (beyond(p[-2])) return p - 2;
        if (beyond(p[-3])) return p - 3;
    }
    while (p > end && !beyond(*p)) --p;
    return p;
}
