// The command crenara: the stages of the workflow for many leaves, scripts and clusters, without a
// display.

#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/report.h"
#include "system/exception.h"
#include "system/filereplacement.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QTextCodec>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <iostream>
#include <memory>
#include <new>

namespace {

enum ExitStatus { Done = 0, NotDone = 1, WrongUsage = 2 };

void printUsage(std::ostream& stream)
{
    stream << "Usage: crenara SUBCOMMAND [ARGUMENTS]\n"
              "Measures the shape of leaves on photographs.\n\nSubcommands:\n";
    for (const Command& command : commands()) {
        const std::string name = command.name;
        stream << "  " << name << std::string(12 - name.size(), ' ') << command.summary << "\n";
    }
    stream << "\n'crenara SUBCOMMAND --help' tells more, 'crenara --version' the version.\n"
              "Exit status: 0 done, 1 something could not be done, 2 wrong usage.\n";
}

const Command* findCommand(const char* name)
{
    for (const Command& command : commands()) {
        if (std::strcmp(command.name, name) == 0) {
            return &command;
        }
    }
    return nullptr;
}

std::string describe(const Exception& error)
{
    const auto* file = dynamic_cast<const FileError*>(&error);
    return (file && !file->getFilename().empty() ? file->getFilename() + ": " : "") +
           error.getWhat();
}

int runCommand(const Command& command, const QStringList& arguments)
{
    Report report;
    try {
        return command.run(arguments, report);
    } catch (const HelpRequest& help) {
        std::cout << help.text;
        return Done;
    } catch (const UsageFailure& failure) {
        report.fault(std::string(command.name) + ": " + failure.what() + "\nSee 'crenara " +
                     command.name + " --help'.");
        return WrongUsage;
    } catch (const Exception& error) {
        report.fault(describe(error));
    } catch (const std::bad_alloc&) {
        report.fault("there is not enough memory");
    } catch (const std::exception& error) {
        report.fault(error.what());
    }
    return NotDone;
}

/// The status, or that of work not done where something that was said could not be written.
int statusOf(int status)
{
    errno = 0;
    std::cout.flush();
    if (!std::cout) {
        const std::string reason = errno == 0 ? "" : std::string(": ") + std::strerror(errno);
        std::cerr << "crenara: the standard output can't be written" << reason << std::endl;
    }
    return status == Done && !(std::cout && std::cerr) ? NotDone : status;
}

/// The subcommand writes names on pictures.
bool drawsText(const char* subcommand)
{
    for (const char* name : {"picture", "run", "leaves"}) {
        if (std::strcmp(subcommand, name) == 0) {
            return true;
        }
    }
    return false;
}

/// Lets nothing but errors of the start through: on a cluster there is no folder for the sockets of a
/// session, which none of ours needs.
void dropWarnings(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtCriticalMsg || type == QtFatalMsg) {
        std::cerr << text.toStdString() << std::endl;
    }
}

int run(int argc, char* argv[])
{
    if (argc < 2) {
        printUsage(std::cerr);
        return WrongUsage;
    }
    const std::string first = argv[1];
    if (first == "--help" || first == "-h") {
        printUsage(std::cout);
        return Done;
    }
    if (first == "--version") {
        std::cout << "crenara " << CRENARA_VERSION << "\n";
        return Done;
    }
    const Command* command = findCommand(argv[1]);
    if (!command) {
        std::cerr << "crenara: there is no subcommand '" << first << "'\n";
        printUsage(std::cerr);
        return WrongUsage;
    }
    QStringList arguments;
    for (int i = 2; i < argc; ++i) {
        arguments.append(QString::fromUtf8(argv[i]));
    }
    return runCommand(*command, arguments);
}

} // namespace

int main(int argc, char* argv[])
{
    std::unique_ptr<const QCoreApplication> application;
    if (argc > 1 && drawsText(argv[1])) {
        // Names under pictures need fonts, but no display.
        qputenv("QT_QPA_PLATFORM", "offscreen");
        const QtMessageHandler former = qInstallMessageHandler(dropWarnings);
        application = std::make_unique<const QGuiApplication>(argc, argv);
        qInstallMessageHandler(former);
    } else {
        application = std::make_unique<const QCoreApplication>(argc, argv);
    }
    // File names are bytes, which all layers take as UTF-8, whatever the locale says.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    // A file beyond the limit of the process is then an error like a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    // Likewise a reader of the output that has gone.
    std::signal(SIGPIPE, SIG_IGN);
    FileReplacement::removeAtSignals();
    return statusOf(run(argc, argv));
}
