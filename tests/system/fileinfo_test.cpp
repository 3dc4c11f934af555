#include "support/temporaryfolder.h"
#include "system/fileinfo.h"

#include <gtest/gtest.h>

#include <random>

TEST(FileInfo, TakesPathsApart)
{
    struct Case
    {
        const char* path;
        const char* folder;
        const char* file;
        const char* base;
        const char* suffix;
    };

    const Case cases[] = {
        {"a/b.c.txt", "a/", "b.c.txt", "b.c", "txt"},
        {"archive.tar.gz", "", "archive.tar.gz", "archive.tar", "gz"},
        {"/x.y/plain", "/x.y/", "plain", "plain", ""},
        {"folder/", "folder/", "", "", ""},
        {"", "", "", "", ""},
        {"/", "/", "", "", ""},
        {"été 1/feuille; 2.tif", "été 1/", "feuille; 2.tif", "feuille; 2", "tif"},
    };
    for (const Case& c : cases) {
        const FileInfo info(c.path);
        EXPECT_EQ(info.dirName(), c.folder) << c.path;
        EXPECT_EQ(info.fileName(), c.file) << c.path;
        EXPECT_EQ(info.baseName(), c.base) << c.path;
        EXPECT_EQ(info.suffixName(), c.suffix) << c.path;
        EXPECT_EQ(info.dirName() + info.fileName(), c.path);
        EXPECT_NE(info.isAbsolutePath(), info.isRelativePath());
    }
    std::string path = "a";
    FileInfo::ensureSuffix(path, "stl");
    FileInfo::ensureSuffix(path, "stl");
    EXPECT_EQ(path, "a.stl");
}

TEST(FileInfo, SimplifiesPaths)
{
    EXPECT_EQ(FileInfo::simplifyPath("a/./b/../c"), "/a/c/");
    EXPECT_EQ(FileInfo::simplifyPath("../a"), "../a/");
    EXPECT_EQ(FileInfo::simplifyPath("a/../.."), "../");
    EXPECT_EQ(FileInfo::simplifyPath("//a///b"), "/a/b/");
    EXPECT_EQ(FileInfo::simplifyPath(""), "/");
}

TEST(FileInfo, SimplifyingTwiceIsSimplifyingOnce)
{
    std::mt19937 random(11);
    const char* const pieces[] = {"a", "b", ".", "..", ""};
    for (int round = 0; round < 2000; ++round) {
        std::string path;
        for (int i = 0; i < 8; ++i) {
            path += pieces[random() % 5];
            path += "/";
        }
        const std::string once = FileInfo::simplifyPath(path);
        EXPECT_EQ(FileInfo::simplifyPath(once), once) << path;
    }
}

TEST(FileInfo, FindsTheWayBetweenFolders)
{
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder.path() / "a/b");
    const std::string image = folder.write("leaf.tif", "");
    EXPECT_TRUE(FileInfo::fileExists(image));
    EXPECT_FALSE(FileInfo::fileExists(image + "/inside"));
    EXPECT_EQ(FileInfo::relativePath(image, folder.file("a/b")), "../../leaf.tif");
    EXPECT_EQ(FileInfo::relativePath(folder.file("a"), folder.file("a")), ".");
    EXPECT_EQ(FileInfo::relativePath("", ""), ".");
    EXPECT_EQ(FileInfo("x/y").relativePath("x"), "y");
}
