#include "ChildProcess.h"
#include "TestHelpers.h"

#include <QZESpectrum.h>

#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <fcntl.h>
#include <vector>

// Runs the built qzespectrum program in a scratch directory and checks its
// output, the files it writes and its exit status.
class tst_qzespectrum : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void helpListsEveryCommandAndSucceeds();
    void fromRgbThenInfoDescribesTheDefaultGrid();
    void fromRgbUsesTheGivenGrid();
    void infoRgbFollowsTheInputUpToScale_data();
    void infoRgbFollowsTheInputUpToScale();
    void infoDescribesTheFile_data();
    void infoDescribesTheFile();
    void infoRgbOfConstantHalfIsHalfTheObserverSums();
    void convertWritesTextSpectrumAsNativeFile();
    void resampleInterpolatesOntoTheGrid();
    void failuresExitNonZeroWithMessage_data();
    void failuresExitNonZeroWithMessage();
    void failedConvertWritesNoOutput();

    void convertOntoItsOwnInputKeepsTheSpectrum();
    void writeOnFullDiskKeepsTheOldFileAndSaysWhy_data();
    void writeOnFullDiskKeepsTheOldFileAndSaysWhy();
    void killDuringWriteLeavesOldOrWholeFile();
    void inputLargerThanTheLimitIsRefused();
    void inputLeftUnreadFailsWithWhereReadingStopped_data();
    void inputLeftUnreadFailsWithWhereReadingStopped();
    void allowPartialAcceptsWhatWasReadAndStillSaysWhere();
    void fromRgbWarnsAboveOneAndStillWrites();
    void fromRgbTakesNegativeNumbersAndOptionsInAnyOrder_data();
    void fromRgbTakesNegativeNumbersAndOptionsInAnyOrder();
    void gridAtTheIntLimitsIsAUsageError_data();
    void gridAtTheIntLimitsIsAUsageError();
    void helpStatesTheSizeLimitAndTheUnnormalisedRgb();

private:
    struct Result
    {
        int exitCode = -1;
        QString out;
        QString err;
    };

    Result runTool(const QStringList& arguments) const;

    void verifyRunsSilently(const QStringList& arguments) const;
    void readInfo(const QString& file, QMap<QString, QString>& fields) const;
    void writeFile(const QString& name, const QByteArray& content) const;
    QString path(const QString& name) const { return _dir.filePath(name); }

    QTemporaryDir _dir;
};

namespace {

// A straight line from 0 at 400 nm to 3 at 700 nm, spread over several lines
// and given at arbitrary wavelengths.
const QByteArray RampText = "400 0\n550\n1.5\n\n700 3\n";

// The line above at the centre of a 10 nm band, held constant outside
// 400..700 nm. A band lies wholly on one side of 400 and of 700, so its average
// is the value at its centre.
double rampAt(double wavelength)
{
    return std::clamp((wavelength - 400.0) / 100.0, 0.0, 3.0);
}

double rampBandSum(int power)
{
    double sum = 0.0;
    for (int k = 0; k < 40; ++k)
        sum += std::pow(rampAt(385.0 + 10.0 * k), power);
    return sum;
}

bool closeTo(double actual, double expected, double relative)
{
    return std::abs(actual - expected) <= relative * std::max(1.0, std::abs(expected));
}

// Version 1 with num source values on the grid start, delta.
void verifyUniformGrid(const QZESpectrum& spectrum, int start, int delta, int num)
{
    QCOMPARE(spectrum.getVersionID(), 1);
    QCOMPARE(spectrum.getStartWavelength(), start);
    QCOMPARE(spectrum.getDeltaWavelength(), delta);
    QCOMPARE(spectrum.getNumSamples(), num);
    QCOMPARE(int(spectrum.getSourceValues().size()), num);
}

} // namespace

void tst_qzespectrum::initTestCase()
{
    QVERIFY(_dir.isValid());
    QVERIFY(QFileInfo(QStringLiteral(QZESPECTRUM_PATH)).isExecutable());
    writeFile(QStringLiteral("ramp.txt"), RampText);
    writeFile(QStringLiteral("half.spectral"), "spectral1 400 10 4 \n0.5 0.5\n0.5 0.5");
    writeFile(QStringLiteral("header.txt"), "Wavelength Value\n400 1\n500 2\n");
    writeFile(QStringLiteral("version3.spectral"), "spectral3 2 \n400 500 \n1 2 ");
    writeFile(QStringLiteral("truncated.spectral"), "spectral1 380 5 81 \n1 2 3 ");
}

