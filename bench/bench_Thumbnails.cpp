// The image browser's thumbnails, end to end through the delegate: cells
// painted, jobs on the global pool, every canvas handed over to the cache.
//
// At start-up the program makes (once per process, in a scratch folder):
//  - photos/: 100 JPEGs of 4000 x 3000 pixels (12 megapixels), each with its
//    own gradient and pattern, no EXIF preview;
//  - many/: 10,000 hard links to 100 JPEGs of 640 x 480, for scrolling;
//  - $XDG_CACHE_HOME pointed at cache/, so the user's own thumbnail cache is
//    never read or written.
//
// Benchmarks:
//  - ThumbnailsCold: a browser on photos/ with an empty shared cache; every
//    cell painted once through the delegate, timed until all 100 canvases
//    are in the dialog's cache. items_per_second = images per second.
//  - VipsThumbnail: vipsthumbnail -s 192 on the same 100 files with the same
//    number of threads: as many processes as the global pool has threads,
//    each given an equal share of the files and VIPS_CONCURRENCY=1.
//  - ScrollStall: the browser (1000 x 800, offscreen) on many/, scrolled
//    from top to bottom by half a page per step, with the posted completion
//    events delivered between steps as the event loop would; counters give
//    the longest, 99th-percentile and median GUI-thread step in
//    milliseconds, which step was the longest, and the longest after the
//    first screen; the five slowest steps go to stderr with their start.
//  - FirstScreenCold / FirstScreenWarm: the same browser on photos/, from
//    construction to the first screenful of finished thumbnails painted,
//    with an empty and with a filled shared cache.
//
// Before timing, main() checks that both ours and vipsthumbnail make all
// 100 thumbnails, and that none of ours shows an error.

#include "BenchMain.h"
#include "QZEConvertImage.h"
#include "QZEImageFileDialog.h"

#include <benchmark/benchmark.h>

#include <QAbstractItemDelegate>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileSystemModel>
#include <QImageWriter>
#include <QListView>
#include <QPainter>
#include <QProcess>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QThreadPool>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <unistd.h>
#include <vector>

namespace {

constexpr int Photos = 100;
constexpr int ManyFiles = 10000;
const QSize PhotoSize(4000, 3000);
const QSize SmallSize(640, 480);
const QString VipsThumbnail = QStringLiteral("/usr/bin/vipsthumbnail");

QImage patterned(QSize size, int seed)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x)
            line[x] = qRgb((x * 255 / size.width() + seed * 37) & 255,
                           (y * 255 / size.height() + seed * 11) & 255,
                           ((x ^ y) + seed) & 255);
    }
    return image;
}

QString numbered(const QString& folder, const char* stem, int number)
{
    return folder + QStringLiteral("/%1%2.jpg").arg(QLatin1String(stem)).arg(number, 5, 10,
                                                                                QLatin1Char('0'));
}

// Writes count JPEGs of size into folder on the global pool.
bool writeJpegs(const QString& folder, QSize size, int count)
{
    std::atomic<int> written{0};
    for (int i = 0; i < count; ++i) {
        QThreadPool::globalInstance()->start([=, &written] {
            QImageWriter writer(numbered(folder, "photo", i), "jpeg");
            writer.setQuality(90);
            if (writer.write(patterned(size, i)))
                ++written;
        });
    }
    QThreadPool::globalInstance()->waitForDone();
    return written == count;
}

struct Fixture {
    QTemporaryDir root;
    QString photos = root.filePath(QStringLiteral("photos"));
    QString many = root.filePath(QStringLiteral("many"));
    QString small = root.filePath(QStringLiteral("small"));
    QString cache = root.filePath(QStringLiteral("cache"));
    QString vipsOut = root.filePath(QStringLiteral("vips"));
    bool ready = false;

    Fixture()
    {
        for (const QString& folder : {photos, many, small, cache, vipsOut})
            QDir().mkpath(folder);
        qputenv("XDG_CACHE_HOME", QFile::encodeName(cache));
        ready = writeJpegs(photos, PhotoSize, Photos) && writeJpegs(small, SmallSize, 100);
        for (int i = 0; ready && i < ManyFiles; ++i)
            ready = ::link(QFile::encodeName(numbered(small, "photo", i % 100)).constData(),
                           QFile::encodeName(numbered(many, "link", i)).constData()) == 0;
    }

