#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include <string>
#include <vector>

/// The help text was asked for: it goes to the standard output, exit status 0.
struct HelpRequest
{
    std::string text;
};

/// The arguments and options of one subcommand. Declare first, parse, then ask; what the user gave
/// wrong raises `UsageFailure`.
class CommandLine
{
public:
    /// `arguments` names the positional arguments, as the help text shows them.
    CommandLine(const QString& command, const QString& arguments, const QString& description);

    void addFlag(const QString& name, const QString& description);

    /// An option with a value; an empty `defaultText` means that there is none.
    void addOption(const QString& name,
                   const QString& description,
                   const QString& valueName,
                   const QString& defaultText = QString());

    bool declares(const QString& name) const { return declared_.contains(name); }

    /// Takes from `least` to `most` positional arguments; `most` -1 is without limit. Throws
    /// `HelpRequest` if the user asked for it.
    void parse(const QStringList& arguments, int least, int most);

    /// False also for an option that the subcommand does not declare.
    bool isSet(const QString& name) const { return parser_.optionNames().contains(name); }

    /// The value given, or the default.
    QString text(const QString& name) const { return parser_.value(name); }

    /// As a path or other text for the layers below, in UTF-8.
    std::string bytes(const QString& name) const { return text(name).toStdString(); }

    /// The value of an option that has to be given.
    std::string required(const QString& name) const;

    int integer(const QString& name, int lowest, int highest) const;

    /// Finite, with a decimal point whatever the locale.
    float number(const QString& name, double lowest, double highest) const;

    /// Finite and above 0.
    float positive(const QString& name) const;

    /// The place of the value among the choices.
    int choice(const QString& name, const QStringList& choices) const;

    int argumentCount() const { return static_cast<int>(parser_.positionalArguments().size()); }

    std::string argument(int i) const { return parser_.positionalArguments().at(i).toStdString(); }

    std::vector<std::string> argumentsFrom(int first) const;

private:
    double real(const QString& name) const;
    std::string helpText() const;

    QString command_;
    QString arguments_;
    QStringList declared_;
    QCommandLineParser parser_;
};
