// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/Pictures.h"

#include "records/Animal.h"
#include "base/Log.h"
#include "base/Ui.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStringList>

#include <cerrno>
#include <cstdio>
#include <cstring>

bool renamePictures(const QString& oldName, const QString& newName)
{
    // A new record has no old name; every file would "begin" with it.
    if (oldName.isEmpty() || oldName == newName)
        return true;
    // "name(" and not the bare name, or "Aster" would take the pictures of "Aster 2".
    const QString stem = oldName + QLatin1Char('(');
    const QString folder = PicturesFolder();
    QStringList files;
    QDirIterator it(folder, QDir::Files | QDir::Hidden);
    while (it.hasNext()) {
        it.next();
        if (it.fileName().startsWith(stem, Qt::CaseInsensitive))
            files << it.fileName();
    }
    files.sort(Qt::CaseInsensitive);
    // All or none: a rename that cannot finish puts back those already made.
    QList<std::pair<QString, QString>> done;
    for (const QString& file : files) {
        const QString target = newName + file.mid(oldName.size());
        QFile moving(folder + file);
        // Never over a file that is there: it is another animal's picture.
        if (QFileInfo::exists(folder + target) || !moving.rename(folder + target)) {
            LogError(QStringLiteral("Rename pictures error ") + QString::number(int(moving.error())) +
                     QStringLiteral(" - ") + file + QStringLiteral(" - ") + moving.errorString());
            for (auto undo = done.crbegin(); undo != done.crend(); ++undo)
                QFile::rename(folder + undo->second, folder + undo->first);
            return false;
        }
        done.append({file, target});
    }
    return true;
}

const QString kPictureLabelPrompt =
    QStringLiteral("If you want to you can enter a description below for your picture.\n\n"
                   "Rules: No name needed, just a description - don't use characters [ ] ( ) \\ / : * ? < > | \"");

namespace {

QString slotTag(int slot) { return QLatin1Char('(') + QString::number(slot) + QLatin1Char(')'); }

bool validSlot(int slot) { return slot >= 0 && slot < kPictureSlots; }

void logFileError(const QString& title, const QFile& file)
{
    LogError(title + QString::number(int(file.error())) + QStringLiteral(" - ") + file.errorString());
}

// A picture's file name split at its slot: the name as the file spells it, and what follows the "(n)",
// label and extension.
struct SlotFile {
    QString folder;
    QString namePart;
    QString rest;
};

SlotFile splitSlotFile(const QString& path, const QString& name, int slot)
{
    const QFileInfo info(path);
    const QString fileName = info.fileName();
    return {info.path() + QLatin1Char('/'), fileName.left(name.size()),
            fileName.mid(name.size() + slotTag(slot).size())};
}

bool renameFile(const QString& from, const QString& to)
{
    QFile file(from);
    if (file.rename(to))
        return true;
    logFileError(QStringLiteral("Swap pictures error "), file);
    return false;
}

} // namespace

QString PictureTargetName(const QString& name, int slot, const QString& label, const QString& sourcePath)
{
    QString target = name + slotTag(slot);
    if (!label.isEmpty())
        target += QStringLiteral(" [") + label + QLatin1Char(']');
    return target + sourcePath.right(4);
}

QString PictureFile(const QString& name, int slot)
{
    if (name.isEmpty() || !validSlot(slot))
        return {};
    return Animal().getPictureFileName(name + slotTag(slot));
}

QString PictureLabelFault(const QString& label)
{
    for (const QChar c : QStringLiteral("[]()\\/:*?<>|\""))
        if (label.contains(c))
            return c;
    return {};
}

bool AddPicture(const QString& name, int slot)
{
    if (name.isEmpty() || !validSlot(slot))
        return false;
    const QString folder = PicturesFolder();
    if (!QDir().mkpath(folder)) {
        LogError(QStringLiteral("Add picture error 76 - Path not found ") + folder);
        return false;
    }
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    const QString source = Ui::openFile(kChoosePictureTitle, kPictureFilter, pictures);
    if (source.isEmpty())
        return false;
    QString label = Ui::input(kPictureLabelPrompt, kPictureLabelTitle);
    for (QString fault = PictureLabelFault(label); !fault.isEmpty(); fault = PictureLabelFault(label)) {
        Ui::message(QStringLiteral("A picture's label becomes part of its file name and cannot hold ") + fault +
                        QStringLiteral(".\nPlease leave out the characters [ ] ( ) \\ / : * ? < > | \""),
                    Ui::Buttons::Ok, Ui::Icon::Exclamation, kPictureLabelTitle);
        label = Ui::input(kPictureLabelPrompt, kPictureLabelTitle, label);
        if (label.isEmpty())
            break; // a picture without a label is still a picture
    }

    // The file chosen may be the slot's own.
    const QString old = PictureFile(name, slot);
    if (!old.isEmpty() && QFileInfo(old).canonicalFilePath() == QFileInfo(source).canonicalFilePath())
        return false;
    const QString target = folder + PictureTargetName(name, slot, label, source);
    // The new picture is complete on disk before the old one goes, so a failure loses neither.
    const QString partial = target + QStringLiteral(".part");
    QFile::remove(partial);
    QFile sourceFile(source);
    if (!sourceFile.copy(partial)) {
        logFileError(QStringLiteral("Add picture error "), sourceFile);
        QFile::remove(partial);
        return false;
    }
    if (!old.isEmpty() && old != target) {
        QFile oldFile(old);
        if (!oldFile.remove()) {
            logFileError(QStringLiteral("Add picture error "), oldFile);
            QFile::remove(partial);
            return false;
        }
    }
    // rename(2) replaces a file of the very same name in one step.
    if (std::rename(QFile::encodeName(partial).constData(), QFile::encodeName(target).constData()) != 0) {
        LogError(QStringLiteral("Add picture error - ") + QString::fromLocal8Bit(std::strerror(errno)) +
                 QStringLiteral(" - ") + target);
        QFile::remove(partial);
        return false;
    }
    return true;
}