tst_qzespectrum::Result tst_qzespectrum::runTool(const QStringList& arguments) const
{
    QProcess process;
    process.setWorkingDirectory(_dir.path());
    process.start(QStringLiteral(QZESPECTRUM_PATH), arguments);
    Result result;
    if (!process.waitForFinished(30000) || process.exitStatus() != QProcess::NormalExit)
        return result;
    result.exitCode = process.exitCode();
    result.out = QString::fromLocal8Bit(process.readAllStandardOutput());
    result.err = QString::fromLocal8Bit(process.readAllStandardError());
    return result;
}

// A successful run prints nothing of its own.
void tst_qzespectrum::verifyRunsSilently(const QStringList& arguments) const
{
    const Result result = runTool(arguments);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, QString());
    QCOMPARE(result.err, QString());
}

void tst_qzespectrum::readInfo(const QString& file, QMap<QString, QString>& fields) const
{
    const Result result = runTool({QStringLiteral("info"), file});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.err, QString());
    const QRegularExpression keyValue(QStringLiteral("^([a-z-]+): (\\S.*)$"));
    const QStringList lines = result.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const QRegularExpressionMatch match = keyValue.match(line);
        QVERIFY2(match.hasMatch(), qPrintable(line));
        fields.insert(match.captured(1), match.captured(2));
    }
}

void tst_qzespectrum::writeFile(const QString& name, const QByteArray& content) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

void tst_qzespectrum::helpListsEveryCommandAndSucceeds()
{
    const Result result = runTool({QStringLiteral("--help")});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.err, QString());
    const QStringList usages = {
        QStringLiteral("info FILE"), QStringLiteral("convert IN OUT"),
        QStringLiteral("from-rgb R G B [--grid START,DELTA,NUM] -o OUT"),
        QStringLiteral("resample IN --grid START,DELTA,NUM -o OUT")};
    for (const QString& usage : usages)
        QVERIFY2(result.out.contains(usage), qPrintable(usage));
}

void tst_qzespectrum::fromRgbThenInfoDescribesTheDefaultGrid()
{
    QZE_CHECK(verifyRunsSilently({QStringLiteral("from-rgb"), QStringLiteral("0.8"),
                                  QStringLiteral("0.4"), QStringLiteral("0.2"),
                                  QStringLiteral("-o"), QStringLiteral("rgb.spectral")}));

    QMap<QString, QString> fields;
    QZE_CHECK(readInfo(QStringLiteral("rgb.spectral"), fields));
    QCOMPARE(fields.value(QStringLiteral("version")), QStringLiteral("1"));
    QCOMPARE(fields.value(QStringLiteral("sampling")), QStringLiteral("uniform"));
    QCOMPARE(fields.value(QStringLiteral("grid")), QStringLiteral("380,5,81"));
    QCOMPARE(fields.value(QStringLiteral("count")), QStringLiteral("81"));
    QCOMPARE(fields.value(QStringLiteral("range")),
             QStringLiteral("%1 %2").arg(380).arg(380 + 5 * 80));
    for (const char* key : {"band-sum", "photometric"}) {
        bool isNumber = false;
        fields.value(QLatin1String(key)).toDouble(&isNumber);
        QVERIFY2(isNumber, key);
    }
    QCOMPARE(fields.value(QStringLiteral("rgb")).split(QLatin1Char(' ')).size(), 3);
}

void tst_qzespectrum::fromRgbUsesTheGivenGrid()
{
    QZE_CHECK(verifyRunsSilently({QStringLiteral("from-rgb"), QStringLiteral("0.1"),
                                  QStringLiteral("0.6"), QStringLiteral("0.3"),
                                  QStringLiteral("--grid"), QStringLiteral("400,10,31"),
                                  QStringLiteral("-o"), QStringLiteral("grid.spectral")}));
    QZESpectrum spectrum;
    QVERIFY(spectrum.load(path(QStringLiteral("grid.spectral"))));
    verifyUniformGrid(spectrum, 400, 10, 31);
}

void tst_qzespectrum::infoRgbFollowsTheInputUpToScale_data()
{
    QTest::addColumn<QStringList>("input");
    QTest::newRow("orange") << QStringList{"0.8", "0.4", "0.2"};
    QTest::newRow("sky") << QStringList{"0.2", "0.5", "0.9"};
    QTest::newRow("leaf") << QStringList{"0.3", "0.7", "0.2"};
}

