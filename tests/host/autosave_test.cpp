// What outlives a crash: the copy of unsaved changes, and the stack file itself.

#include "host/document/autosave.h"
#include "host/document/documentcontrol.h"
#include "host/documenttest.h"
#include "support/filesizelimit.h"
#include "support/widgets.h"
#include "system/exception.h"

#include <QSignalSpy>
#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>

namespace {

class AutosaveTest : public DocumentTest
{
protected:
    /// A desk with changes that dies after it kept a copy of them. It has its document as this file.
    void crash(const std::string& filename, int dx)
    {
        int ready[2];
        ASSERT_EQ(pipe(ready), 0);
        const pid_t desk = fork();
        if (desk == 0) {
            Autosave autosave(mediator);
            stack().setFilename(filename);
            moveContour(dx);
            autosave.keep();
            const char kept = autosave.copy().isEmpty() ? 'n' : 'y';
            const bool told = write(ready[1], &kept, 1) == 1;
            pause();
            _exit(told ? 0 : 1);
        }
        char kept = ' ';
        EXPECT_EQ(read(ready[0], &kept, 1), 1);
        EXPECT_EQ(kept, 'y');
        close(ready[0]);
        close(ready[1]);
        QStringList documents(QString::fromStdString(filename));
        documents.removeAll("");
        const int before = Autosave::leftovers(documents).size(); // the other desk still runs
        kill(desk, SIGKILL);
        waitpid(desk, nullptr, 0);
        EXPECT_EQ(Autosave::leftovers(documents).size(), before + 1);
    }
};

} // namespace

TEST_F(AutosaveTest, KeepsACopyWhileThereAreChangesThatAreNotSaved)
{
    Autosave autosave(mediator);
    autosave.keep();
    EXPECT_EQ(autosave.copy(), "");
    const std::string saved = folder.read("leaf.sdf");
    moveContour(3);
    autosave.setInterval(1);
    for (int i = 0; i < 500 && autosave.copy().isEmpty(); ++i) {
        QTest::qWait(2);
    }
    ASSERT_EQ(autosave.copy(), QString::fromStdString(folder.file(".leaf.sdf.autosave")));
    EXPECT_EQ(folder.read("leaf.sdf"), saved);
    EXPECT_TRUE(stack().isModified());

    // It is written anew for new changes alone.
    autosave.setInterval(1000000);
    const std::string first = folder.read(".leaf.sdf.autosave");
    folder.write(".leaf.sdf.autosave", "");
    autosave.keep();
    EXPECT_EQ(folder.read(".leaf.sdf.autosave"), "");
    moveContour(-3);
    moveContour(3);
    autosave.keep();
    EXPECT_EQ(folder.read(".leaf.sdf.autosave"), first);

    ASSERT_TRUE(stack().write(path()));
    EXPECT_EQ(folder.read("leaf.sdf"), first);
    EXPECT_EQ(folder.fileCount(), 2) << "the copy and its lock are gone";
    moveContour(1);
    autosave.keep();
    EXPECT_EQ(folder.fileCount(), 4);
    mediator.close();
    EXPECT_EQ(folder.fileCount(), 2);
}

TEST_F(AutosaveTest, WhatACrashLeftIsOfferedWhenTheFileIsOpened)
{
    crash(path(), 5);
    moveContour(5);
    const std::string changed = models();
    stack().setModified(false);
    QWidget window;
    DocumentControl control(mediator, window);
    Modals modals;
    modals.setAnswer(QMessageBox::Cancel);
    mediator.close();
    control.openFiles({document()});
    EXPECT_EQ(mediator.stack(), nullptr);
    EXPECT_TRUE(modals.boxes().first().contains("leaf.sdf was not closed"));

    modals.setAnswer(QMessageBox::Yes);
    control.openFiles({document()});
    ASSERT_NE(mediator.stack(), nullptr);
    EXPECT_EQ(models(), changed);
    EXPECT_TRUE(stack().isModified());
    EXPECT_EQ(stack().getFilename(), path());
    EXPECT_EQ(folder.fileCount(), 4) << "and it stays until they are saved";
    EXPECT_TRUE(control.save());
    EXPECT_EQ(folder.fileCount(), 2);
    control.openFiles({document()});
    EXPECT_EQ(models(), changed);
    EXPECT_FALSE(stack().isModified());
    EXPECT_EQ(modals.boxes().size(), 2) << "nothing is offered any more";
}

