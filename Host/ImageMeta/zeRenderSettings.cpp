#include "zeRenderSettings.h"

bool zeRenderSettings::isGroup(int bit)
{
    return bit >= CameraSettings && bit <= SwitchMaterialStates && (bit & (bit - 1)) == 0;
}

bool zeRenderSettings::hasGeneralInformation() const
{
    return !_sceneFile.empty() || !_applicationVersion.empty() || !_renderDate.empty();
}

void zeRenderSettings::addGroups(int mask)
{
    for (int bit = CameraSettings; bit <= SwitchMaterialStates; bit <<= 1) {
        if (mask & bit)
            _groups[bit];
    }
}

void zeRenderSettings::addSetting(Group group, const std::string& key, const std::string& value)
{
    if (isGroup(group))
        _groups[group].emplace_back(key, value);
}

int zeRenderSettings::getGroups() const
{
    int mask = 0;
    for (const auto& group : _groups)
        mask |= group.first;
    return mask;
}

const std::vector<zeRenderSettings::Setting>& zeRenderSettings::getSettings(Group group) const
{
    static const std::vector<Setting> none;
    const auto found = _groups.find(group);
    return found == _groups.end() ? none : found->second;
}

bool zeRenderSettings::operator==(const zeRenderSettings& other) const
{
    return _sceneFile == other._sceneFile && _applicationVersion == other._applicationVersion
        && _renderDate == other._renderDate && _groups == other._groups;
}
