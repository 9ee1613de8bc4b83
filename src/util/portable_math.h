#pragma once
// The mathematical functions the simulation calls, computed by the game itself from additions,
// multiplications, divisions and square roots only. Those five are rounded alike by every
// IEEE-754 platform, while each system's own exp, log, pow and atan2 round differently
// in the last bit now and then; a last bit that differs is a different decision a few hundred
// ticks later, and a study run on two systems would not give the same records. Views and
// sounds do not need this and keep the platform's functions.
//
// Accuracy: exp, log, atan2, and pow where |y log x| is below a few dozen, are within about 0.6
// units in the last place of the exact result, so a result that is exactly a double comes out
// exactly, and equal to the C library's in about 99 % of inputs (within one unit in the rest).
// pow with |y log x| in the hundreds is within a few units. Special values (NaN, infinities,
// signed zeros) are the C standard's.

namespace veldra::portable {

double exp(double x);
double log(double x);
double pow(double x, double y);
// Radians in [-pi, pi], the angle of the point (x, y) from the positive x axis.
double atan2(double y, double x);

}  // namespace veldra::portable
