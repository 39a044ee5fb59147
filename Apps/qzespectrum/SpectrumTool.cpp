#include "SpectrumTool.h"

#include "StreamCapture.h"

#include <QZESpectrum.h>

#include <QFile>

#include <cmath>
#include <cstdio>

namespace {

constexpr int MaxGridSamples = 100000;
constexpr int MaxWavelength = 1000000;

QString number(float value)
{
    return QString::number(double(value), 'g', 6);
}

// The same case-insensitive substring test by which QZESpectrum::load()
// chooses the reader.
bool namesFormat(const QString& name, const char* suffix)
{
    return name.toUpper().contains(QLatin1String(suffix));
}

// The model reports a file it cannot open only by its result; opening the
// file first gives the reason.
bool opens(const QString& name, QIODevice::OpenMode mode, QString& reason)
{
    QFile file(name);
    if (file.open(mode))
        return true;
    reason = file.errorString();
    return false;
}

// Runs a file operation of the model with its progress lines kept out of the
// tool's output, and hands over the error lines among them.
template <typename Operation>
bool runQuietly(Operation operation, QStringList& errors)
{
    StreamCapture capture;
    const bool done = operation();
    errors = capture.errorLines();
    return done;
}

} // namespace

const SpectrumTool::Command SpectrumTool::Commands[] = {
    {"info", QT_TRANSLATE_NOOP("SpectrumTool", "FILE"),
     QT_TRANSLATE_NOOP("SpectrumTool",
                       "Print the version, sampling, sample count, wavelength range, band sum, "
                       "photometric value and RGB of FILE as \"key: value\" lines."),
     1, NotUsed, NotUsed, &SpectrumTool::info},
    {"convert", QT_TRANSLATE_NOOP("SpectrumTool", "IN OUT"),
     QT_TRANSLATE_NOOP("SpectrumTool", "Read IN (.spectral or .txt) and write it to OUT as a "
                                       ".spectral file."),
     2, NotUsed, NotUsed, &SpectrumTool::convert},
    {"from-rgb", QT_TRANSLATE_NOOP("SpectrumTool", "R G B"),
     QT_TRANSLATE_NOOP("SpectrumTool", "Write the reflectance spectrum of the linear RGB colour "
                                       "R G B (Smits' method) on the grid, by default 380,5,81."),
     3, Optional, Required, &SpectrumTool::fromRgb},
    {"resample", QT_TRANSLATE_NOOP("SpectrumTool", "IN"),
     QT_TRANSLATE_NOOP("SpectrumTool", "Interpolate IN linearly onto the grid and write the "
                                       "result."),
     1, Required, Required, &SpectrumTool::resample},
};

const SpectrumTool::Grid SpectrumTool::DefaultGrid = {380, 5, 81};

SpectrumTool::SpectrumTool()
    : _helpOption(_parser.addHelpOption())
    , _versionOption(_parser.addVersionOption())
    , _gridOption(QStringLiteral("grid"),
                  tr("Uniform wavelength grid in nm: first wavelength, spacing and number of "
                     "samples."),
                  tr("START,DELTA,NUM"))
    , _outputOption({QStringLiteral("o"), QStringLiteral("output")},
                    tr("Write the result to OUT; its name must contain .spectral."), tr("OUT"))
    , _out(stdout)
    , _err(stderr)
{
    _parser.addOption(_gridOption);
    _parser.addOption(_outputOption);
    _parser.addPositionalArgument(QStringLiteral("command"),
                                  tr("One of the commands above, then its arguments."),
                                  tr("command [arguments...]"));
    _parser.setApplicationDescription(helpText());
}

QString SpectrumTool::helpText() const
{
    QString text = tr("Inspects, converts and creates spectrum files: native .spectral files "
                      "and two-column .txt files (wavelength in nm, value).")
        + QLatin1String("\n\n") + tr("Commands:") + QLatin1Char('\n');
    for (const Command& command : Commands)
        text += QLatin1String("  ") + usage(command) + QLatin1String("\n      ")
            + tr(command.description) + QLatin1Char('\n');
    return text + QLatin1Char('\n')
        + tr("Exit status: 0 on success, 1 when a file cannot be read or written or holds no "
             "valid spectrum, 2 on a usage error.");
}

