#include "zeRenderSettingsXmp.h"

#include <exiv2/properties.hpp>
#include <exiv2/value.hpp>

#include <QString>

#include <algorithm>
#include <charconv>
#include <map>

namespace {

const char* const SceneFile = "SceneFile";
const char* const ApplicationVersion = "ApplicationVersion";
const char* const RenderDate = "RenderDate";
const char* const KeyField = "Key";
const char* const ValueField = "Value";

struct GroupName
{
    int bit;
    const char* name;
};

const GroupName GroupNames[] = {
    {zeRenderSettings::CameraSettings, "Camera"},
    {zeRenderSettings::NodeVisibilities, "NodeVisibilities"},
    {zeRenderSettings::SwitchNodeStates, "SwitchNodeStates"},
    {zeRenderSettings::ImageSettings, "Image"},
    {zeRenderSettings::AnimationSettings, "Animation"},
    {zeRenderSettings::RenderPassesSettings, "RenderPasses"},
    {zeRenderSettings::RaytracingSettings, "RayTracing"},
    {zeRenderSettings::SwitchMaterialStates, "SwitchMaterialStates"},
};

int groupBit(const std::string& name)
{
    for (const GroupName& group : GroupNames) {
        if (name == group.name)
            return group.bit;
    }
    return 0;
}

std::string keyOf(const std::string& path)
{
    return std::string("Xmp.") + zeRenderSettingsXmp::Prefix + '.' + path;
}

std::string fieldPath(const std::string& item, const char* field)
{
    return item + '/' + zeRenderSettingsXmp::Prefix + ':' + field;
}

// text as XML can carry it: bytes that are not UTF-8, and characters that
// XML 1.0 does not allow (control characters other than tab, line feed and
// carriage return, U+FFFE, U+FFFF), become U+FFFD.
std::string xmlText(const std::string& text)
{
    QString characters = QString::fromUtf8(text.data(), int(text.size()));
    for (QChar& character : characters) {
        const ushort code = character.unicode();
        const bool allowedControl = code == '\t' || code == '\n' || code == '\r';
        if ((code < 0x20 && !allowedControl) || code == 0xFFFE || code == 0xFFFF)
            character = QChar::ReplacementCharacter;
    }
    return characters.toStdString();
}

void addText(Exiv2::XmpData& xmp, const std::string& path, const std::string& text)
{
    const Exiv2::XmpTextValue value(xmlText(text));
    xmp.add(Exiv2::XmpKey(keyOf(path)), &value);
}

void addTextIfSet(Exiv2::XmpData& xmp, const char* name, const std::string& text)
{
    if (!text.empty())
        addText(xmp, name, text);
}

void addNode(Exiv2::XmpData& xmp, const std::string& path, Exiv2::XmpValue::XmpArrayType array)
{
    Exiv2::XmpTextValue node;
    if (array == Exiv2::XmpValue::xaNone)
        node.setXmpStruct();
    else
        node.setXmpArrayType(array);
    xmp.add(Exiv2::XmpKey(keyOf(path)), &node);
}

void writeGroup(const char* name, const std::vector<zeRenderSettings::Setting>& settings,
                Exiv2::XmpData& xmp)
{
    addNode(xmp, name, Exiv2::XmpValue::xaSeq);
    for (std::size_t i = 0; i < settings.size(); ++i) {
        const std::string item = std::string(name) + '[' + std::to_string(i + 1) + ']';
        addNode(xmp, item, Exiv2::XmpValue::xaNone);
        addText(xmp, fieldPath(item, KeyField), settings[i].first);
        addText(xmp, fieldPath(item, ValueField), settings[i].second);
    }
}

// The settings of the items read so far, by group bit and item number; the
// numbers give the order, whatever order the properties come in.
struct Item
{
    bool hasKey = false;
    zeRenderSettings::Setting setting;
};
using Items = std::map<std::pair<int, long>, Item>;

// An array item path "Group[n]/prefix:Field", or "Group[n]" for the item
// itself (field empty). exiv2 gives the fields the prefix the packet used,
// so they are known by their local names.
bool parseItemPath(const std::string& path, std::string& group, long& number, std::string& field)
{
    const std::size_t open = path.find('[');
    const std::size_t close = path.find(']', open);
    if (open == std::string::npos || close == std::string::npos)
        return false;
    const char* first = path.data() + open + 1;
    const char* last = path.data() + close;
    const auto parsed = std::from_chars(first, last, number);
    if (parsed.ec != std::errc() || parsed.ptr != last || number < 1)
        return false;
    group = path.substr(0, open);
    const std::string rest = path.substr(close + 1);
    const std::size_t colon = rest.find(':');
    if (rest.empty()) {
        field.clear();
        return true;
    }
    if (rest[0] != '/' || colon == std::string::npos || rest.find('/', 1) != std::string::npos)
        return false;
    field = rest.substr(colon + 1);
    return true;
}

void readItemField(const std::string& path, const std::string& value, zeRenderSettings& record,
                   Items& items)
{
    std::string groupName;
    std::string field;
    long number = 0;
    if (!parseItemPath(path, groupName, number, field))
        return;
    const int bit = groupBit(groupName);
    if (bit == 0)
        return;
    record.addGroups(bit);
    Item& item = items[{bit, number}];
    if (field == KeyField) {
        item.hasKey = true;
        item.setting.first = value;
    } else if (field == ValueField) {
        item.setting.second = value;
    }
}

void readProperty(const std::string& path, const std::string& value, zeRenderSettings& record,
                  Items& items)
{
    if (path == SceneFile)
        record.setSceneFile(value);
    else if (path == ApplicationVersion)
        record.setApplicationVersion(value);
    else if (path == RenderDate)
        record.setRenderDate(value);
    else if (const int bit = groupBit(path))
        record.addGroups(bit);
    else
        readItemField(path, value, record, items);
}

// The prefix under which exiv2 lists the properties of namespace now; empty
// when no packet has bound it yet, or a packet has taken its binding away.
std::string prefixOf(const char* namespaceURI)
{
    return Exiv2::XmpProperties::prefix(namespaceURI);
}

std::string currentPrefix()
{
    return prefixOf(zeRenderSettingsXmp::NamespaceURI);
}

bool inGroup(const Exiv2::Xmpdatum& datum, const std::string& prefix)
{
    return !prefix.empty() && datum.groupName() == prefix;
}

bool inEitherNamespace(const Exiv2::Xmpdatum& datum)
{
    return inGroup(datum, currentPrefix())
        || inGroup(datum, prefixOf(zeRenderSettingsXmp::LegacyNamespaceURI));
}

bool hasPropertyIn(const Exiv2::XmpData& xmp, const std::string& prefix)
{
    return std::any_of(xmp.begin(), xmp.end(),
                       [&](const Exiv2::Xmpdatum& datum) { return inGroup(datum, prefix); });
}

} // namespace

