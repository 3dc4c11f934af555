// Makes the user's guide: pictures, and the Markdown form of its HTML. Called by scripts/guide.

#include "guide/figures.h"
#include "guide/guidemarkdown.h"
#include "system/exception.h"

#include <QApplication>
#include <QFile>
#include <QSaveFile>

#include <iostream>

namespace {

const char* const usage = "usage: crenara-guide pictures STACKS OUTDIR\n"
                          "       crenara-guide help OUTDIR\n"
                          "       crenara-guide markdown INDEX.html OUT.md PICTURES\n";

void write(const QString& path, const QByteArray& bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        raiseFile<FileWriteError>("void write(const QString&, const QByteArray&)",
                                  file.errorString().toStdString(), path.toStdString());
    }
}

QByteArray read(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        raiseFile<FileReadError>("QByteArray read(const QString&)",
                                 file.errorString().toStdString(), path.toStdString());
    }
    return file.readAll();
}

void save(const Figures& figures, const QString& folder)
{
    for (auto figure = figures.begin(); figure != figures.end(); ++figure) {
        const QString path = folder + "/" + figure.key();
        if (!figure.value().save(path)) {
            raiseFile<FileWriteError>("void save(const Figures&, const QString&)",
                                      "The picture can't be written", path.toStdString());
        }
    }
}

void run(const QStringList& arguments)
{
    Figures figures;
    if (arguments.size() == 4 && arguments[1] == "pictures") {
        addLeafFigures(figures, arguments[2]);
        addMeasureFigures(figures, arguments[2]);
        addWindowPictures(figures, arguments[2]);
        addDeskPicture(figures, arguments[2]);
        save(figures, arguments[3]);
    } else if (arguments.size() == 3 && arguments[1] == "help") {
        addHelpPictures(figures);
        save(figures, arguments[2]);
    } else if (arguments.size() == 5 && arguments[1] == "markdown") {
        write(arguments[3], guideMarkdown(read(arguments[2]), arguments[4]).toUtf8());
    } else {
        raise<UsageError>("void run(const QStringList&)", usage);
    }
}

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    Q_INIT_RESOURCE(crenaraconfig);
    try {
        run(QCoreApplication::arguments());
    } catch (const FileError& error) {
        std::cerr << "crenara-guide: " << error.getFilename() << ": " << error.getWhat()
                  << std::endl;
        return 1;
    } catch (const Exception& error) {
        std::cerr << "crenara-guide: " << error.getWhat() << std::endl;
        return 1;
    }
    return 0;
}
