#include "support/temporaryfolder.h"
#include "system/fileinfo.h"

#include <gtest/gtest.h>

TEST(FileInfo, TakesPathsApart)
{
    const std::vector<std::string> cases[] = {
        {"a/b.c.txt", "a/", "b.c.txt", "b.c", "txt"},
        {"archive.tar.gz", "", "archive.tar.gz", "archive.tar", "gz"},
        {"/x.y/plain", "/x.y/", "plain", "plain", ""},
        {"folder/", "folder/", "", "", ""},
        {"", "", "", "", ""},
        {"/", "/", "", "", ""},
        {"été 1/feuille; 2.tif", "été 1/", "feuille; 2.tif", "feuille; 2", "tif"},
    };
    for (const auto& parts : cases) {
        const FileInfo info(parts[0]);
        const std::vector<std::string> found = {parts[0], info.dirName(), info.fileName(),
                                                info.baseName(), info.suffixName()};
        EXPECT_EQ(found, parts);
        EXPECT_NE(info.isAbsolutePath(), info.isRelativePath());
    }
    std::string path = "a";
    FileInfo::ensureSuffix(path, "stl");
    FileInfo::ensureSuffix(path, "stl");
    EXPECT_EQ(path, "a.stl");
}

TEST(FileInfo, SimplifiesPaths)
{
    const std::pair<const char*, const char*> cases[] = {{"a/./b/../c", "/a/c/"},
                                                         {"../a", "../a/"},
                                                         {"a/../..", "../"},
                                                         {"//a///b", "/a/b/"},
                                                         {"", "/"}};
    for (const auto& [path, simple] : cases) {
        EXPECT_EQ(FileInfo::simplifyPath(path), simple);
        EXPECT_EQ(FileInfo::simplifyPath(simple), simple);
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
