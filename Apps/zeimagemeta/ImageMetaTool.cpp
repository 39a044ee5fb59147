#include "ImageMetaTool.h"

#include <osgImage.h>
#include <zeImageMetaData.h>
#include <zeRenderSettings.h>

#include <QDateTime>
#include <QSet>

namespace {

QtMessageHandler s_previousMessageHandler = nullptr;

// Plugins and exiv2 warn through Qt's log (exiv2 by way of zeLog); a
// damaged file can repeat one warning many times.
void printWarningOnce(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type == QtFatalMsg) {
        s_previousMessageHandler(type, context, message);
        return;
    }
    if (type == QtDebugMsg)
        return;
    static QSet<QString> printed;
    const QString text = message.trimmed();
    if (printed.contains(text))
        return;
    printed.insert(text);
    QTextStream(stderr) << QCoreApplication::applicationName() << ": warning: " << text
                        << Qt::endl;
}

// Installs printWarningOnce for the life of the object.
class WarningFilter
{
public:
    WarningFilter() { s_previousMessageHandler = qInstallMessageHandler(printWarningOnce); }
    ~WarningFilter() { qInstallMessageHandler(s_previousMessageHandler); }
    WarningFilter(const WarningFilter&) = delete;
    WarningFilter& operator=(const WarningFilter&) = delete;
};

struct GroupName
{
    zeRenderSettings::Group group;
    const char* name;
};

const GroupName GroupNames[] = {
    {zeRenderSettings::CameraSettings, QT_TRANSLATE_NOOP("ImageMetaTool", "Camera Settings")},
    {zeRenderSettings::NodeVisibilities, QT_TRANSLATE_NOOP("ImageMetaTool", "Node Visibilities")},
    {zeRenderSettings::SwitchNodeStates,
     QT_TRANSLATE_NOOP("ImageMetaTool", "Switch Node States")},
    {zeRenderSettings::ImageSettings, QT_TRANSLATE_NOOP("ImageMetaTool", "Image Settings")},
    {zeRenderSettings::AnimationSettings,
     QT_TRANSLATE_NOOP("ImageMetaTool", "Animation Settings")},
    {zeRenderSettings::RenderPassesSettings,
     QT_TRANSLATE_NOOP("ImageMetaTool", "Renderpasses Settings")},
    {zeRenderSettings::RaytracingSettings,
     QT_TRANSLATE_NOOP("ImageMetaTool", "Raytracing Settings")},
    {zeRenderSettings::SwitchMaterialStates,
     QT_TRANSLATE_NOOP("ImageMetaTool", "Switch Material States")},
};

// One line per setting whatever the text holds: backslashes, line feeds and
// carriage returns are written as C escapes.
QString oneLine(const std::string& text)
{
    return QString::fromStdString(text)
        .replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('\n'), QLatin1String("\\n"))
        .replace(QLatin1Char('\r'), QLatin1String("\\r"));
}

} // namespace

ImageMetaTool::ImageMetaTool()
    : _helpOption(_parser.addHelpOption())
    , _versionOption(_parser.addVersionOption())
    , _sceneOption(QStringLiteral("scene"), tr("Scene file the image was rendered from."),
                   tr("NAME"))
    , _renderVersionOption(QStringLiteral("render-version"),
                           tr("Version of the rendering application."), tr("V"))
    , _dateOption(QStringLiteral("date"),
                  tr("Render date and time in ISO 8601, for example 2024-05-17T14:30:00."),
                  tr("ISO8601"))
    , _groupsOption(QStringLiteral("groups"),
                    tr("Settings groups the record carries, the sum of: 1 camera, 2 node "
                       "visibilities, 4 switch node states, 8 image, 16 animation, 32 render "
                       "passes, 64 ray tracing, 128 switch material states."),
                    tr("MASK"))
    , _exifOption(QStringLiteral("exif-in-xmp"),
                  tr("Also copy the file's EXIF data into its XMP, next to the record."))
    , _out(stdout)
    , _err(stderr)
{
    QCoreApplication::setApplicationVersion(QStringLiteral(ZEIMAGEMETA_VERSION));
    _parser.addOptions(
        {_sceneOption, _renderVersionOption, _dateOption, _groupsOption, _exifOption});
    _parser.addPositionalArgument(QStringLiteral("command"), tr("show FILE..., or stamp FILE."),
                                  tr("command FILE..."));
    _parser.setApplicationDescription(helpText());
}

