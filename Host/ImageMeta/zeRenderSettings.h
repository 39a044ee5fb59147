#ifndef ZERENDERSETTINGS_H
#define ZERENDERSETTINGS_H

#include <map>
#include <string>
#include <utility>
#include <vector>

/// The record a renderer stores in the images it writes: general information
/// about the render (scene file, application version, render date) and the
/// groups of settings it was made with, each a list of key/value texts in the
/// renderer's order. All texts are UTF-8.
///
/// A group is carried as soon as it is added, even with no settings in it:
/// the group mask tells a host which parts of its state it can restore from
/// the image, the settings what to restore them to.
///
/// In image files the record is XMP of its own namespace,
/// "urn:qtcolor:render-settings:1.0/" with the prefix "qtcRender" (see
/// docs/render-settings-record.md): the texts SceneFile, ApplicationVersion and RenderDate, and
/// per carried group an ordered array (Camera, NodeVisibilities,
/// SwitchNodeStates, Image, Animation, RenderPasses, RayTracing,
/// SwitchMaterialStates) of structures with the fields Key and Value.
/// zeImageMetaWriter writes it, zeImageMetaData reads it.
class zeRenderSettings
{
public:
    /// The group bits of the mask; a host interprets the mask, so the values
    /// are fixed.
    enum Group {
        CameraSettings = 1,
        NodeVisibilities = 2,
        SwitchNodeStates = 4,
        ImageSettings = 8,
        AnimationSettings = 16,
        RenderPassesSettings = 32,
        RaytracingSettings = 64,
        SwitchMaterialStates = 128
    };
    /// The OR of every group bit.
    static constexpr int AllGroups = 255;

    /// One setting of a group: its key and its value, as UTF-8 text.
    using Setting = std::pair<std::string, std::string>;

    /// @{
    /// The scene file the image was rendered from (UTF-8; empty when unknown).
    const std::string& getSceneFile() const { return _sceneFile; }
    void setSceneFile(const std::string& name) { _sceneFile = name; }
    /// @}
    /// @{
    /// The version of the renderer that wrote the image (empty when unknown).
    const std::string& getApplicationVersion() const { return _applicationVersion; }
    void setApplicationVersion(const std::string& version) { _applicationVersion = version; }
    /// @}
    /// An ISO 8601 date and time, for example "2024-05-17T14:30:00".
    /// @{
    const std::string& getRenderDate() const { return _renderDate; }
    void setRenderDate(const std::string& date) { _renderDate = date; }
    /// @}

    /// Whether any of the three texts above is set.
    bool hasGeneralInformation() const;

    /// Adds the groups whose bits are set in mask (bits above 128 are ignored).
    void addGroups(int mask);
    /// Appends a setting to group, which becomes carried. A value that is not
    /// one of the bits above is ignored.
    void addSetting(Group group, const std::string& key, const std::string& value);

    /// The OR of the carried groups' bits.
    int getGroups() const;
    /// The settings of group in the order they were added; empty when the
    /// group is not carried or carries none.
    const std::vector<Setting>& getSettings(Group group) const;

    /// No general information and no group.
    bool isEmpty() const { return !hasGeneralInformation() && _groups.empty(); }

    /// @{
    /// Same texts, same groups and the same settings in the same order.
    bool operator==(const zeRenderSettings& other) const;
    /// @}
    /// Negation of operator==.
    bool operator!=(const zeRenderSettings& other) const { return !(*this == other); }

    /// Whether bit is exactly one of the group bits.
    static bool isGroup(int bit);

private:
    std::string _sceneFile;
    std::string _applicationVersion;
    std::string _renderDate;
    std::map<int, std::vector<Setting>> _groups;
};

#endif // ZERENDERSETTINGS_H
