#include "SpectrumTool.h"

#include "StreamCapture.h"

#include <QZEBoundedFileReader.h>
#include <QZESpectrum.h>

#include <cmath>
#include <cstdio>

namespace {

constexpr int MaxGridSamples = 100000;
constexpr int MaxWavelength = 1000000;
// Shown of the text where reading stopped: enough to find it in the file.
constexpr int MaxQuotedText = 60;

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

// A number given as an argument, such as -0.5, rather than an option.
bool isNumber(const QString& argument)
{
    bool ok = false;
    argument.toDouble(&ok);
    return ok;
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
    , _allowPartialOption(QStringLiteral("allow-partial"),
                          tr("Accept an input file that was not read to its end (text after "
                             "the data, a pair that is not two numbers); where reading stopped "
                             "is still reported."))
    , _out(stdout)
    , _err(stderr)
{
    _parser.addOption(_gridOption);
    _parser.addOption(_outputOption);
    _parser.addOption(_allowPartialOption);
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
        + tr("Input files may hold at most %1 MiB. A file that is not read to its end (a "
             "comment or other text among the numbers, a lone number at the end, text after "
             "the samples a header announces) is an error, with the line where reading "
             "stopped, unless --allow-partial is given. Outputs are written whole to a "
             "temporary file and then renamed, so a failed write leaves an existing file "
             "unchanged; IN and OUT may be the same file.")
              .arg(QZESpectrum::MaxFileSize / (1024 * 1024))
        + QLatin1String("\n\n")
        + tr("R G B are linear values from 0 to 1; larger values (such as 8-bit 255) are "
             "clipped, with a warning. The rgb that info prints is not normalised: a constant "
             "spectrum of 1.0 gives about 10.69 in each channel.")
        + QLatin1String("\n\n")
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
    if (!_parser.parse(numbersAsPositional(arguments)))
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
    if (rgb[0] > 1.0f || rgb[1] > 1.0f || rgb[2] > 1.0f)
        warn(tr("R G B above 1 (%1 %2 %3) give a reflectance clipped at 1; the channels are "
                "linear values from 0 to 1 (divide 8-bit values by 255)")
                 .arg(call.arguments.at(0), call.arguments.at(1), call.arguments.at(2)));
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
    // Each bound is checked before the last wavelength is computed from them.
    const bool inRange = parsed.start >= 0 && parsed.delta >= 1 && parsed.num >= 1
                         && parsed.num <= MaxGridSamples
                         && qint64(parsed.start) + qint64(parsed.delta) * (parsed.num - 1)
                                <= MaxWavelength;
    if (!inRange) {
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
    QByteArray bytes;
    QZEBoundedFileReader reader(name, QZESpectrum::MaxFileSize);
    switch (reader.read(bytes)) {
    case QZEBoundedFileReader::OpenFailed:
    case QZEBoundedFileReader::ReadFailed:
        return fileError(tr("cannot read %1: %2").arg(name, reader.errorString()));
    case QZEBoundedFileReader::TooLarge:
        return fileError(tr("cannot read %1: it is larger than %2 MiB")
                             .arg(name)
                             .arg(QZESpectrum::MaxFileSize / (1024 * 1024)));
    case QZEBoundedFileReader::Read:
        break;
    }
    QStringList errors;
    qint64 unreadAt = 0;
    if (!runQuietly([&] { return spectrum.loadData(bytes, name, unreadAt); }, errors))
        return fileError(tr("%1 is not a valid spectrum file").arg(name), errors);
    if (spectrum.getNumSamples() == 0)
        return fileError(tr("%1 holds no samples").arg(name));
    if (unreadAt < bytes.size()) {
        const QString stop = stoppedAt(name, bytes, unreadAt);
        if (!_parser.isSet(_allowPartialOption))
            return fileError(stop + QLatin1Char('\n')
                             + tr("%1 was not read to its end; give --allow-partial to accept "
                                  "what was read").arg(name));
        warn(stop);
    }
    spectrum.resample();
    return Success;
}

// Where reading stopped, as a line number and the text there, cut to a
// length that fits a terminal line.
QString SpectrumTool::stoppedAt(const QString& name, const QByteArray& bytes, qint64 offset)
{
    const int at = int(offset);
    const int line = bytes.left(at).count('\n') + 1;
    const int lineEnd = bytes.indexOf('\n', at);
    QString text = QString::fromUtf8(bytes.mid(at, (lineEnd < 0 ? bytes.size() : lineEnd) - at))
                       .trimmed();
    if (text.size() > MaxQuotedText)
        text = text.left(MaxQuotedText) + QStringLiteral("...");
    return tr("%1: reading stopped at line %2: %3").arg(name).arg(line).arg(text);
}

int SpectrumTool::saveSpectrum(QZESpectrum& spectrum, const QString& name)
{
    QStringList errors;
    QString reason;
    if (!runQuietly([&] { return spectrum.save(name, &reason); }, errors)) {
        const QString message = reason.isEmpty() ? tr("cannot write %1").arg(name)
                                                 : tr("cannot write %1: %2").arg(name, reason);
        return fileError(message, errors);
    }
    return Success;
}

// QCommandLineParser takes every argument that begins with '-' for an
// option, so a negative channel such as -0.5 would be refused as an unknown
// option. Numbers, and everything after "--", are moved behind a "--" of
// their own, in their order; options keep theirs, with the value of -o and
// --grid when it is the next argument.
QStringList SpectrumTool::numbersAsPositional(const QStringList& arguments) const
{
    QStringList options = arguments.mid(0, 1);
    QStringList positional;
    for (int i = 1; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        if (argument == QLatin1String("--")) {
            positional += arguments.mid(i + 1);
            break;
        }
        if (!argument.startsWith(QLatin1Char('-')) || isNumber(argument)) {
            positional += argument;
            continue;
        }
        options += argument;
        if (takesValue(argument) && i + 1 < arguments.size())
            options += arguments.at(++i);
    }
    return options + QStringList{QStringLiteral("--")} + positional;
}

bool SpectrumTool::takesValue(const QString& argument) const
{
    for (const QCommandLineOption* option : {&_gridOption, &_outputOption}) {
        for (const QString& name : option->names()) {
            if (argument == (name.size() == 1 ? QLatin1String("-") : QLatin1String("--")) + name)
                return true;
        }
    }
    return false;
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

void SpectrumTool::warn(const QString& message)
{
    _err << QCoreApplication::applicationName() << ": " << tr("warning: %1").arg(message)
         << Qt::endl;
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