QString SpectrumTool::usage(const Command& command)
{
    QString text = QLatin1String(command.name) + QLatin1Char(' ') + tr(command.syntax);
    if (command.grid == Optional)
        text += QLatin1String(" [--grid ") + tr("START,DELTA,NUM") + QLatin1Char(']');
    else if (command.grid == Required)
        text += QLatin1String(" --grid ") + tr("START,DELTA,NUM");
    if (command.output == Required)
        text += QLatin1String(" -o ") + tr("OUT");
    return text;
}

int SpectrumTool::run(const QStringList& arguments)
{
    if (!_parser.parse(arguments))
        return usageError(_parser.errorText());
    // --help-all adds only the Qt options of graphical programs; both show the same text.
    if (_parser.isSet(_helpOption) || _parser.isSet(QStringLiteral("help-all"))) {
        _out << _parser.helpText() << Qt::flush;
        return Success;
    }
    if (_parser.isSet(_versionOption)) {
        _out << QCoreApplication::applicationName() << ' '
             << QCoreApplication::applicationVersion() << Qt::endl;
        return Success;
    }
    const QStringList positional = _parser.positionalArguments();
    if (positional.isEmpty())
        return usageError(tr("no command given"));
    const Command* command = findCommand(positional.first());
    if (!command)
        return usageError(tr("unknown command '%1'").arg(positional.first()));
    return runCommand(*command, positional.mid(1));
}

const SpectrumTool::Command* SpectrumTool::findCommand(const QString& name)
{
    for (const Command& command : Commands) {
        if (name == QLatin1String(command.name))
            return &command;
    }
    return nullptr;
}

int SpectrumTool::runCommand(const Command& command, const QStringList& arguments)
{
    if (arguments.size() != command.argumentCount)
        return usageError(tr("wrong number of arguments; usage: %1").arg(usage(command)));
    if (int status = checkOption(command, _gridOption, command.grid))
        return status;
    if (int status = checkOption(command, _outputOption, command.output))
        return status;
    Invocation call{arguments, DefaultGrid, _parser.value(_outputOption)};
    if (_parser.isSet(_gridOption)) {
        if (int status = parseGrid(_parser.value(_gridOption), call.grid))
            return status;
    }
    return (this->*command.handler)(call);
}

int SpectrumTool::checkOption(const Command& command, const QCommandLineOption& option,
                              OptionUse use)
{
    const QString name = QLatin1String("--") + option.names().constLast();
    if (use == NotUsed && _parser.isSet(option))
        return usageError(tr("%1 takes no %2 option").arg(QLatin1String(command.name), name));
    if (use == Required && !_parser.isSet(option))
        return usageError(tr("%1 needs the %2 option").arg(QLatin1String(command.name), name));
    return Success;
}

int SpectrumTool::info(const Invocation& call)
{
    QZESpectrum spectrum;
    if (int status = loadSpectrum(call.arguments.at(0), spectrum))
        return status;
    printInfo(spectrum);
    return Success;
}

int SpectrumTool::convert(const Invocation& call)
{
    const QString& output = call.arguments.at(1);
    if (int status = checkOutputName(output))
        return status;
    QZESpectrum spectrum;
    if (int status = loadSpectrum(call.arguments.at(0), spectrum))
        return status;
    return saveSpectrum(spectrum, output);
}

int SpectrumTool::fromRgb(const Invocation& call)
{
    float rgb[3];
    for (int i = 0; i < 3; ++i) {
        if (int status = parseChannel(call.arguments.at(i), rgb[i]))
            return status;
    }
    if (int status = checkOutputName(call.output))
        return status;
    QZESpectrum spectrum;
    spectrum.setRGB(rgb[0], rgb[1], rgb[2], call.grid.start, call.grid.delta, call.grid.num);
    return saveSpectrum(spectrum, call.output);
}

int SpectrumTool::resample(const Invocation& call)
{
    if (int status = checkOutputName(call.output))
        return status;
    QZESpectrum spectrum;
    if (int status = loadSpectrum(call.arguments.at(0), spectrum))
        return status;
    spectrum.resampleSource(call.grid.start, call.grid.delta, call.grid.num);
    return saveSpectrum(spectrum, call.output);
}