bool RemovePicture(const QString& name, int slot)
{
    const QString path = PictureFile(name, slot);
    if (path.isEmpty())
        return false;
    QFile file(path);
    if (!file.remove()) {
        logFileError(QStringLiteral("Remove picture error "), file);
        return false;
    }
    return true;
}

bool swapPictures(const QString& name, int slot)
{
    if (slot < 1 || slot >= kPictureSlots)
        return false;
    const QString slotPath = PictureFile(name, slot);
    if (slotPath.isEmpty())
        return false;
    const SlotFile moving = splitSlotFile(slotPath, name, slot);
    const QString newMain = moving.folder + moving.namePart + slotTag(0) + moving.rest;

    const QString mainPath = PictureFile(name, 0);
    if (mainPath.isEmpty())
        return renameFile(slotPath, newMain);

    // Through a name outside the animal's, so that the two never meet under one name.
    const QString temporary = moving.folder + QLatin1Char('t') + moving.namePart + slotTag(0) + moving.rest;
    const SlotFile main = splitSlotFile(mainPath, name, 0);
    const QString newSlot = main.folder + main.namePart + slotTag(slot) + main.rest;
    if (!renameFile(slotPath, temporary))
        return false;
    // A step that fails puts the earlier ones back, so no picture is left under the temporary name.
    if (!renameFile(mainPath, newSlot)) {
        QFile::rename(temporary, slotPath);
        return false;
    }
    if (!renameFile(temporary, newMain)) {
        QFile::rename(newSlot, mainPath);
        QFile::rename(temporary, slotPath);
        return false;
    }
    return true;
}

void ViewPicture(const QString& path)
{
    if (path.isEmpty())
        return;
    if (!QFileInfo(path).isFile()) {
        LogError(QStringLiteral("Open Windows and Fax Viewer Error 53 - File not found: ") + path);
        return;
    }
    Ui::showPathOrSay(path);
}

QString ChangePictureCaption(int slot)
{
    if (slot == 0)
        return QStringLiteral("Change main picture ");
    return QStringLiteral("Change picture ") + QString::number(slot);
}

QString RemovePictureCaption(int slot)
{
    if (slot == 0)
        return QStringLiteral("Remove main picture ");
    return QStringLiteral("Remove picture ") + QString::number(slot);
}

QString SwapPictureCaption(int slot)
{
    if (slot == 0)
        return {};
    return QStringLiteral("Swap picture ") + QString::number(slot) + QStringLiteral(" with pedigree");
}

QString WrapText(const QString& text, int width)
{
    const QString trimmed = text.trimmed();
    QString wrapped;
    qsizetype lineLength = 0;
    qsizetype i = 0;
    while (i < trimmed.size()) {
        const QChar c = trimmed.at(i);
        if (c == QLatin1Char('\r') || c == QLatin1Char('\n')) {
            wrapped += c;
            lineLength = 0;
            ++i;
            continue;
        }
        if (c == QLatin1Char(' ')) {
            // The blank either stays, or becomes the line end when the next word would pass the width.
            qsizetype end = i + 1;
            while (end < trimmed.size() && !QStringView(u" \r\n").contains(trimmed.at(end)))
                ++end;
            const qsizetype word = end - i - 1;
            if (lineLength > 0 && lineLength + 1 + word > width) {
                wrapped += QLatin1Char('\n');
                lineLength = 0;
            } else {
                wrapped += c;
                ++lineLength;
            }
            ++i;
            continue;
        }
        wrapped += c;
        ++lineLength;
        ++i;
    }
    return wrapped;
}

QSize resizePicture(const QSize& picture, const QSize& box)
{
    if (picture.isEmpty() || box.isEmpty())
        return {};
    if (picture.width() <= box.width() && picture.height() <= box.height())
        return picture;
    return picture.scaled(box, Qt::KeepAspectRatio);
}
