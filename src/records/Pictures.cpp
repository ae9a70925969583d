#include "records/Pictures.h"

#include "records/Animal.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QStringList>

void renamePictures(const QString& oldName, const QString& newName)
{
    // A new record has no old name; every file would "begin" with it.
    if (oldName.isEmpty())
        return;
    const QString folder = PicturesFolder();
    QStringList files;
    QDirIterator it(folder, QDir::Files | QDir::Hidden);
    while (it.hasNext()) {
        it.next();
        if (it.fileName().startsWith(oldName, Qt::CaseInsensitive))
            files << it.fileName();
    }
    files.sort(Qt::CaseInsensitive);
    for (const QString& file : files) {
        const QString target = QString(file).replace(oldName, newName, Qt::CaseInsensitive);
        if (target == file)
            return;
        // A picture already under the new name is replaced, as a copy over it would.
        if (QFile::exists(folder + target) && !QFile::remove(folder + target))
            return;
        if (!QFile::copy(folder + file, folder + target) || !QFile::remove(folder + file))
            return;
    }
}