int SpectrumTool::parseGrid(const QString& text, Grid& grid)
{
    const QStringList parts = text.split(QLatin1Char(','));
    bool ok = parts.size() == 3;
    int values[3] = {};
    for (int i = 0; ok && i < 3; ++i)
        values[i] = parts.at(i).trimmed().toInt(&ok);
    if (!ok)
        return usageError(tr("invalid grid '%1': expected START,DELTA,NUM as three whole "
                             "numbers").arg(text));
    const Grid parsed = {values[0], values[1], values[2]};
    const qint64 last = qint64(parsed.start) + qint64(parsed.delta) * (parsed.num - 1);
    if (parsed.start < 0 || parsed.delta < 1 || parsed.num < 1 || parsed.num > MaxGridSamples
        || last > MaxWavelength) {
        return usageError(tr("grid '%1' out of range: START must be at least 0, DELTA and NUM "
                             "at least 1, NUM at most %2 and the last wavelength at most %3 nm")
                              .arg(text, QString::number(MaxGridSamples),
                                   QString::number(MaxWavelength)));
    }
    grid = parsed;
    return Success;
}

int SpectrumTool::parseChannel(const QString& text, float& channel)
{
    bool ok = false;
    channel = text.toFloat(&ok);
    if (!ok || !std::isfinite(channel))
        return usageError(tr("'%1' is not a number").arg(text));
    return Success;
}

int SpectrumTool::loadSpectrum(const QString& name, QZESpectrum& spectrum)
{
    if (!namesFormat(name, ".SPECTRAL") && !namesFormat(name, ".TXT"))
        return usageError(tr("%1: unknown file type; expected a .spectral or .txt file")
                              .arg(name));
    QString reason;
    if (!opens(name, QIODevice::ReadOnly, reason))
        return fileError(tr("cannot read %1: %2").arg(name, reason));
    QStringList errors;
    if (!runQuietly([&] { return spectrum.load(name); }, errors))
        return fileError(tr("%1 is not a valid spectrum file").arg(name), errors);
    if (spectrum.getNumSamples() == 0)
        return fileError(tr("%1 holds no samples").arg(name));
    spectrum.resample();
    return Success;
}

int SpectrumTool::saveSpectrum(QZESpectrum& spectrum, const QString& name)
{
    QString reason;
    if (!opens(name, QIODevice::WriteOnly, reason))
        return fileError(tr("cannot write %1: %2").arg(name, reason));
    QStringList errors;
    if (!runQuietly([&] { return spectrum.save(name); }, errors))
        return fileError(tr("cannot write %1").arg(name), errors);
    return Success;
}

// A native file under another name would be read back with the wrong reader.
int SpectrumTool::checkOutputName(const QString& name)
{
    if (!namesFormat(name, ".SPECTRAL"))
        return usageError(tr("output file '%1' must have a name containing .spectral")
                              .arg(name));
    return Success;
}

// The keys and words of this listing are a format for scripts and stay
// untranslated.
void SpectrumTool::printInfo(const QZESpectrum& spectrum)
{
    const bool uniform = spectrum.getVersionID() == 1;
    printField("version", QString::number(spectrum.getVersionID()));
    printField("sampling", QLatin1String(uniform ? "uniform" : "arbitrary"));
    if (uniform) {
        printField("grid", QStringLiteral("%1,%2,%3")
                               .arg(spectrum.getStartWavelength())
                               .arg(spectrum.getDeltaWavelength())
                               .arg(spectrum.getNumSamples()));
    }
    printField("count", QString::number(spectrum.getNumSamples()));
    const std::vector<float>& wavelengths = spectrum.getWavelengths();
    printField("range",
               number(wavelengths.front()) + QLatin1Char(' ') + number(wavelengths.back()));
    printField("band-sum", number(spectrum.getSum()));
    printField("photometric", number(spectrum.getPhotometricValue()));
    const QZESpectrum::RGB rgb = spectrum.getRGB();
    printField("rgb", number(rgb.r) + QLatin1Char(' ') + number(rgb.g) + QLatin1Char(' ')
                          + number(rgb.b));
}

void SpectrumTool::printField(const char* key, const QString& value)
{
    _out << key << ": " << value << '\n';
}

int SpectrumTool::usageError(const QString& message)
{
    const QString program = QCoreApplication::applicationName();
    _err << program << ": " << message << '\n'
         << tr("Run '%1 --help' for usage.").arg(program) << Qt::endl;
    return UsageError;
}

int SpectrumTool::fileError(const QString& message, const QStringList& details)
{
    _err << QCoreApplication::applicationName() << ": " << message << '\n';
    for (const QString& line : details)
        _err << line << '\n';
    _err.flush();
    return FileError;
}