// Smits' spectra only approximate the colour they are made from, and the
// listed RGB carries the observer's unnormalised scale, so the channels are
// compared as fractions of the largest one.
void tst_qzespectrum::infoRgbFollowsTheInputUpToScale()
{
    QFETCH(QStringList, input);
    const QString file = QStringLiteral("%1.spectral").arg(QLatin1String(QTest::currentDataTag()));
    QZE_CHECK(verifyRunsSilently(QStringList{QStringLiteral("from-rgb")} + input
                                 + QStringList{QStringLiteral("-o"), file}));
    QMap<QString, QString> fields;
    QZE_CHECK(readInfo(file, fields));
    const QStringList output = fields.value(QStringLiteral("rgb")).split(QLatin1Char(' '));
    QCOMPARE(output.size(), 3);
    double in[3];
    double out[3];
    for (int i = 0; i < 3; ++i) {
        in[i] = input.at(i).toDouble();
        out[i] = output.at(i).toDouble();
    }
    const double inMax = *std::max_element(in, in + 3);
    const double outMax = *std::max_element(out, out + 3);
    for (int i = 0; i < 3; ++i) {
        QVERIFY2(std::abs(out[i] / outMax - in[i] / inMax) < 0.05,
                 qPrintable(fields.value(QStringLiteral("rgb"))));
    }
}

void tst_qzespectrum::infoDescribesTheFile_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("sampling");
    QTest::addColumn<QString>("grid");
    QTest::addColumn<QString>("count");
    QTest::addColumn<QString>("range");
    QTest::addColumn<double>("bandSum");
    QTest::addColumn<double>("photometric");

    // 0.5 everywhere: 40 bands of 0.5, their squares 0.25.
    QTest::newRow("native uniform") << "half.spectral" << "1" << "uniform" << "400,10,4" << "4"
                                    << "400 430" << 40 * 0.5 << 40 * 0.25;
    QTest::newRow("two-column text") << "ramp.txt" << "2" << "arbitrary" << QString() << "3"
                                     << "400 700" << rampBandSum(1) << rampBandSum(2);
}

void tst_qzespectrum::infoDescribesTheFile()
{
    QFETCH(QString, file);
    QFETCH(QString, version);
    QFETCH(QString, sampling);
    QFETCH(QString, grid);
    QFETCH(QString, count);
    QFETCH(QString, range);
    QFETCH(double, bandSum);
    QFETCH(double, photometric);

    QMap<QString, QString> fields;
    QZE_CHECK(readInfo(file, fields));
    QCOMPARE(fields.value(QStringLiteral("version")), version);
    QCOMPARE(fields.value(QStringLiteral("sampling")), sampling);
    QCOMPARE(fields.value(QStringLiteral("grid")), grid);
    QCOMPARE(fields.value(QStringLiteral("count")), count);
    QCOMPARE(fields.value(QStringLiteral("range")), range);
    const double listedSum = fields.value(QStringLiteral("band-sum")).toDouble();
    const double listedPhotometric = fields.value(QStringLiteral("photometric")).toDouble();
    QVERIFY2(closeTo(listedSum, bandSum, 1e-4), qPrintable(QString::number(listedSum)));
    QVERIFY2(closeTo(listedPhotometric, photometric, 1e-4),
             qPrintable(QString::number(listedPhotometric)));
}

// Bands of 1 give about 10.6857, 10.6858 and 10.6841: the band sums of the
// CIE 1931 observer through the equal-energy sRGB matrix.
void tst_qzespectrum::infoRgbOfConstantHalfIsHalfTheObserverSums()
{
    QMap<QString, QString> fields;
    QZE_CHECK(readInfo(QStringLiteral("half.spectral"), fields));
    const QStringList rgb = fields.value(QStringLiteral("rgb")).split(QLatin1Char(' '));
    QCOMPARE(rgb.size(), 3);
    const double expected[3] = {0.5 * 10.6857, 0.5 * 10.6858, 0.5 * 10.6841};
    for (int i = 0; i < 3; ++i)
        QVERIFY2(closeTo(rgb.at(i).toDouble(), expected[i], 1e-3), qPrintable(rgb.at(i)));
}

