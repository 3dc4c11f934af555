#include "host/deskapplication.h"

#include "system/exception.h"

#include <QMessageBox>

#include <exception>

namespace {

QString describe(const Exception& error)
{
    const QString what = QString::fromStdString(error.getWhat());
    const auto* file = dynamic_cast<const FileError*>(&error);
    return file && !file->getFilename().empty()
               ? QString::fromStdString(file->getFilename()) + ": " + what
               : what;
}

void tell(const QString& text)
{
    QMessageBox::critical(QApplication::activeWindow(), QApplication::applicationDisplayName(),
                          text);
}

} // namespace

DeskApplication::DeskApplication(int& argc, char** argv)
    : QApplication(argc, argv)
{
    setApplicationDisplayName("Crenara desk");
}

bool DeskApplication::notify(QObject* receiver, QEvent* event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const Exception& error) {
        tell(describe(error));
    } catch (const std::exception& error) {
        tell(QString::fromUtf8(error.what()));
    } catch (...) {
        tell("An error of unknown kind ended the last action");
    }
    return false;
}
