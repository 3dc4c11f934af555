#include "cli/commandline.h"

#include "cli/failure.h"

#include <cmath>
#include <limits>

namespace {

[[noreturn]] void refuse(const QString& text)
{
    throw UsageFailure(text.toStdString());
}

QString shown(double value)
{
    return QString::number(value, 'g', 7);
}

} // namespace

CommandLine::CommandLine(const QString& command,
                         const QString& arguments,
                         const QString& description)
    : command_(command)
    , arguments_(arguments)
{
    parser_.setApplicationDescription(description);
    parser_.addOption(QCommandLineOption({"h", "help"}, "Shows this help."));
    addFlag("quiet", "Shows no progress.");
}

void CommandLine::addFlag(const QString& name, const QString& description)
{
    declared_.append(name);
    parser_.addOption(QCommandLineOption(name, description));
}

void CommandLine::addOption(const QString& name,
                            const QString& description,
                            const QString& valueName,
                            const QString& defaultText)
{
    declared_.append(name);
    parser_.addOption(QCommandLineOption(
        name, defaultText.isEmpty() ? description : description + " (" + defaultText + ")",
        valueName, defaultText));
}

void CommandLine::parse(const QStringList& arguments, int least, int most)
{
    if (!parser_.parse(QStringList("crenara") + arguments)) {
        refuse(parser_.errorText());
    }
    if (parser_.isSet("help")) {
        throw HelpRequest{helpText()};
    }
    if (argumentCount() < least) {
        refuse("too few arguments, expected: " + arguments_);
    }
    if (most >= 0 && argumentCount() > most) {
        refuse("unexpected argument '" + parser_.positionalArguments().at(most) + "'");
    }
}

std::string CommandLine::helpText() const
{
    // The parser does not know the subcommand: its first line is replaced.
    const QString text = parser_.helpText();
    return ("Usage: crenara " + command_ + " " + arguments_ + " [options]" +
            text.mid(text.indexOf('\n')))
        .toStdString();
}

std::string CommandLine::required(const QString& name) const
{
    if (text(name).isEmpty()) {
        refuse("option '" + name + "' is missing");
    }
    return bytes(name);
}

int CommandLine::integer(const QString& name, int lowest, int highest) const
{
    bool isInteger = false;
    const int value = text(name).toInt(&isInteger);
    if (!isInteger || value < lowest || value > highest) {
        refuse(QString("option '%1' needs an integer from %2 to %3, not '%4'")
                   .arg(name)
                   .arg(lowest)
                   .arg(highest)
                   .arg(text(name)));
    }
    return value;
}

double CommandLine::real(const QString& name) const
{
    bool isNumber = false;
    const double value = text(name).toDouble(&isNumber);
    return isNumber ? value : std::numeric_limits<double>::quiet_NaN();
}

float CommandLine::number(const QString& name, double lowest, double highest) const
{
    const double value = real(name);
    if (!(value >= lowest && value <= highest)) {
        refuse(QString("option '%1' needs a number from %2 to %3, not '%4'")
                   .arg(name, shown(lowest), shown(highest), text(name)));
    }
    return static_cast<float>(value);
}

float CommandLine::positive(const QString& name) const
{
    const auto value = static_cast<float>(real(name));
    if (!(value > 0.0F) || !std::isfinite(value)) {
        refuse(QString("option '%1' needs a number above 0, not '%2'").arg(name, text(name)));
    }
    return value;
}

int CommandLine::choice(const QString& name, const QStringList& choices) const
{
    const int place = choices.indexOf(text(name));
    if (place < 0) {
        refuse(QString("option '%1' needs one of %2, not '%3'")
                   .arg(name, choices.join(", "), text(name)));
    }
    return place;
}

std::vector<std::string> CommandLine::argumentsFrom(int first) const
{
    std::vector<std::string> texts;
    for (int i = first; i < argumentCount(); ++i) {
        texts.push_back(argument(i));
    }
    return texts;
}
