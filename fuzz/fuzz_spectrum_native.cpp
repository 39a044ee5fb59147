// Native "spectral1"/"spectral2" files from arbitrary bytes.
#include "FuzzSpectrum.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    return fuzzSpectrumLoader(data, size, &QZESpectrum::loadNativeData, QStringLiteral("fuzz.spectral"));
}