    void emptyCache() const { QDir(cache + QStringLiteral("/thumbnails")).removeRecursively(); }
};

Fixture& fixture()
{
    static Fixture made;
    return made;
}

struct Browser {
    std::unique_ptr<QZEImageFileDialog> dialog;
    QListView* list = nullptr;
    QFileSystemModel* model = nullptr;

    Browser(const QString& folder, int files)
        : dialog(new QZEImageFileDialog(nullptr, folder, QStringLiteral("*.jpg"), false))
    {
        list = dialog->findChild<QListView*>(QStringLiteral("_list"));
        model = qobject_cast<QFileSystemModel*>(list->model());
        while (model->rowCount(list->rootIndex()) < files)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }

    int finished() const
    {
        int count = 0;
        for (const auto& entry : *dialog->getImages())
            count += QZEConvertImage::finishedImage(entry.second).isNull() ? 0 : 1;
        return count;
    }

    bool allFinished() const
    {
        return !dialog->getImages()->empty()
               && finished() == int(dialog->getImages()->size());
    }

    // Sleeps in the event loop until the completion events say so; polling
    // here would take a core from the pool.
    void waitUntilAllFinished() const
    {
        while (!allFinished())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    // Every cell painted once, as the view would on a tall enough screen.
    void paintEveryCell() const
    {
        QImage cell(224, 224, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&cell);
        QStyleOptionViewItem option;
        option.rect = cell.rect();
        option.palette = list->palette();
        const QModelIndex root = list->rootIndex();
        for (int row = 0; row < model->rowCount(root); ++row)
            list->itemDelegate()->paint(&painter, option, model->index(row, 0, root));
    }

    void show() const
    {
        dialog->resize(1000, 800);
        dialog->show();
        QCoreApplication::processEvents();
    }
};

void BM_ThumbnailsCold(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        fixture().emptyCache();
        auto browser = std::make_unique<Browser>(fixture().photos, Photos);
        state.ResumeTiming();
        browser->paintEveryCell();
        browser->waitUntilAllFinished();
        state.PauseTiming();
        browser.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * Photos);
}

// Runs vipsthumbnail in threads processes, each on every threads-th file.
bool runVipsThumbnail(int threads)
{
    std::vector<std::unique_ptr<QProcess>> processes;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("VIPS_CONCURRENCY"), QStringLiteral("1"));
    for (int p = 0; p < threads; ++p) {
        QStringList arguments{QStringLiteral("-s"), QStringLiteral("192"), QStringLiteral("-o"),
                              fixture().vipsOut + QStringLiteral("/%s.jpg")};
        for (int i = p; i < Photos; i += threads)
            arguments << numbered(fixture().photos, "photo", i);
        processes.emplace_back(new QProcess);
        processes.back()->setProcessEnvironment(environment);
        processes.back()->start(VipsThumbnail, arguments);
    }
    bool ok = true;
    for (auto& process : processes)
        ok = process->waitForFinished(-1) && process->exitCode() == 0 && ok;
    return ok;
}

void BM_VipsThumbnail(benchmark::State& state)
{
    const int threads = QThreadPool::globalInstance()->maxThreadCount();
    for (auto _ : state) {
        if (!runVipsThumbnail(threads))
            state.SkipWithError("vipsthumbnail failed");
    }
    state.SetItemsProcessed(state.iterations() * Photos);
    state.counters["processes"] = threads;
}

// One scroll step's duration and where it came in the run; started is on
// the monotonic clock (perf record -k CLOCK_MONOTONIC), so that a profile
// can be cut to the longest steps.
struct ScrollStep {
    int index;
    double ms;
    qint64 startedNs;
};

// The slowest steps on stderr, slowest first, so that stdout stays the report.
void reportSlowestSteps(std::vector<ScrollStep> steps, std::size_t count)
{
    std::sort(steps.begin(), steps.end(),
              [](const ScrollStep& a, const ScrollStep& b) { return a.ms > b.ms; });
    for (std::size_t i = 0; i < std::min(count, steps.size()); ++i)
        std::fprintf(stderr, "ScrollStall step %d: %.2f ms, started at %.6f s monotonic\n",
                     steps[i].index, steps[i].ms, steps[i].startedNs / 1e9);
}