void tst_qzespectrum::convertWritesTextSpectrumAsNativeFile()
{
    QZE_CHECK(verifyRunsSilently({QStringLiteral("convert"), QStringLiteral("ramp.txt"),
                                  QStringLiteral("ramp.spectral")}));

    QFile file(path(QStringLiteral("ramp.spectral")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readLine().startsWith("spectral2 3"));

    QZESpectrum spectrum;
    QVERIFY(spectrum.loadNative(file.fileName()));
    QCOMPARE(spectrum.getVersionID(), 2);
    QCOMPARE(spectrum.getNumSamples(), 3);
    QCOMPARE(spectrum.getWavelengths(), (std::vector<float>{400.0f, 550.0f, 700.0f}));
    QCOMPARE(spectrum.getSourceValues(), (std::vector<float>{0.0f, 1.5f, 3.0f}));
}

void tst_qzespectrum::resampleInterpolatesOntoTheGrid()
{
    QZE_CHECK(verifyRunsSilently({QStringLiteral("resample"), QStringLiteral("ramp.txt"),
                                  QStringLiteral("--grid"), QStringLiteral("400,10,31"),
                                  QStringLiteral("-o"), QStringLiteral("resampled.spectral")}));

    QZESpectrum spectrum;
    QVERIFY(spectrum.loadNative(path(QStringLiteral("resampled.spectral"))));
    QZE_CHECK(verifyUniformGrid(spectrum, 400, 10, 31));
    for (int i = 0; i < 31; ++i) {
        const double wavelength = 400.0 + 10.0 * i;
        QCOMPARE(double(spectrum.getWavelengths()[size_t(i)]), wavelength);
        QVERIFY2(closeTo(spectrum.getSourceValues(i), rampAt(wavelength), 1e-5),
                 qPrintable(QString::number(wavelength)));
    }
}

void tst_qzespectrum::failuresExitNonZeroWithMessage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("message");

    const int usage = 2;
    const int file = 1;
    QTest::newRow("no command") << QStringList{} << usage << "no command";
    QTest::newRow("unknown command") << QStringList{"frobnicate"} << usage << "frobnicate";
    QTest::newRow("unknown option") << QStringList{"info", "--bogus"} << usage << "bogus";
    QTest::newRow("info without file") << QStringList{"info"} << usage << "info FILE";
    QTest::newRow("convert without output") << QStringList{"convert", "ramp.txt"} << usage
                                            << "convert IN OUT";
    QTest::newRow("from-rgb with two channels")
        << QStringList{"from-rgb", "1", "1", "-o", "x.spectral"} << usage << "from-rgb R G B";
    QTest::newRow("from-rgb without output") << QStringList{"from-rgb", "1", "1", "1"} << usage
                                             << "--output";
    QTest::newRow("resample without grid")
        << QStringList{"resample", "ramp.txt", "-o", "x.spectral"} << usage << "--grid";
    QTest::newRow("info with output")
        << QStringList{"info", "ramp.txt", "-o", "x.spectral"} << usage << "--output";
    QTest::newRow("grid with semicolons")
        << QStringList{"from-rgb", "1", "1", "1", "--grid", "380;5;81", "-o", "x.spectral"}
        << usage << "380;5;81";
    QTest::newRow("grid with two numbers")
        << QStringList{"resample", "ramp.txt", "--grid", "380,5", "-o", "x.spectral"} << usage
        << "380,5";
    QTest::newRow("grid with words")
        << QStringList{"resample", "ramp.txt", "--grid", "a,b,c", "-o", "x.spectral"} << usage
        << "a,b,c";
    QTest::newRow("grid with zero spacing")
        << QStringList{"resample", "ramp.txt", "--grid", "380,0,81", "-o", "x.spectral"}
        << usage << "380,0,81";
    QTest::newRow("non-numeric red")
        << QStringList{"from-rgb", "red", "0.5", "0.5", "-o", "x.spectral"} << usage << "red";
    QTest::newRow("non-finite blue")
        << QStringList{"from-rgb", "0.5", "0.5", "inf", "-o", "x.spectral"} << usage << "inf";
    QTest::newRow("output not named .spectral")
        << QStringList{"convert", "ramp.txt", "ramp-copy.txt"} << usage << "ramp-copy.txt";
    QTest::newRow("input of unknown type") << QStringList{"info", "ramp.dat"} << usage
                                           << "ramp.dat";
    QTest::newRow("missing input") << QStringList{"info", "absent.spectral"} << file
                                   << "absent.spectral";
    QTest::newRow("unwritable output")
        << QStringList{"from-rgb", "1", "1", "1", "-o", "no-such-dir/x.spectral"} << file
        << "no-such-dir/x.spectral";
    QTest::newRow("text file with a header") << QStringList{"info", "header.txt"} << file
                                             << "ERROR Spectrum: Unexpected file format.";
    QTest::newRow("unknown native version")
        << QStringList{"info", "version3.spectral"} << file
        << "ERROR Spectrum: Unknown Spectrum File Version!";
    QTest::newRow("truncated native file")
        << QStringList{"resample", "truncated.spectral", "--grid", "400,10,31", "-o",
                       "x.spectral"}
        << file << "truncated.spectral";
}

