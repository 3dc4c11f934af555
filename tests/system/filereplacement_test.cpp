#include "support/temporaryfolder.h"
#include "system/exception.h"
#include "system/filereplacement.h"

#include <gtest/gtest.h>

namespace {

void write(const FileReplacement& replacement, const std::string& bytes)
{
    std::ofstream(replacement.temporaryName()) << bytes;
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