QString ImageMetaTool::helpText() const
{
    return tr("Shows and writes the metadata of image files: baseline tags, EXIF exposure data "
              "and the render-settings record.")
        + QLatin1String("\n\n") + tr("Commands:") + QLatin1String("\n  show FILE...\n      ")
        + tr("Print the size and channels of the image in FILE, the metadata blocks that the "
             "image loader attaches to it, each under its name in brackets, and its "
             "render-settings record. The pixels are not decoded.")
        + QLatin1String("\n      ")
        + tr("With several files, each report begins with a line \"==> FILE <==\" and an "
             "empty line separates one report from the next; a file that cannot be read is "
             "named on standard error and the others are still shown.")
        + QLatin1String("\n  stamp FILE --scene NAME --render-version V --date ISO8601 "
                        "--groups MASK [--exif-in-xmp]\n      ")
        + tr("Write a render-settings record into FILE (JPEG, PNG, TIFF, WebP) without "
             "re-encoding its pixels; a record already there is replaced. On any failure the "
             "file is left as it was.")
        + QLatin1String("\n  --gui FILE\n      ")
        + tr("Show the image information dialog for FILE.")
        + QLatin1String("\n\n")
        + tr("Exit status: 0 on success, 1 when a file (with show, any of the files) cannot be "
             "read or written, 2 on a usage error.");
}

int ImageMetaTool::run(const QStringList& arguments)
{
    const WarningFilter warnings;
    if (!_parser.parse(arguments))
        return usageError(_parser.errorText());
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
    return runCommand(positional.first(), positional.mid(1));
}

int ImageMetaTool::runCommand(const QString& command, const QStringList& files)
{
    const bool isShow = command == QLatin1String("show");
    if (!isShow && command != QLatin1String("stamp"))
        return usageError(tr("unknown command '%1'").arg(command));
    if (!isShow) {
        if (files.size() != 1)
            return usageError(tr("%1 takes exactly one FILE").arg(command));
        return stamp(files.first());
    }
    if (files.isEmpty())
        return usageError(tr("show needs at least one FILE"));
    for (const QCommandLineOption* option :
         {&_sceneOption, &_renderVersionOption, &_dateOption, &_groupsOption, &_exifOption}) {
        if (_parser.isSet(*option))
            return usageError(tr("show takes no --%1 option").arg(option->names().constFirst()));
    }
    return showAll(files);
}

// One file's report as it is; several go one after the other, each under a
// heading naming its file. A file that cannot be read is reported on
// standard error and the rest are still shown.
int ImageMetaTool::showAll(const QStringList& files)
{
    const bool headings = files.size() > 1;
    int status = Success;
    int shown = 0;
    for (const QString& file : files) {
        if (show(file, headings ? &shown : nullptr) != Success)
            status = FileError;
    }
    return status;
}

int ImageMetaTool::show(const QString& file, int* shown)
{
    const osg::ImagePtr image = osg::Image::create();
    image->setAttachmentField(zeImageMetaData::getAttachmentKey(), std::string());
    std::string why;
    if (!image->readHeader(file.toUtf8().constData(), &why))
        return fileError(tr("cannot read %1: %2").arg(file, QString::fromStdString(why)));
    const zeImageMetaData metaData(image, true);
    std::string exifInXmp;
    metaData.getEXIFData(exifInXmp);
    if (shown)
        _out << ((*shown)++ > 0 ? "\n==> " : "==> ") << file << " <==\n";
    printShape(*image);
    printBlock(QString::fromStdString(zeImageMetaData::getBaselineDataKey()),
               image->findAttachmentField(zeImageMetaData::getBaselineDataKey()).value_or(""));
    printBlock(QString::fromStdString(zeImageMetaData::getEXIFDataKey()),
               image->findAttachmentField(zeImageMetaData::getEXIFDataKey()).value_or(""));
    printBlock(QStringLiteral("EXIFDataInXMP"), exifInXmp);
    printRecord(metaData.getRenderSettings());
    _out.flush();
    return Success;
}

void ImageMetaTool::printShape(const osg::Image& image)
{
    _out << "[Image]\n";
    if (image.getDepth() == 0) {
        const QString unknown = tr("unknown");
        _out << tr("Dimensions:") << ' ' << unknown << '\n'
             << tr("Depth:") << " 0\n"
             << tr("Color channel:") << ' ' << unknown << '\n'
             << tr("Alpha channel:") << ' ' << unknown << '\n';
        return;
    }
    const QString yes = tr("yes");
    const QString no = tr("no");
    _out << tr("Dimensions:") << ' '
         << tr("%1 x %2 px").arg(image.getWidth()).arg(image.getHeight()) << '\n'
         << tr("Depth:") << ' ' << image.getDepth() << '\n'
         << tr("Color channel:") << ' ' << (image.hasColorChannel() ? yes : no) << '\n'
         << tr("Alpha channel:") << ' ' << (image.hasAlphaChannel() ? yes : no) << '\n';
}

void ImageMetaTool::printBlock(const QString& name, const std::string& block)
{
    _out << '[' << name << "]\n" << QString::fromStdString(block);
    if (!block.empty() && block.back() != '\n')
        _out << '\n';
}

