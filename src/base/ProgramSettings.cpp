// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ProgramSettings.h"

#include <QSettings>
#include <QStringList>

namespace {

const QString kOptions = QStringLiteral("Options");
// Values that earlier versions kept at the top level and that belong in "Options".
const QStringList kMovedToOptions = {QStringLiteral("Default Database")};

QString fullKey(const QString& section, const QString& key)
{
    return section.isEmpty() ? key : section + QLatin1Char('/') + key;
}

// A value still in its old place is read from there once and moved, so that an upgrade keeps it.
void moveOldValue(QSettings& settings, const QString& section, const QString& key)
{
    if (section != kOptions || !kMovedToOptions.contains(key) || !settings.contains(key))
        return;
    if (!settings.contains(fullKey(section, key)))
        settings.setValue(fullKey(section, key), settings.value(key));
    settings.remove(key);
}

} // namespace

QString GetSetting(const QString& section, const QString& key, const QString& defaultValue)
{
    QSettings settings(QStringLiteral("tessorin"), QStringLiteral("tessorin"));
    moveOldValue(settings, section, key);
    return settings.value(fullKey(section, key), defaultValue).toString();
}

void SaveSetting(const QString& section, const QString& key, const QString& value)
{
    QSettings settings(QStringLiteral("tessorin"), QStringLiteral("tessorin"));
    moveOldValue(settings, section, key);
    settings.setValue(fullKey(section, key), value);
}

void DeleteSetting(const QString& section, const QString& key)
{
    QSettings settings(QStringLiteral("tessorin"), QStringLiteral("tessorin"));
    moveOldValue(settings, section, key);
    settings.remove(fullKey(section, key));
}
