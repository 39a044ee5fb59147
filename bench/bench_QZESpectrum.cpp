// Cost of the spectral model where a user waits for it.
//
// ColorSliderStep: what the colour dialog does on every slider move while the
// spectrum is in use: setRGB on the 380, 5, 81 grid, resample, getRGB. The
// RGB inputs cycle through a precomputed table; the reflectance bases stay
// resampled to that grid, as they do during a drag.
//
// LoadNativeV2_10MB: reading a ~10 MB version-2 native file, from the file
// and from bytes already in memory. Baseline_IstreamFloat_10MB reads the same
// file the straightforward way, one `stream >> float` per number, so the two
// rates come from the same run on the same bytes.

#include "QZESpectrum.h"

#include <benchmark/benchmark.h>

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <random>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

namespace {

constexpr std::size_t InputCount = 1024; // a power of two: the index wraps with a mask
constexpr unsigned Seed = 20240611;

constexpr int GridStart = 380;
constexpr int GridDelta = 5;
constexpr int GridNum = 81;

constexpr std::size_t TargetFileBytes = 10 * 1000 * 1000;
// Steps of 0.001 nm from 200 nm stay distinct in six significant digits up
// to 999.999 nm, far beyond what the target size needs.
constexpr double FirstWavelength = 200.0;
constexpr double WavelengthStep = 0.001;

// --- Colour-slider step ---------------------------------------------------------

struct Rgb
{
    float r, g, b;
};

const std::vector<Rgb>& rgbInputs()
{
    static const std::vector<Rgb> triples = [] {
        std::mt19937 generator(Seed);
        std::uniform_real_distribution<float> channel(0.0f, 1.0f);
        std::vector<Rgb> out(InputCount);
        for (Rgb& rgb : out)
            rgb = {channel(generator), channel(generator), channel(generator)};
        return out;
    }();
    return triples;
}

void BM_ColorSliderStep(benchmark::State& state)
{
    const std::vector<Rgb>& inputs = rgbInputs();
    QZESpectrum spectrum;
    spectrum.setRGB(0.5f, 0.5f, 0.5f, GridStart, GridDelta, GridNum); // bases resampled once
    std::size_t i = 0;
    for (auto _ : state) {
        const Rgb& in = inputs[i];
        spectrum.setRGB(in.r, in.g, in.b, GridStart, GridDelta, GridNum);
        spectrum.resample();
        QZESpectrum::RGB out = spectrum.getRGB();
        benchmark::DoNotOptimize(out);
        i = (i + 1) & (InputCount - 1);
    }
    state.SetItemsProcessed(state.iterations());
}

// --- The 10 MB native file ------------------------------------------------------

// Swallows the loader's progress lines.
class NullBuffer : public std::streambuf
{
protected:
    int overflow(int c) override { return traits_type::not_eof(c); }
    std::streamsize xsputn(const char*, std::streamsize n) override { return n; }
};

class SilencedStandardStreams
{
public:
    SilencedStandardStreams()
        : _out(std::cout.rdbuf(&_null)), _err(std::cerr.rdbuf(&_null))
    {
    }
    ~SilencedStandardStreams()
    {
        std::cout.rdbuf(_out);
        std::cerr.rdbuf(_err);
    }
    SilencedStandardStreams(const SilencedStandardStreams&) = delete;
    SilencedStandardStreams& operator=(const SilencedStandardStreams&) = delete;

private:
    NullBuffer _null;
    std::streambuf* _out;
    std::streambuf* _err;
};

// Each number followed by one space, in the default stream formatting
// (six significant digits), the way spectra are saved.
class NumberLine
{
public:
    void append(float value) { _stream << value << ' '; }
    std::size_t size() { return std::size_t(_stream.tellp()); }
    std::string text() const { return _stream.str(); }

private:
    std::ostringstream _stream;
};

struct NativeText
{
    std::string text;
    int count;
};

// "spectral2 N \n", N increasing wavelengths, a newline, N values between 0
// and 1, with as many samples as fill TargetFileBytes.
NativeText nativeV2Text()
{
    std::mt19937 generator(Seed + 1);
    std::uniform_real_distribution<float> value(0.0f, 1.0f);
    NumberLine wavelengths;
    NumberLine values;
    int count = 0;
    while (wavelengths.size() + values.size() < TargetFileBytes) {
        wavelengths.append(float(FirstWavelength + count * WavelengthStep));
        values.append(value(generator));
        ++count;
    }
    return {"spectral2 " + std::to_string(count) + " \n" + wavelengths.text() + '\n' + values.text(),
            count};
}

// The file, written once into a directory removed when the program ends.
class NativeFile
{
public:
    static const NativeFile& instance()
    {
        static const NativeFile file;
        return file;
    }

