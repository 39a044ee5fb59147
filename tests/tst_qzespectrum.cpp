#include "TestHelpers.h"

#include <QZESpectrum.h>

#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <cmath>

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

QTEST_GUILESS_MAIN(tst_qzespectrum)
#include "tst_qzespectrum.moc"
