// The contract between the plug-in file and its host.

#include "host/deskapplication.h"
#include "host/document/lmxrootmediator.h"
#include "interface/lmxstack.h"
#include "shell/pluginwindow.h"
#include "support/leaf.h"
#include "support/temporaryfolder.h"
#include "system/progressmonitor.h"
#include "system/progresssubject.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>

namespace {

const ::testing::Environment* const environment = addApplication<DeskApplication>();

QObject& instance()
{
    loadedPlugin();
    static QPluginLoader loader(PLUGIN_FILE);
    return *loader.instance();
}

} // namespace

TEST(CrenaraPlugin, HasItsNameAndCastsToItsInterfaceByBothNames)
{
    EXPECT_EQ(loadedPlugin().getPluginName(), "Crenara 1.16");
    QObject& object = instance();
    void* const interface = object.qt_metacast("LMXStackPluginInterface");
    EXPECT_EQ(object.qt_metacast("CrenaraPlugin"), static_cast<void*>(&object));
    EXPECT_EQ(interface, static_cast<void*>(&loadedPlugin()));
    EXPECT_EQ(object.qt_metacast("org.crenara.lamelis.LMXStackPluginInterface/1.0"), interface);
    EXPECT_NE(interface, static_cast<void*>(&object));
    EXPECT_EQ(object.qt_metacast("QObject"), static_cast<void*>(&object));
    EXPECT_EQ(object.qt_metacast("lamelis.plugins.LMXStackPluginInterface"), nullptr);

    // The third base: it takes monitors.
    void* const subject = object.qt_metacast("ProgressSubject");
    ASSERT_NE(subject, nullptr);
    EXPECT_NE(subject, interface);
    ProgressMonitor monitor;
    static_cast<ProgressSubject*>(subject)->addMonitor(monitor);
    static_cast<ProgressSubject*>(subject)->removeMonitor(monitor);
}

TEST(CrenaraPlugin, StoresTheMetadataThatTheHostReads)
{
    const QPluginLoader loader(PLUGIN_FILE);
    const QJsonObject data = loader.metaData();
    EXPECT_EQ(data["IID"].toString(), "lamelis.plugins.LMXStackPluginInterface");
    EXPECT_EQ(data["className"].toString(), "CrenaraPlugin");
    EXPECT_EQ(data["MetaData"].toObject(), (QJsonObject{{"Keys", QJsonArray{"crenaraplugin"}}}));

    QFile file(PLUGIN_FILE);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains(QByteArray("QTMETADATA !\0\5\17\0", 16)));
}

TEST(CrenaraPlugin, NeedsNoLibraryBesidesTiffAndQt)
{
    QProcess readelf;
    readelf.start("readelf", {"-d", PLUGIN_FILE});
    ASSERT_TRUE(readelf.waitForFinished());
    const QStringList allowed = {"libtiff", "libQt5Widgets", "libQt5Gui", "libQt5Core",
                                 // of the compiler and its sanitizers
                                 "libstdc++", "libm", "libgcc_s", "libc", "ld-linux-x86-64",
                                 "libasan", "libubsan", "libpthread"};
    int needed = 0;
    for (const QString& line : QString(readelf.readAllStandardOutput()).split('\n')) {
        if (line.contains("(NEEDED)")) {
            const QString library = line.section('[', 1).section(".so", 0, 0);
            EXPECT_TRUE(allowed.contains(library)) << line.toStdString();
            ++needed;
        }
    }
    EXPECT_GE(needed, 5);
}

TEST(CrenaraPlugin, OpensNothingWithoutAStack)
{
    {
        LMXStack gone;
        loadedPlugin().setStack(gone);
    }
    Modals modals;
    loadedPlugin().run();
    EXPECT_EQ(modals.boxes(), QStringList("Crenara 1.16: There is no stack to work on"));
    EXPECT_TRUE(workflowWindows().isEmpty());
}

TEST(CrenaraPlugin, OpensAFurtherWindowAtEachRun)
{
    LMXStack stack;
    stack.setName("s");
    stack.setFilename("/d/s.sdf");
    LMXRootMediator mediator;
    loadedPlugin().setMediator(mediator);
    PluginWindow first(stack);
    PluginWindow second(stack);
    EXPECT_EQ(workflowWindows().size(), 2);
    EXPECT_EQ(first.widget().windowTitle().toStdString(), "Crenara : s /d/s.sdf");
    EXPECT_FALSE(second.widget().isModal());

    // What one window opens stays closed in the other.
    first.openRows();
    EXPECT_TRUE(first.rows().item(3)->flags() & Qt::ItemIsEnabled);
    EXPECT_EQ(second.rows().item(3)->flags(), Qt::NoItemFlags);
    withText<QPushButton>(first.widget(), "&Quit").click();
    EXPECT_FALSE(first.widget().isVisible());
    EXPECT_TRUE(second.widget().isVisible());
}

TEST(CrenaraPlugin, ClosesThePagesOfAStackThatIsDestroyed)
{
    auto stack = std::make_unique<LMXStack>();
    LMXStack other;
    other.setName("other");
    PluginWindow window(*stack);
    PluginWindow bystander(other);
    window.openRows();
    stack.reset();
    EXPECT_FALSE(window.page().isEnabled());
    EXPECT_FALSE(window.rows().isEnabled());
    EXPECT_TRUE(window.widget().windowTitle().contains("closed"));
    EXPECT_TRUE(bystander.page().isEnabled());
    EXPECT_EQ(bystander.widget().windowTitle(), "Crenara : other ");
}
