#include "host/stackplugin.h"

#include "shell/plugin/lmxstackplugininterface.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

QStringList StackPlugin::usualPlaces()
{
    const QDir program(QCoreApplication::applicationDirPath());
    QStringList files;
    for (const char* folder : {".", "../src/shell", "../lib/crenara/plugins"}) {
        files.append(QDir::cleanPath(program.filePath(folder)) + "/libcrenaraplugin.so");
    }
    return files;
}

bool StackPlugin::load(const QStringList& files)
{
    for (const QString& file : files) {
        if (QFileInfo::exists(file)) {
            loader_.setFileName(file);
            plugin_ = qobject_cast<LMXStackPluginInterface*>(loader_.instance());
            if (!plugin_) {
                fault_ = loader_.isLoaded() ? file + ": the file is no plug-in for stacks"
                                            : loader_.errorString();
            }
            return plugin_ != nullptr;
        }
    }
    fault_ = "There is no plug-in " + files.join(", ");
    return false;
}
