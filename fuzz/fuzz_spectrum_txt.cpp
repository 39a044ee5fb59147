// Two-column text files from arbitrary bytes.
#include "FuzzSpectrum.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    return fuzzSpectrumLoader(data, size, &QZESpectrum::loadTxtData, QStringLiteral("fuzz.txt"));
}