void ImageMetaTool::printRecord(const zeRenderSettings& record)
{
    _out << "[RenderSettings]\n";
    if (record.isEmpty()) {
        _out << tr("(none)") << '\n';
        return;
    }
    QStringList groups;
    for (const GroupName& group : GroupNames) {
        if (record.getGroups() & group.group)
            groups << tr(group.name);
    }
    _out << tr("Scene:") << ' ' << oneLine(record.getSceneFile()) << '\n'
         << tr("Version:") << ' ' << oneLine(record.getApplicationVersion()) << '\n'
         << tr("Date:") << ' ' << oneLine(record.getRenderDate()) << '\n'
         << tr("Groups:") << ' ' << groups.join(QLatin1String(", ")) << '\n';
    for (const GroupName& group : GroupNames) {
        const std::vector<zeRenderSettings::Setting>& settings = record.getSettings(group.group);
        if (!settings.empty())
            _out << tr(group.name) << ":\n";
        for (const zeRenderSettings::Setting& setting : settings)
            _out << "  " << oneLine(setting.first) << ": " << oneLine(setting.second) << '\n';
    }
}

int ImageMetaTool::stamp(const QString& file)
{
    zeRenderSettings record;
    if (int status = checkStampOptions(record))
        return status;
    std::string detail;
    const zeImageMetaWriter::Result result = zeImageMetaWriter::stamp(
        file.toUtf8().constData(), record, _parser.isSet(_exifOption), &detail);
    if (result != zeImageMetaWriter::Stamped)
        return fileError(stampFailure(result, file, QString::fromStdString(detail)));
    return Success;
}

int ImageMetaTool::checkStampOptions(zeRenderSettings& record)
{
    for (const QCommandLineOption* option :
         {&_sceneOption, &_renderVersionOption, &_dateOption, &_groupsOption}) {
        if (!_parser.isSet(*option))
            return usageError(tr("stamp needs the --%1 option").arg(option->names().constFirst()));
    }
    const QString date = _parser.value(_dateOption);
    if (!QDateTime::fromString(date, Qt::ISODate).isValid())
        return usageError(tr("invalid date '%1': expected ISO 8601, for example "
                             "2024-05-17T14:30:00").arg(date));
    int mask = 0;
    if (int status = parseGroups(_parser.value(_groupsOption), mask))
        return status;
    record.setSceneFile(_parser.value(_sceneOption).toStdString());
    record.setApplicationVersion(_parser.value(_renderVersionOption).toStdString());
    record.setRenderDate(date.toStdString());
    record.addGroups(mask);
    return Success;
}

int ImageMetaTool::parseGroups(const QString& text, int& mask)
{
    bool ok = false;
    mask = text.toInt(&ok, 10);
    if (!ok || mask < 0 || mask > zeRenderSettings::AllGroups)
        return usageError(tr("invalid group mask '%1': expected a whole number from 0 to %2")
                              .arg(text)
                              .arg(zeRenderSettings::AllGroups));
    return Success;
}

QString ImageMetaTool::stampFailure(zeImageMetaWriter::Result result, const QString& file,
                                    const QString& detail) const
{
    switch (result) {
    case zeImageMetaWriter::FileTooLarge:
        return tr("%1 is larger than 1 GiB").arg(file);
    case zeImageMetaWriter::CannotReadFile:
        return tr("cannot read %1: %2").arg(file, detail);
    case zeImageMetaWriter::NotAnImage:
        return tr("%1 is not an image whose metadata can be read: %2").arg(file, detail);
    case zeImageMetaWriter::UnsupportedFormat:
        return tr("cannot write a record into %1: its format carries no XMP metadata").arg(file);
    case zeImageMetaWriter::NoEXIFToCopy:
        return tr("%1 has no EXIF data to copy into XMP; leave out --exif-in-xmp").arg(file);
    case zeImageMetaWriter::CannotEncode:
        return tr("cannot write the metadata of %1: %2").arg(file, detail);
    case zeImageMetaWriter::UnreadableXMP:
        return tr("cannot write a record into %1: exiv2 cannot parse the XMP metadata already "
                  "in it, which would be lost (%2); the file is left as it was")
            .arg(file, detail);
    case zeImageMetaWriter::CannotWriteFile:
    case zeImageMetaWriter::Stamped:
        break;
    }
    return tr("cannot save %1: %2; the file is left as it was").arg(file, detail);
}

int ImageMetaTool::usageError(const QString& message)
{
    const QString program = QCoreApplication::applicationName();
    _err << program << ": " << message << '\n'
         << tr("Run '%1 --help' for usage.").arg(program) << Qt::endl;
    return UsageError;
}

int ImageMetaTool::fileError(const QString& message)
{
    _err << QCoreApplication::applicationName() << ": " << message << Qt::endl;
    return FileError;
}
