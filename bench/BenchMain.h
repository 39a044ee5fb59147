#ifndef BENCHMAIN_H
#define BENCHMAIN_H

// The frame the widget benchmarks share: a QApplication on the offscreen
// platform unless another one is asked for, a check that the timed code does
// the work the figures claim before anything is timed, and the run.

#include <benchmark/benchmark.h>

#include <QApplication>

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

// Times fn (with args) under name, reported in microseconds.
template <typename Fn, typename... Args>
void registerInMicroseconds(const std::string& name, Fn&& fn, Args&&... args)
{
    benchmark::RegisterBenchmark(name.c_str(), std::forward<Fn>(fn), std::forward<Args>(args)...)
        ->Unit(benchmark::kMicrosecond);
}

// Whether every scene gives the same pixels as its reference, each verdict
// reported on stderr so stdout stays a clean report (e.g.
// --benchmark_format=json).
template <typename Scene, typename SameAsReference>
bool allScenesPixelIdentical(const std::vector<Scene>& scenes, SameAsReference sameAsReference)
{
    bool all = true;
    for (const Scene& scene : scenes) {
        const bool same = sameAsReference(scene);
        std::fprintf(stderr, "%-10s pixel-identical: %s\n", scene.name.c_str(), same ? "yes" : "no");
        all = all && same;
    }
    return all;
}

// Runs the benchmarks that registerAll registers once checkBeforeTiming()
// holds; 1 when it does not or when the command line has unknown arguments.
// A reporter, when given, replaces the usual console report.
template <typename Check, typename Register>
int runWidgetBenchmarks(int argc, char** argv, Check checkBeforeTiming, Register registerAll,
                        benchmark::BenchmarkReporter* reporter = nullptr)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    if (!checkBeforeTiming())
        return 1;

    registerAll();
    benchmark::RunSpecifiedBenchmarks(reporter);
    benchmark::Shutdown();
    return 0;
}

#endif // BENCHMAIN_H
