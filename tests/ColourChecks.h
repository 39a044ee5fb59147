#ifndef COLOURCHECKS_H
#define COLOURCHECKS_H

// Colour comparisons and the process-wide gamma switch, for the tests of the
// colour controls.

#include "QZEColor.h"
#include "TestHelpers.h"

// Compares hue, saturation and value; the hue's tolerance is tolerance of a
// full turn.
inline void compareColours(const QZEColor& actual, const QZEColor& expected, double tolerance)
{
    QZE_COMPARE_NEAR(actual.h, expected.h, tolerance * 360.0);
    QZE_COMPARE_NEAR(actual.s, expected.s, tolerance);
    QZE_COMPARE_NEAR(actual.v, expected.v, tolerance);
}

// Sets QZEColor::s_useGamma for one scope.
class GammaSetting
{
public:
    explicit GammaSetting(bool on) : _previous(QZEColor::s_useGamma) { QZEColor::s_useGamma = on; }
    ~GammaSetting() { QZEColor::s_useGamma = _previous; }
    GammaSetting(const GammaSetting&) = delete;
    GammaSetting& operator=(const GammaSetting&) = delete;

private:
    bool _previous;
};

#endif // COLOURCHECKS_H
