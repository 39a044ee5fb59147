// Cost of the spectral model where a user waits for it.
//
// ColorSliderStep: what the colour dialog does on every slider move while the
// spectrum is in use: setRGB on the 380, 5, 81 grid, resample, getRGB. The
// RGB inputs come from a table of 65,536 random triples, too many for the
// branch predictor to learn the Smits branches; the reflectance bases stay
// resampled to that grid, as they do during a drag.
//
// LoadNativeV2_10MB: reading a ~10 MB version-2 native file, from the file
// and from bytes already in memory. Two references read the same bytes in the
// same run: Baseline_IstreamFloat_10MB one `stream >> float` per number, and
// Baseline_FromChars_10MB a bare std::from_chars loop over the bytes in
// memory (no checks, no messages: what parsing alone costs).
// SaveNativeV2_10MB: save() of the spectrum that file holds.
//
// Scaling: LoadNativeData and SaveNative by sample count (81 to 100,000) and
// by file size (1 to 50 MB for loads, which refuse more than 64 MiB; 1 to
// 100 MB for saves). bench/fit_scaling.py fits the exponent of each family
// from --benchmark_format=json output.

#include "QZESpectrum.h"

#include <benchmark/benchmark.h>

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cctype>
#include <charconv>
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

constexpr std::size_t InputCount = 65536; // a power of two: the index wraps with a mask
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

// The same numbers through a bare std::from_chars loop over the bytes: the
// header line skipped, every number read into one vector.
bool readWithFromChars(const QByteArray& bytes, std::size_t count, std::vector<float>& numbers)
{
    const char* p = bytes.constData();
    const char* end = p + bytes.size();
    while (p < end && *p != '\n')
        ++p;
    numbers.clear();
    numbers.reserve(2 * count);
    for (;;) {
        while (p < end && std::isspace(static_cast<unsigned char>(*p)))
            ++p;
        if (p == end)
            break;
        float number;
        const std::from_chars_result read = std::from_chars(p, end, number);
        if (read.ec != std::errc())
            return false;
        numbers.push_back(number);
        p = read.ptr;
    }
    return numbers.size() == 2 * count;
}

void BM_Baseline_FromChars_10MB(benchmark::State& state)
{
    const NativeFile& file = NativeFile::instance();
    std::vector<float> numbers;
    for (auto _ : state) {
        if (!readWithFromChars(file.bytes(), std::size_t(file.count()), numbers)) {
            state.SkipWithError("from_chars could not read the spectrum file");
            break;
        }
        benchmark::DoNotOptimize(numbers.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(file.size() * std::int64_t(state.iterations()));
}

// Saves spectrum into a scratch directory once per iteration; the rate is
// that of the bytes written.
void runSaves(benchmark::State& state, QZESpectrum& spectrum)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("saved.spectral"));
    for (auto _ : state) {
        bool saved;
        {
            SilencedStandardStreams silenced;
            saved = spectrum.save(path);
        }
        if (!saved) {
            state.SkipWithError("the spectrum could not be saved");
            break;
        }
    }
    state.SetBytesProcessed(QFileInfo(path).size() * std::int64_t(state.iterations()));
}

void BM_SaveNativeV2_10MB(benchmark::State& state)
{
    const NativeFile& file = NativeFile::instance();
    QZESpectrum spectrum;
    {
        SilencedStandardStreams silenced;
        spectrum.loadNativeData(file.bytes(), file.path());
    }
    runSaves(state, spectrum);
}

// --- Scaling --------------------------------------------------------------------

// A version-2 spectrum of count samples: wavelengths rising from 200 nm in
// steps of 0.001 nm, values uniform in [0, 1] at full float precision (as
// setRGB or an analytic function leaves them).
QZESpectrum randomSpectrum(int count)
{
    std::mt19937 generator(Seed + unsigned(count));
    std::uniform_real_distribution<float> value(0.0f, 1.0f);
    std::vector<float> wavelengths(static_cast<std::size_t>(count));
    std::vector<float> values(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        wavelengths[std::size_t(i)] = float(FirstWavelength + i * WavelengthStep);
        values[std::size_t(i)] = value(generator);
    }
    QZESpectrum spectrum;
    spectrum.load(count, wavelengths.data(), values.data());
    return spectrum;
}

// A version-2 native file of about 17 bytes per sample, as saved.
constexpr double BytesPerSample = 17.0;

int samplesForMegabytes(std::int64_t megabytes)
{
    return int(double(megabytes) * 1e6 / BytesPerSample);
}

QByteArray savedBytes(QZESpectrum& spectrum)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("scaling.spectral"));
    {
        SilencedStandardStreams silenced;
        spectrum.save(path);
    }
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void runScaledLoad(benchmark::State& state, int count)
{
    QZESpectrum source = randomSpectrum(count);
    const QByteArray bytes = savedBytes(source);
    for (auto _ : state) {
        QZESpectrum spectrum;
        bool loaded;
        {
            SilencedStandardStreams silenced;
            loaded = spectrum.loadNativeData(bytes, QStringLiteral("scaling.spectral"));
        }
        if (!loaded || spectrum.getNumSamples() != count) {
            state.SkipWithError("the spectrum did not load");
            break;
        }
        benchmark::DoNotOptimize(spectrum.getSourceValues().data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(std::int64_t(bytes.size()) * std::int64_t(state.iterations()));
    state.counters["samples"] = count;
}

void runScaledSave(benchmark::State& state, int count)
{
    QZESpectrum spectrum = randomSpectrum(count);
    runSaves(state, spectrum);
    state.counters["samples"] = count;
}

void BM_LoadNativeData_Samples(benchmark::State& state)
{
    runScaledLoad(state, int(state.range(0)));
}

void BM_SaveNative_Samples(benchmark::State& state)
{
    runScaledSave(state, int(state.range(0)));
}

void BM_LoadNativeData_MB(benchmark::State& state)
{
    runScaledLoad(state, samplesForMegabytes(state.range(0)));
}

void BM_SaveNative_MB(benchmark::State& state)
{
    runScaledSave(state, samplesForMegabytes(state.range(0)));
}

} // namespace

BENCHMARK(BM_ColorSliderStep);
BENCHMARK(BM_LoadNativeV2_10MB)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadNativeDataV2_10MB)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveNativeV2_10MB)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Baseline_IstreamFloat_10MB)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Baseline_FromChars_10MB)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadNativeData_Samples)->Arg(81)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_SaveNative_Samples)->Arg(81)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_LoadNativeData_MB)->Arg(1)->Arg(10)->Arg(50)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveNative_MB)->Arg(1)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