void tst_qzespectrum::failuresExitNonZeroWithMessage()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, message);

    const Result result = runTool(arguments);
    QCOMPARE(result.exitCode, exitCode);
    QVERIFY2(result.err.contains(message), qPrintable(result.err));
    QCOMPARE(result.out, QString());
}

void tst_qzespectrum::failedConvertWritesNoOutput()
{
    const Result result = runTool({QStringLiteral("convert"), QStringLiteral("header.txt"),
                                   QStringLiteral("header.spectral")});
    QCOMPARE(result.exitCode, 1);
    QVERIFY(!QFile::exists(path(QStringLiteral("header.spectral"))));
}

namespace {

// The tool's command line, prepared before a fork so that the forked child
// only opens, duplicates and execs: it runs the tool in the test folder with
// its standard error in errorFile and its output dropped.
class ToolCommand
{
public:
    ToolCommand(const QStringList& arguments, const QString& directory, const QString& errorFile)
        : _directory(QFile::encodeName(directory)), _errorPath(QFile::encodeName(errorFile))
    {
        _words.push_back(QByteArrayLiteral(QZESPECTRUM_PATH));
        for (const QString& argument : arguments)
            _words.push_back(argument.toLocal8Bit());
        for (QByteArray& word : _words)
            _argv.push_back(word.data());
        _argv.push_back(nullptr);
    }
    ToolCommand(const ToolCommand&) = delete;
    ToolCommand& operator=(const ToolCommand&) = delete;

    // Returns only when the tool could not be started.
    int exec() const
    {
        const int err = open(_errorPath.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        const int null = open("/dev/null", O_WRONLY);
        if (err < 0 || null < 0 || dup2(err, 2) < 0 || dup2(null, 1) < 0
            || chdir(_directory.constData()) != 0)
            return 126;
        execv(_argv[0], _argv.data());
        return 127;
    }

private:
    std::vector<QByteArray> _words;
    std::vector<char*> _argv;
    QByteArray _directory;
    QByteArray _errorPath;
};

} // namespace

void tst_qzespectrum::convertOntoItsOwnInputKeepsTheSpectrum()
{
    const QByteArray bytes("spectral2 3 \n400 450.5 700 \n0.25 1 2 ");
    writeFile(QStringLiteral("own.spectral"), bytes);

    QZE_CHECK(verifyRunsSilently({QStringLiteral("convert"), QStringLiteral("own.spectral"),
                                  QStringLiteral("own.spectral")}));

    QCOMPARE(fileBytes(path(QStringLiteral("own.spectral"))), bytes);
}

void tst_qzespectrum::writeOnFullDiskKeepsTheOldFileAndSaysWhy_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("convert") << QStringList{"convert", "wide.txt", "full.spectral"};
    QTest::newRow("convert onto its input")
        << QStringList{"convert", "full.spectral", "full.spectral"};
    QTest::newRow("resample")
        << QStringList{"resample", "ramp.txt", "--grid", "380,1,401", "-o", "full.spectral"};
    QTest::newRow("from-rgb") << QStringList{"from-rgb", "0.8", "0.4", "0.2", "-o",
                                             "full.spectral"};
}

