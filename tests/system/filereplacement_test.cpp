#include "support/temporaryfolder.h"
#include "system/exception.h"
#include "system/filereplacement.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

namespace {

constexpr uid_t nobody = 65534;

void write(const FileReplacement& replacement, const std::string& bytes)
{
    std::ofstream(replacement.temporaryName()) << bytes;
}

/// Runs `work` in a process of its own, as somebody without rights where this one has all. Gives its
/// status as `waitpid` does.
int inChild(const std::function<void()>& work, bool withoutRights = false)
{
    const pid_t child = fork();
    if (child == 0) {
        if (withoutRights && getuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0)) {
            _exit(2);
        }
        try {
            work();
        } catch (...) {
            _exit(1);
        }
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

struct stat stateOf(const std::string& name)
{
    struct stat state = {};
    stat(name.c_str(), &state);
    return state;
}

} // namespace

TEST(FileReplacement, LeavesTheOldFileUntilItIsCommitted)
{
    const TemporaryFolder folder;
    const std::string name = folder.write("table ü;.data", "old");
    {
        FileReplacement abandoned("f", name);
        write(abandoned, "new");
        EXPECT_EQ(folder.read("table ü;.data"), "old");
    }
    {
        FileReplacement failed("f", name);
        EXPECT_THROW(failed.commit(false), FileWriteError);
    }
    EXPECT_EQ(folder.read("table ü;.data"), "old");
    FileReplacement first("f", name);
    FileReplacement second("f", name);
    for (FileReplacement* replacement : {&first, &second}) {
        const std::string bytes = replacement == &first ? "first" : "second";
        write(*replacement, bytes);
        replacement->commit();
        EXPECT_EQ(folder.read("table ü;.data"), bytes);
    }
    EXPECT_EQ(folder.fileCount(), 1);
}

TEST(FileReplacement, ReplacesTheFileThatALinkNames)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path() / "real");
    folder.write("real/a.txt", "old");
    std::filesystem::create_symlink("real/a.txt", folder.path() / "link.txt");
    FileReplacement replacement("f", folder.file("link.txt"));
    write(replacement, "new");
    replacement.commit();
    EXPECT_EQ(folder.read("real/a.txt"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path() / "link.txt"));
}

TEST(FileReplacement, SaysWhyAFileCannotBeWritten)
{
    const TemporaryFolder folder;
    for (const std::string& name : {folder.file("missing/a.txt"), folder.path().string()}) {
        try {
            FileReplacement replacement("void f()", name);
            ADD_FAILURE() << name;
        } catch (const FileWriteError& error) {
            EXPECT_EQ(error.getWhere(), "void f()");
            EXPECT_EQ(error.getFilename(), name);
            EXPECT_EQ(error.getWhat().find("The file can't be written: "), 0U);
        }
    }
    EXPECT_EQ(folder.fileCount(), 0);
    // A device is written itself. Nothing is committed here: a fault would replace the device.
    EXPECT_EQ(FileReplacement("f", "/dev/null").temporaryName(), "/dev/null");
}

TEST(FileReplacement, KeepsWhatTheFileIsToOthers)
{
    const TemporaryFolder folder;
    const std::string name = folder.write("a.txt", "old");
    chmod(name.c_str(), 0640);
    if (getuid() == 0) {
        ASSERT_EQ(chown(name.c_str(), nobody, nobody), 0);
    }
    const struct stat before = stateOf(name);
    FileReplacement::write("f", name, "new");
    EXPECT_EQ(stateOf(name).st_mode, before.st_mode);
    EXPECT_EQ(stateOf(name).st_uid, before.st_uid);
    EXPECT_EQ(stateOf(name).st_gid, before.st_gid);
    FileReplacement::write("f", folder.file("new.txt"), "new");
    std::ofstream(folder.file("plain.txt")) << "new";
    EXPECT_EQ(stateOf(folder.file("new.txt")).st_mode, stateOf(folder.file("plain.txt")).st_mode);
}

TEST(FileReplacement, WritesAFileInPlaceWhereItsFolderIsClosed)
{
    const TemporaryFolder folder;
    const std::string name = folder.write("a.txt", "the old content");
    std::filesystem::create_hard_link(name, folder.file("b.txt"));
    chmod(name.c_str(), 0666);
    chmod(folder.path().c_str(), 0555);
    const std::string big(3000000, 'x');
    EXPECT_EQ(inChild([&] { FileReplacement::write("f", name, "new"); }, true), 0);
    EXPECT_EQ(folder.read("b.txt"), "new");
    EXPECT_EQ(inChild([&] { FileReplacement::write("f", name, big); }, true), 0);
    EXPECT_EQ(folder.read("b.txt"), big);
    EXPECT_NE(inChild([&] { FileReplacement("f", name).commit(false); }, true), 0);
    EXPECT_EQ(folder.read("b.txt"), big);
    chmod(folder.path().c_str(), 0755);
    EXPECT_EQ(folder.fileCount(), 2);
}

TEST(FileReplacement, LeavesNoTemporaryFilesOfProcessesThatEnd)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("a.txt");
    const auto endBy = [&](int number) {
        return WTERMSIG(inChild([&] {
            FileReplacement::removeAtSignals();
            const FileReplacement unfinished("f", name);
            raise(number);
        }));
    };
    for (const int number : {SIGINT, SIGTERM}) {
        EXPECT_EQ(endBy(number), number);
        EXPECT_EQ(folder.fileCount(), 0);
    }
    EXPECT_EQ(endBy(SIGKILL), SIGKILL);
    ASSERT_EQ(folder.fileCount(), 1);
    const FileReplacement living("f", folder.file("living.txt"));
    EXPECT_EQ(folder.fileCount(), 1);
    EXPECT_EQ(inChild([&] { FileReplacement::write("f", name, "new"); }), 0);
    EXPECT_EQ(folder.fileCount(), 2) << "the file of a living process is left alone";
}
