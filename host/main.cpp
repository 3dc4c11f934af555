// The program crenara-desk: holds stacks, shows them and starts the plug-in on them.

#include "host/deskapplication.h"
#include "host/deskwindow.h"
#include "host/document/lmxrootmediator.h"
#include "host/stackplugin.h"

#include <QCommandLineParser>
#include <QIcon>
#include <QTextCodec>
#include <QTimer>

#include <cstring>
#include <iostream>

namespace {

/// Help and version need no display.
bool asksForText(int argc, char* argv[])
{
    for (int i = 1; i < argc; ++i) {
        for (const char* option : {"--help", "-h", "--version", "-v", "--help-all"}) {
            if (std::strcmp(argv[i], option) == 0) {
                return true;
            }
        }
    }
    return false;
}

/// Takes an option out of the arguments before Qt sees them, which has one of the same name. Empty
/// if it is not there.
QString takeValue(const QString& option, int& argc, char* argv[])
{
    QString value;
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        const QString argument = QString::fromUtf8(argv[i]);
        if (argument == option && i + 1 < argc) {
            value = QString::fromUtf8(argv[++i]);
        } else if (argument.startsWith(option + "=")) {
            value = argument.mid(option.size() + 1);
        } else {
            argv[kept++] = argv[i];
        }
    }
    argc = kept;
    argv[argc] = nullptr;
    return value;
}

void declare(QCommandLineParser& parser)
{
    QCoreApplication::setApplicationName("crenara-desk");
    QCoreApplication::setApplicationVersion(CRENARA_VERSION);
    parser.setApplicationDescription("Shows stacks of leaf photographs and starts the plug-in.");
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption(
        {"plugin", "The plug-in to load, in place of the one of this version.", "PATH"});
    parser.addPositionalArgument("FILES", "A stack file, or photographs.", "[FILES...]");
}

} // namespace

int main(int argc, char* argv[])
{
    QCommandLineParser parser;
    declare(parser);
    if (asksForText(argc, argv)) {
        const QCoreApplication application(argc, argv);
        parser.process(application);
    }
    const QString named = takeValue("--plugin", argc, argv);
    const DeskApplication application(argc, argv);
    // The desktop finds icon and file types by these names.
    QGuiApplication::setDesktopFileName("crenara-desk");
    QGuiApplication::setWindowIcon(QIcon::fromTheme("crenara", QIcon(":/desk/crenara.png")));
    // File names are bytes, which all layers take as UTF-8, whatever the locale says.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    if (!parser.parse(QCoreApplication::arguments())) {
        std::cerr << "crenara-desk: " << parser.errorText().toStdString() << std::endl;
        return 2;
    }

    StackPlugin plugin;
    if (!plugin.load(named.isEmpty() ? StackPlugin::usualPlaces() : QStringList(named))) {
        std::cerr << "crenara-desk: " << plugin.getFault().toStdString() << std::endl;
        if (!named.isEmpty()) {
            return 1;
        }
    }
    LMXRootMediator mediator;
    DeskWindow window(mediator, plugin);
    QObject::connect(&window, &DeskWindow::closed, &application, &QCoreApplication::quit);
    window.show();
    if (!parser.positionalArguments().isEmpty()) {
        // From the event loop, where the application tells what can't be opened.
        QTimer::singleShot(0, &window, [&] { window.openFiles(parser.positionalArguments()); });
    } else {
        QTimer::singleShot(0, &window, &DeskWindow::offerLeftovers);
    }
    return QApplication::exec();
}
