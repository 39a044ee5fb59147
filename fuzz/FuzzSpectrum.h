#ifndef FUZZSPECTRUM_H
#define FUZZSPECTRUM_H

#include <QZESpectrum.h>

#include <cstddef>
#include <cstdint>
#include <iostream>

using SpectrumLoader = bool (QZESpectrum::*)(const QByteArray&, const QString&);

// Feeds one input to a spectrum parser and, when it loads, through the band
// averaging and colour conversion that every loaded spectrum meets next.
inline int fuzzSpectrumLoader(const uint8_t* data, size_t size, SpectrumLoader load,
                              const QString& name)
{
    // The parsers report progress on the standard streams; a fuzzer runs
    // millions of inputs, so their lines are dropped.
    static const bool quiet = [] {
        std::cout.rdbuf(nullptr);
        std::cerr.rdbuf(nullptr);
        return true;
    }();
    (void)quiet;
    QZESpectrum spectrum;
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(data), int(size));
    if ((spectrum.*load)(bytes, name)) {
        spectrum.resample();
        spectrum.getRGB();
    }
    // Where reading stopped always lies within the input.
    qint64 unreadAt = -1;
    if (spectrum.loadData(bytes, name, unreadAt) && (unreadAt < 0 || unreadAt > bytes.size()))
        __builtin_trap();
    return 0;
}

#endif // FUZZSPECTRUM_H
