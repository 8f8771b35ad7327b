/// The tick size of a value axis.
#pragma once

/// Magnitudes below this, widened to double, are scaled as if they were this.
double const smallestMagnitude = 1e-30;

/// A round step for values up to `magnitude`, which is above 0: 0.2, 0.5 or 1 times a power of ten.
float TickSize(float magnitude);
