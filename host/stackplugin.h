#pragma once

#include <QPluginLoader>
#include <QString>
#include <QStringList>

class LMXStackPluginInterface;

/// A plug-in that works on stacks, as this program finds and loads it. It stays loaded until the
/// program ends: its windows are nobody's to close.
class StackPlugin
{
public:
    /// Where the plug-in of this version may lie: beside the program, in the tree it was built in,
    /// and where it is installed.
    static QStringList usualPlaces();

    /// Loads the first file that exists. False, with a reason in `getFault`, if there is none or if
    /// it is no plug-in for stacks.
    bool load(const QStringList& files);

    /// Null unless loaded.
    LMXStackPluginInterface* get() const { return plugin_; }

    const QString& getFault() const { return fault_; }

private:
    QPluginLoader loader_;
    LMXStackPluginInterface* plugin_ = nullptr;
    QString fault_;
};