// Files may grow to 512 bytes: room for the error message, none for any of
// the new files.
void tst_qzespectrum::writeOnFullDiskKeepsTheOldFileAndSaysWhy()
{
    QFETCH(QStringList, arguments);
    QByteArray wide;
    for (int i = 0; i < 100; ++i)
        wide += QByteArray::number(400 + 3 * i) + " 0.125\n";
    writeFile(QStringLiteral("wide.txt"), wide);
    const QByteArray old = "spectral1 400 1 100 \n" + QByteArray("0.25 ").repeated(100);
    writeFile(QStringLiteral("full.spectral"), old);
    const QString errorFile = path(QStringLiteral("full-disk.err"));

    const ToolCommand command(arguments, _dir.path(), errorFile);

    const ChildResult result =
        runWithFileSizeLimit(512, [&] { return command.exec(); });

    QVERIFY(result.exited);
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(fileBytes(path(QStringLiteral("full.spectral"))), old);
    const QString err = QString::fromLocal8Bit(fileBytes(errorFile));
    QVERIFY2(err.contains(QStringLiteral("cannot write full.spectral: File too large")),
             qPrintable(err));
}

// Whenever the kill lands, the output holds its old bytes or the whole new
// file, never a part.
void tst_qzespectrum::killDuringWriteLeavesOldOrWholeFile()
{
    const QStringList arguments{"resample", "ramp.txt", "--grid", "300,1,100000", "-o"};
    QZE_CHECK(verifyRunsSilently(arguments + QStringList{QStringLiteral("whole.spectral")}));
    const QByteArray whole = fileBytes(path(QStringLiteral("whole.spectral")));
    const QByteArray old("spectral1 400 100 4 \n0.125 0.25 0.5 1 ");
    const QString output = path(QStringLiteral("killed.spectral"));
    writeFile(QStringLiteral("killed.spectral"), old);

    const ToolCommand command(arguments + QStringList{QStringLiteral("killed.spectral")},
                              _dir.path(), path(QStringLiteral("killed.err")));

    killChildDuringWrite([&] { command.exec(); },
                         [&] { return QFileInfo(output).size() != old.size(); });

    const QByteArray after = fileBytes(output);
    QVERIFY2(after == old || after == whole,
             qPrintable(QStringLiteral("%1 bytes").arg(after.size())));
}

void tst_qzespectrum::inputLargerThanTheLimitIsRefused()
{
    QVERIFY(QFile::link(QStringLiteral("/dev/zero"), path(QStringLiteral("zeros.txt"))));

    const Result result = runTool({QStringLiteral("info"), QStringLiteral("zeros.txt")});

    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.contains(QStringLiteral("cannot read zeros.txt: it is larger than 64 MiB")),
             qPrintable(result.err));
}

void tst_qzespectrum::inputLeftUnreadFailsWithWhereReadingStopped_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QString>("stop");

    QTest::newRow("comment in the middle")
        << "comment.txt" << QByteArray("400 1\n410 2\n# lamp off\n420 3\n")
        << "comment.txt: reading stopped at line 3: # lamp off";
    QTest::newRow("comma separated") << "table.txt" << QByteArray("400,1\n410,2\n")
                                     << "table.txt: reading stopped at line 1: 400,1";
    QTest::newRow("word for a value") << "word.txt" << QByteArray("500 abc\n")
                                      << "word.txt: reading stopped at line 1: 500 abc";
    QTest::newRow("lone number at the end") << "lone.txt" << QByteArray("400 1\n410 2\n420")
                                            << "lone.txt: reading stopped at line 3: 420";
    QTest::newRow("pairs after the end pair")
        << "ended.txt" << QByteArray("400 1\n0 0\n\n500 2\n")
        << "ended.txt: reading stopped at line 4: 500 2";
    QTest::newRow("native numbers beyond the count")
        << "extra.spectral" << QByteArray("spectral1 400 10 2 \n1 2 \n3 4 ")
        << "extra.spectral: reading stopped at line 3: 3 4";
}

void tst_qzespectrum::inputLeftUnreadFailsWithWhereReadingStopped()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, contents);
    QFETCH(QString, stop);
    writeFile(name, contents);

    const Result result = runTool({QStringLiteral("info"), name});

    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.contains(stop), qPrintable(result.err));
    QVERIFY2(result.err.contains(QStringLiteral("--allow-partial")), qPrintable(result.err));
}

void tst_qzespectrum::allowPartialAcceptsWhatWasReadAndStillSaysWhere()
{
    writeFile(QStringLiteral("partial.txt"), "400 1\n500 1\n# end\n600 3\n");

    const Result result = runTool({QStringLiteral("convert"), QStringLiteral("partial.txt"),
                                   QStringLiteral("--allow-partial"),
                                   QStringLiteral("partial.spectral")});

    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.err.contains(QStringLiteral("warning: partial.txt: reading stopped at "
                                                "line 3: # end")),
             qPrintable(result.err));
    QCOMPARE(fileBytes(path(QStringLiteral("partial.spectral"))),
             QByteArray("spectral2 2 \n400 500 \n1 1 "));
}

