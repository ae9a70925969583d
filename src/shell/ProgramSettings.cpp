// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ProgramSettings.h"

#include <QSettings>

namespace {

QString fullKey(const QString& section, const QString& key)
{
    return section.isEmpty() ? key : section + QLatin1Char('/') + key;
}

} // namespace

QString GetSetting(const QString& section, const QString& key, const QString& defaultValue)
{
    const QSettings settings(QStringLiteral("tessorin"), QStringLiteral("tessorin"));
    return settings.value(fullKey(section, key), defaultValue).toString();
}

void SaveSetting(const QString& section, const QString& key, const QString& value)
{
    QSettings settings(QStringLiteral("tessorin"), QStringLiteral("tessorin"));
    settings.setValue(fullKey(section, key), value);
}

void DeleteSetting(const QString& section, const QString& key)
{
    QSettings settings(QStringLiteral("tessorin"), QStringLiteral("tessorin"));
    settings.remove(fullKey(section, key));
}