double percentile(std::vector<double> values, int percent)
{
    std::sort(values.begin(), values.end());
    return values[values.size() * percent / 100];
}

void BM_ScrollStall(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        fixture().emptyCache();
        auto browser = std::make_unique<Browser>(fixture().many, ManyFiles);
        browser->show();
        state.ResumeTiming();
        QScrollBar* bar = browser->list->verticalScrollBar();
        std::vector<ScrollStep> steps;
        QElapsedTimer timer;
        for (int value = 0; value <= bar->maximum(); value += std::max(1, bar->pageStep() / 2)) {
            timer.start();
            bar->setValue(value);
            browser->list->viewport()->repaint();
            QCoreApplication::processEvents();
            steps.push_back({int(steps.size()), timer.nsecsElapsed() / 1e6,
                             timer.msecsSinceReference() * 1000000});
        }
        state.PauseTiming();
        std::vector<double> ms;
        for (const ScrollStep& step : steps)
            ms.push_back(step.ms);
        const auto longest = std::max_element(ms.begin(), ms.end());
        state.counters["steps"] = double(ms.size());
        state.counters["longest_ms"] = *longest;
        state.counters["longest_step"] = double(longest - ms.begin());
        // Step 0 shows the first screen without moving the bar.
        state.counters["longest_after_first_ms"] =
            ms.size() > 1 ? *std::max_element(ms.begin() + 1, ms.end()) : 0.0;
        state.counters["p99_ms"] = percentile(ms, 99);
        state.counters["median_ms"] = percentile(ms, 50);
        state.counters["thumbnails_asked"] = double(browser->dialog->getImages()->size());
        reportSlowestSteps(steps, 5);
        browser.reset(); // waits for every queued job
        state.ResumeTiming();
    }
}

void firstScreen(benchmark::State& state, bool warm)
{
    if (warm) {
        Browser filler(fixture().photos, Photos);
        filler.paintEveryCell();
        filler.waitUntilAllFinished();
    }
    for (auto _ : state) {
        state.PauseTiming();
        if (!warm)
            fixture().emptyCache();
        state.ResumeTiming();
        Browser browser(fixture().photos, Photos);
        browser.show();
        browser.waitUntilAllFinished();
        QCoreApplication::processEvents(); // the repaint that shows them
        state.PauseTiming();
        state.counters["thumbnails"] = double(browser.dialog->getImages()->size());
        state.ResumeTiming();
    }
}

void BM_FirstScreenCold(benchmark::State& state)
{
    firstScreen(state, false);
}

void BM_FirstScreenWarm(benchmark::State& state)
{
    firstScreen(state, true);
}

bool bothMakeEveryThumbnail()
{
    if (!fixture().ready) {
        std::fprintf(stderr, "could not make the photos\n");
        return false;
    }
    fixture().emptyCache();
    Browser browser(fixture().photos, Photos);
    browser.paintEveryCell();
    browser.waitUntilAllFinished();
    int good = 0;
    for (const auto& entry : *browser.dialog->getImages()) {
        const QImage canvas = QZEConvertImage::finishedImage(entry.second);
        good += canvas.size() == QSize(192, 192) && qRed(canvas.pixel(96, 96)) != 255 ? 1 : 0;
    }
    std::fprintf(stderr, "ours: %d of %d thumbnails\n", good, Photos);
    const bool vips = runVipsThumbnail(QThreadPool::globalInstance()->maxThreadCount());
    const int made = int(QDir(fixture().vipsOut).entryList(QDir::Files).size());
    std::fprintf(stderr, "vipsthumbnail: %d of %d thumbnails\n", made, Photos);
    return good == Photos && vips && made == Photos;
}

} // namespace

int main(int argc, char** argv)
{
    return runWidgetBenchmarks(argc, argv, bothMakeEveryThumbnail, [] {
        benchmark::RegisterBenchmark("ThumbnailsCold", BM_ThumbnailsCold)
            ->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
        benchmark::RegisterBenchmark("VipsThumbnail", BM_VipsThumbnail)
            ->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
        benchmark::RegisterBenchmark("ScrollStall", BM_ScrollStall)
            ->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);
        benchmark::RegisterBenchmark("FirstScreenCold", BM_FirstScreenCold)
            ->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
        benchmark::RegisterBenchmark("FirstScreenWarm", BM_FirstScreenWarm)
            ->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
    });
}
