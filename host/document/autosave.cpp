#include "host/document/autosave.h"

#include "host/document/lmxrootmediator.h"
#include "stack/stackwriter.h"
#include "system/exception.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>

namespace {

constexpr int everyMinute = 60000;

QString absolute(const QString& file)
{
    return QFileInfo(file).absoluteFilePath();
}

QString besideOf(const QString& document)
{
    const QFileInfo info(absolute(document));
    return info.path() + "/." + info.fileName() + ".autosave";
}

/// For stacks that have no file, or whose folder can't be written.
QString dataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/autosave";
}

/// Of a copy in the data folder: the file that holds the name of its stack file.
QString originFile(const QString& copy)
{
    return copy + ".origin";
}

QString lockFile(const QString& copy)
{
    return copy + ".lock";
}

std::unique_ptr<QLockFile> makeLock(const QString& copy)
{
    auto lock = std::make_unique<QLockFile>(lockFile(copy));
    // It ends with its process, however old it is.
    lock->setStaleLockTime(0);
    return lock;
}

bool isInUse(const QString& copy)
{
    const std::unique_ptr<QLockFile> lock = makeLock(copy);
    return !lock->tryLock(0) && lock->error() == QLockFile::LockFailedError;
}

QString originOf(const QString& copy)
{
    QFile file(originFile(copy));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool writeOrigin(const QString& copy, const QString& document)
{
    QSaveFile file(originFile(copy));
    return file.open(QIODevice::WriteOnly) &&
           file.write((document.isEmpty() ? document : absolute(document)).toUtf8()) >= 0 &&
           file.commit();
}

QList<Autosave::Leftover> leftoversInDataFolder()
{
    QList<Autosave::Leftover> found;
    const QDir folder(dataFolder());
    for (const QFileInfo& info : folder.entryInfoList({"*.sdf"}, QDir::Files)) {
        const QString copy = info.absoluteFilePath();
        if (!isInUse(copy)) {
            found.append({copy, originOf(copy), info.lastModified()});
        }
    }
    return found;
}

void sortLatestFirst(QList<Autosave::Leftover>& leftovers)
{
    std::stable_sort(
        leftovers.begin(), leftovers.end(),
        [](const Autosave::Leftover& a, const Autosave::Leftover& b) { return a.time > b.time; });
}

} // namespace

Autosave::Autosave(LMXRootMediator& mediator, QObject* parent)
    : QObject(parent)
    , mediator_(mediator)
{
    connect(&timer_, &QTimer::timeout, this, &Autosave::keep);
    timer_.start(everyMinute);
}

Autosave::~Autosave() = default;

void Autosave::keep()
{
    const LMXStack* stack = mediator_.stack();
    if (!stack || !stack->isModified() || !changed_) {
        return;
    }
    if (copy_.isEmpty() && !choosePlace()) {
        emit failed("No copy of the changes can be kept: " + dataFolder() + " can't be written");
        return;
    }
    try {
        if (!StackWriter().write(*stack, copy_.toStdString())) {
            emit failed("No copy of the changes can be kept: " + copy_ + " can't be written");
            return;
        }
    } catch (const Exception& error) {
        emit failed("No copy of the changes can be kept: " +
                    QString::fromStdString(error.getWhat()));
        return;
    }
    changed_ = false;
}

bool Autosave::choosePlace()
{
    const QString document = QString::fromStdString(mediator_.stack()->getFilename());
    if (!document.isEmpty() && take(besideOf(document))) {
        return true;
    }
    if (!QDir().mkpath(dataFolder())) {
        return false;
    }
    const QString stem = dataFolder() + QDateTime::currentDateTime().toString("/yyyyMMdd-hhmmss-") +
                         QString::number(QCoreApplication::applicationPid());
    for (int i = 0;; ++i) {
        const QString copy = QString("%1-%2.sdf").arg(stem).arg(i);
        if (!QFileInfo::exists(copy)) {
            return writeOrigin(copy, document) && take(copy);
        }
    }
}

bool Autosave::take(const QString& copy)
{
    std::unique_ptr<QLockFile> lock = makeLock(copy);
    if (!lock->tryLock(0)) {
        return false;
    }
    lock_ = std::move(lock);
    copy_ = copy;
    return true;
}

void Autosave::drop()
{
    if (!copy_.isEmpty()) {
        QFile::remove(copy_);
        QFile::remove(originFile(copy_));
        copy_.clear();
        lock_.reset();
    }
}

std::optional<Autosave::Leftover> Autosave::leftoverOf(const QString& document)
{
    QList<Leftover> found;
    const QFileInfo beside(besideOf(document));
    if (beside.isFile() && !isInUse(beside.filePath())) {
        found.append({beside.filePath(), absolute(document), beside.lastModified()});
    }
    for (const Leftover& leftover : leftoversInDataFolder()) {
        if (leftover.document == absolute(document)) {
            found.append(leftover);
        }
    }
    sortLatestFirst(found);
    return found.isEmpty() ? std::nullopt : std::optional<Leftover>(found.first());
}

QList<Autosave::Leftover> Autosave::leftovers(const QStringList& documents)
{
    QList<Leftover> found;
    for (const QString& document : documents) {
        if (const std::optional<Leftover> leftover = leftoverOf(document)) {
            found.append(*leftover);
        }
    }
    for (const Leftover& leftover : leftoversInDataFolder()) {
        if (leftover.document.isEmpty()) {
            found.append(leftover);
        }
    }
    sortLatestFirst(found);
    return found;
}

void Autosave::discard(const Leftover& leftover)
{
    QFile::remove(leftover.copy);
    QFile::remove(originFile(leftover.copy));
    QFile::remove(lockFile(leftover.copy));
}

void Autosave::adopt(const Leftover& leftover)
{
    drop();
    take(leftover.copy);
    changed_ = false;
}

void Autosave::stackModifyEvent(LMXStackModifyEvent& event)
{
    if (&event.getStack() != mediator_.stack()) {
        return;
    }
    changed_ = event.getStack().isModified();
    if (!changed_) {
        drop();
    }
}

void Autosave::stackFileNameEvent(LMXStackFileNameEvent& event)
{
    if (&event.getStack() == mediator_.stack()) {
        drop();
        changed_ = event.getStack().isModified();
    }
}

void Autosave::stackCloseEvent(LMXStackCloseEvent& event)
{
    if (&event.getStack() == mediator_.stack()) {
        drop();
        changed_ = false;
    }
}
