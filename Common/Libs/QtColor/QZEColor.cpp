#include "QZEColor.h"

using QZEColorMatrix::RGBtoXYZ;

bool QZEColor::s_useGamma = true;
float QZEColor::s_gamma = 2.2f;
float QZEColor::s_reference_white_X = RGBtoXYZ[0][0] + RGBtoXYZ[0][1] + RGBtoXYZ[0][2];
float QZEColor::s_reference_white_Y = RGBtoXYZ[1][0] + RGBtoXYZ[1][1] + RGBtoXYZ[1][2];
float QZEColor::s_reference_white_Z = RGBtoXYZ[2][0] + RGBtoXYZ[2][1] + RGBtoXYZ[2][2];
float QZEColor::s_LabRange = 256.0f;

// Signals carry QZEColor by value, also across queued connections and into
// QSignalSpy, so the type is known to the meta-type system from load time on.
static const int s_metaTypeId = qRegisterMetaType<QZEColor>("QZEColor");
