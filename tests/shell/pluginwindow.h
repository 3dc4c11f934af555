#pragma once

#include "host/stackplugin.h"
#include "shell/plugin/lmxstackplugininterface.h"
#include "support/widgets.h"

#include <QListWidget>
#include <QProcess>
#include <QStackedWidget>
#include <QTest>

/// The plug-in as a host sees it: one instance for the whole process.
inline LMXStackPluginInterface& loadedPlugin()
{
    static StackPlugin plugin;
    if (!plugin.get() && !plugin.load({PLUGIN_FILE})) {
        throw std::runtime_error(plugin.getFault().toStdString());
    }
    return *plugin.get();
}

/// The workflow windows that are open; their class is the plug-in's own.
inline QList<QWidget*> workflowWindows()
{
    QList<QWidget*> found;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (QString(widget->metaObject()->className()) == "CrenaraWindow") {
            found.append(widget);
        }
    }
    return found;
}

/// Runs the command to its good end.
inline void crenara(const QStringList& arguments)
{
    QProcess process;
    process.start(COMMAND_FILE, arguments);
    EXPECT_TRUE(process.waitForFinished(120000));
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
}

/// A workflow window on a stack, opened by the plug-in and driven by clicks.
class PluginWindow
{
public:
    explicit PluginWindow(LMXStack& stack)
    {
        const QList<QWidget*> before = workflowWindows();
        loadedPlugin().setStack(stack);
        loadedPlugin().run();
        for (QWidget* window : workflowWindows()) {
            if (!before.contains(window)) {
                window_ = window;
            }
        }
        if (!window_) {
            throw std::runtime_error("no window was opened");
        }
        window_->activateWindow();
        if (!QTest::qWaitForWindowActive(window_)) {
            throw std::runtime_error("the window does not become active");
        }
    }

    ~PluginWindow() { delete window_; }

    PluginWindow(const PluginWindow&) = delete;
    PluginWindow& operator=(const PluginWindow&) = delete;

    QWidget& widget() { return *window_; }

    QListWidget& rows() { return *window_->findChild<QListWidget*>(); }

    /// The page on show.
    QWidget& page() { return *window_->findChild<QStackedWidget*>()->currentWidget(); }

    void clickRow(int row)
    {
        QListWidgetItem* item = rows().item(row);
        rows().scrollToItem(item);
        QTest::mouseClick(rows().viewport(), Qt::LeftButton, Qt::NoModifier,
                          rows().visualItemRect(item).center());
    }

    void clickButton(const QString& text)
    {
        QTest::mouseClick(&withText<QPushButton>(page(), text), Qt::LeftButton);
    }

    /// Goes to a row and clicks "&Process".
    void process(int row)
    {
        clickRow(row);
        clickButton("&Process");
    }

    /// Closes the dialog for a new project: all rows are open then.
    void openRows()
    {
        const Modals modals({cancelDialog});
        clickButton("New Project");
    }

private:
    QWidget* window_ = nullptr;
};