TEST_F(AutosaveTest, ChangesWithoutAFileOfTheirOwnAreKeptInTheFolderOfTheUser)
{
    crash("", 5);
    crash("/proc/none.sdf", 9); // a folder in which nothing can be written
    EXPECT_EQ(folder.fileCount(), 2);
    const auto leftover = Autosave::leftoverOf("/proc/none.sdf");
    ASSERT_TRUE(leftover);
    EXPECT_EQ(leftover->document, "/proc/none.sdf");
    Autosave::discard(*leftover);
    EXPECT_FALSE(Autosave::leftoverOf("/proc/none.sdf"));

    moveContour(5);
    const std::string changed = models();
    mediator.close();
    QWidget window;
    DocumentControl control(mediator, window);
    Modals modals;
    modals.setAnswer(QMessageBox::Yes);
    control.offerLeftovers();
    ASSERT_NE(mediator.stack(), nullptr);
    EXPECT_EQ(models(), changed);
    EXPECT_EQ(stack().getFilename(), "");
    EXPECT_EQ(stack().getSlice(0).width(), 540) << "the photograph is found from there";
    mediator.close();
    EXPECT_TRUE(Autosave::leftovers({}).isEmpty());
}

TEST_F(AutosaveTest, AFullDiskIsToldAndTheWorkStaysInMemory)
{
    QWidget window;
    DocumentControl control(mediator, window);
    QSignalSpy told(&control, &DocumentControl::told);
    moveContour(4);
    const std::string saved = folder.read("leaf.sdf");
    const std::string changed = models();
    {
        const FileSizeLimit full(1000);
        EXPECT_THROW(control.save(), FileWriteError);
        control.autosave().keep();
    }
    ASSERT_EQ(told.count(), 1);
    EXPECT_TRUE(told.first().first().toString().startsWith("No copy of the changes can be kept"));
    EXPECT_EQ(folder.read("leaf.sdf"), saved);
    EXPECT_EQ(models(), changed);
    EXPECT_TRUE(stack().isModified());
    control.autosave().keep();
    EXPECT_EQ(folder.fileCount(), 4) << "once there is room again";
    EXPECT_TRUE(control.save());
    EXPECT_NE(folder.read("leaf.sdf"), saved);
    EXPECT_EQ(folder.fileCount(), 2);
}

TEST_F(AutosaveTest, AStackFileIsWholeWheneverTheProcessIsKilled)
{
    const std::string versions[] = {folder.read("leaf.sdf"), [this] {
                                        moveContour(1);
                                        EXPECT_TRUE(stack().write(path()));
                                        return folder.read("leaf.sdf");
                                    }()};
    std::mt19937 random(1);
    int seen[2] = {};
    for (int i = 0; i < 200; ++i) {
        const pid_t writer = fork();
        if (writer == 0) {
            moveContour(i % 2 == 0 ? 0
                                   : -1); // so that each version is the first one half of the time
            for (int dx = i % 2 == 0 ? -1 : 1;; dx = -dx) {
                moveContour(dx);
                stack().write(path());
            }
        }
        usleep(random() % 5000);
        kill(writer, SIGKILL);
        waitpid(writer, nullptr, 0);
        const std::string content = folder.read("leaf.sdf");
        ASSERT_TRUE(content == versions[0] || content == versions[1]) << "kill " << i;
        ++seen[content == versions[1]];
    }
    EXPECT_GT(seen[0], 20);
    EXPECT_GT(seen[1], 20);
}