void tst_qzespectrum::fromRgbWarnsAboveOneAndStillWrites()
{
    const Result result = runTool({QStringLiteral("from-rgb"), QStringLiteral("255"),
                                   QStringLiteral("128"), QStringLiteral("0"),
                                   QStringLiteral("-o"), QStringLiteral("bytes.spectral")});

    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.contains(QStringLiteral("warning: R G B above 1 (255 128 0)")),
             qPrintable(result.err));
    QZESpectrum spectrum;
    QVERIFY(spectrum.load(path(QStringLiteral("bytes.spectral"))));
    QZE_CHECK(verifyUniformGrid(spectrum, 380, 5, 81));
}

void tst_qzespectrum::fromRgbTakesNegativeNumbersAndOptionsInAnyOrder_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("rgb");

    QTest::newRow("output first") << QStringList{"from-rgb", "-o", "order.spectral", "-0.5",
                                                 "0.2", "0.1"}
                                  << QStringList{"-0.5", "0.2", "0.1"};
    QTest::newRow("options between the channels")
        << QStringList{"from-rgb", "-0.5", "--grid", "380,5,81", "0.2", "-o",
                       "order.spectral", "-1e-3"}
        << QStringList{"-0.5", "0.2", "-1e-3"};
    QTest::newRow("after a double dash")
        << QStringList{"from-rgb", "--output=order.spectral", "--", "-.25", "-0.2", "0.9"}
        << QStringList{"-.25", "-0.2", "0.9"};
    QTest::newRow("plain order") << QStringList{"from-rgb", "0.3", "0.6", "0.9", "--grid",
                                                "380,5,81", "-o", "order.spectral"}
                                 << QStringList{"0.3", "0.6", "0.9"};
}

// The file is the one the library writes for the same channels. Every row
// keeps the default grid: the shared reflectance bases are resampled in place
// for each new grid, so a second grid in this process would change them.
void tst_qzespectrum::fromRgbTakesNegativeNumbersAndOptionsInAnyOrder()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, rgb);
    QFile::remove(path(QStringLiteral("order.spectral")));

    QZE_CHECK(verifyRunsSilently(arguments));

    QZESpectrum expected;
    expected.setRGB(rgb.at(0).toFloat(), rgb.at(1).toFloat(), rgb.at(2).toFloat(), 380, 5, 81);
    const QString expectedName = path(QStringLiteral("expected.spectral"));
    QVERIFY(expected.save(expectedName));
    QCOMPARE(fileBytes(path(QStringLiteral("order.spectral"))), fileBytes(expectedName));
}

void tst_qzespectrum::gridAtTheIntLimitsIsAUsageError_data()
{
    QTest::addColumn<QString>("grid");

    QTest::newRow("smallest count") << "0,1,-2147483648";
    QTest::newRow("largest start and spacing") << "2147483647,2147483647,2";
    QTest::newRow("largest spacing") << "0,2147483647,100000";
    QTest::newRow("smallest spacing") << "380,-2147483648,81";
}

void tst_qzespectrum::gridAtTheIntLimitsIsAUsageError()
{
    QFETCH(QString, grid);

    const Result result = runTool({QStringLiteral("from-rgb"), QStringLiteral("0.5"),
                                   QStringLiteral("0.5"), QStringLiteral("0.5"),
                                   QStringLiteral("--grid"), grid, QStringLiteral("-o"),
                                   QStringLiteral("limits.spectral")});

    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.err.contains(QStringLiteral("grid '%1' out of range").arg(grid)),
             qPrintable(result.err));
    QVERIFY(!QFile::exists(path(QStringLiteral("limits.spectral"))));
}

void tst_qzespectrum::helpStatesTheSizeLimitAndTheUnnormalisedRgb()
{
    const Result result = runTool({QStringLiteral("--help")});

    QCOMPARE(result.exitCode, 0);
    const QString help = result.out.simplified();
    for (const char* phrase : {"at most 64 MiB", "--allow-partial", "is not normalised",
                               "about 10.69 in each channel", "IN and OUT may be the same file"})
        QVERIFY2(help.contains(QLatin1String(phrase)), phrase);
}

QTEST_GUILESS_MAIN(tst_qzespectrum)
#include "tst_qzespectrum.moc"