void zeRenderSettingsXmp::registerNamespace()
{
    if (!ownsPrefix())
        Exiv2::XmpProperties::registerNs(NamespaceURI, Prefix);
}

bool zeRenderSettingsXmp::ownsPrefix()
{
    return currentPrefix() == Prefix;
}

void zeRenderSettingsXmp::write(const zeRenderSettings& record, Exiv2::XmpData& xmp)
{
    erase(xmp);
    addTextIfSet(xmp, SceneFile, record.getSceneFile());
    addTextIfSet(xmp, ApplicationVersion, record.getApplicationVersion());
    addTextIfSet(xmp, RenderDate, record.getRenderDate());
    for (const GroupName& group : GroupNames) {
        if (record.getGroups() & group.bit)
            writeGroup(group.name, record.getSettings(zeRenderSettings::Group(group.bit)), xmp);
    }
}

bool zeRenderSettingsXmp::read(const Exiv2::XmpData& xmp, zeRenderSettings& record)
{
    record = zeRenderSettings();
    std::string prefix = currentPrefix();
    if (!hasPropertyIn(xmp, prefix))
        prefix = prefixOf(LegacyNamespaceURI);
    Items items;
    bool found = false;
    for (const Exiv2::Xmpdatum& datum : xmp) {
        if (!inGroup(datum, prefix))
            continue;
        found = true;
        readProperty(datum.tagName(), datum.toString(), record, items);
    }
    for (const auto& entry : items) {
        if (entry.second.hasKey) {
            record.addSetting(zeRenderSettings::Group(entry.first.first),
                              entry.second.setting.first, entry.second.setting.second);
        }
    }
    return found;
}

void zeRenderSettingsXmp::erase(Exiv2::XmpData& xmp)
{
    Exiv2::XmpData kept;
    for (const Exiv2::Xmpdatum& datum : xmp) {
        if (!inEitherNamespace(datum))
            kept.add(datum);
    }
    xmp = kept;
}

bool zeRenderSettingsXmp::carriesRecordOrExif(const Exiv2::XmpData& xmp)
{
    return std::any_of(xmp.begin(), xmp.end(), [](const Exiv2::Xmpdatum& datum) {
        return inEitherNamespace(datum) || datum.groupName() == "exif";
    });
}

bool zeRenderSettingsXmp::decodePacket(const std::string& packet, Exiv2::XmpData& xmp)
{
    return Exiv2::XmpParser::decode(xmp, packet) == 0;
}