    const QString& path() const { return _path; }
    const QByteArray& bytes() const { return _bytes; }
    std::int64_t size() const { return _bytes.size(); }
    int count() const { return _count; }
    bool isValid() const { return _valid; }

private:
    NativeFile() : _path(_dir.filePath(QStringLiteral("benchmark.spectral")))
    {
        const NativeText native = nativeV2Text();
        std::ofstream out(_path.toStdString(), std::ios::binary | std::ios::trunc);
        out << native.text;
        out.close();
        _valid = _dir.isValid() && out.good();
        _bytes = QByteArray(native.text.data(), int(native.text.size()));
        _count = native.count;
    }

    QTemporaryDir _dir;
    QString _path;
    QByteArray _bytes;
    int _count = 0;
    bool _valid = false;
};

template <typename Load>
void runLoads(benchmark::State& state, Load load)
{
    const NativeFile& file = NativeFile::instance();
    if (!file.isValid()) {
        state.SkipWithError("could not write the temporary spectrum file");
        return;
    }
    for (auto _ : state) {
        QZESpectrum spectrum;
        bool loaded;
        {
            SilencedStandardStreams silenced;
            loaded = load(spectrum, file);
        }
        if (!loaded || spectrum.getNumSamples() != file.count()) {
            state.SkipWithError("the spectrum file did not load");
            break;
        }
        benchmark::DoNotOptimize(spectrum.getSourceValues().data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(file.size() * std::int64_t(state.iterations()));
}

void BM_LoadNativeV2_10MB(benchmark::State& state)
{
    runLoads(state, [](QZESpectrum& spectrum, const NativeFile& file) {
        return spectrum.loadNative(file.path());
    });
}

void BM_LoadNativeDataV2_10MB(benchmark::State& state)
{
    runLoads(state, [](QZESpectrum& spectrum, const NativeFile& file) {
        return spectrum.loadNativeData(file.bytes(), file.path());
    });
}

// The same numbers read one `>> float` at a time from an std::ifstream.
bool readWithIstream(const std::string& path, std::vector<float>& wavelengths,
                     std::vector<float>& values)
{
    std::ifstream in(path);
    std::string version;
    std::size_t count = 0;
    if (!(in >> version >> count) || version != "spectral2")
        return false;
    wavelengths.resize(count);
    values.resize(count);
    for (float& wavelength : wavelengths)
        in >> wavelength;
    for (float& value : values)
        in >> value;
    return bool(in);
}

void BM_Baseline_IstreamFloat_10MB(benchmark::State& state)
{
    const NativeFile& file = NativeFile::instance();
    if (!file.isValid()) {
        state.SkipWithError("could not write the temporary spectrum file");
        return;
    }
    const std::string path = file.path().toStdString();
    for (auto _ : state) {
        std::vector<float> wavelengths;
        std::vector<float> values;
        if (!readWithIstream(path, wavelengths, values) || int(values.size()) != file.count()) {
            state.SkipWithError("the stream could not read the spectrum file");
            break;
        }
        benchmark::DoNotOptimize(wavelengths.data());
        benchmark::DoNotOptimize(values.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(file.size() * std::int64_t(state.iterations()));
}

} // namespace

BENCHMARK(BM_ColorSliderStep);
BENCHMARK(BM_LoadNativeV2_10MB)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadNativeDataV2_10MB)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Baseline_IstreamFloat_10MB)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
