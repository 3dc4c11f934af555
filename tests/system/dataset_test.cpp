#include "support/commalocale.h"
#include "support/errors.h"
#include "support/filesizelimit.h"
#include "support/temporaryfolder.h"
#include "system/dataset.h"

#include <cmath>
#include <limits>
#include <random>
#include <sstream>

namespace {

std::string text(const DataSet& table)
{
    std::ostringstream stream;
    stream << table;
    return stream.str();
}

DataSet table(const std::string& text, char separator = '\t')
{
    DataSet result;
    result.setFieldSeparator(separator);
    std::istringstream stream(text);
    stream >> result;
    return result;
}

/// A random table of the three types that a file gives back. Floats have few digits, so that six
/// significant ones hold them; strings begin with a letter.
DataSet randomTable(std::mt19937& random, int rows)
{
    DataSet result;
    for (int row = rows - 1; row >= 0; --row) {
        const int number = static_cast<int>(random());
        result.setValue("count", row, number);
        result.setValue("length", row, static_cast<float>(number % 1000) / 8.0F);
        std::string word(1, static_cast<char>('g' + random() % 10));
        for (unsigned i = random() % 8; i > 0; --i) {
            word += " \"'.;,-0a"[random() % 9];
        }
        result.setValue("leaf \"name\"", row, word + "é");
    }
    return result;
}

} // namespace

TEST(DataSet, TablesComeBackFromTheirTextAsTheyWereInAnyLocale)
{
    std::mt19937 random(21);
    for (int rows : {1, 2, 17, 300}) {
        for (char separator : {'\t', '|'}) {
            DataSet written = randomTable(random, rows);
            written.setFieldSeparator(separator);
            const std::string plain = text(written);
            const CommaLocale comma;
            const DataSet read = table(plain, separator);
            EXPECT_EQ(read.variableNames(), written.variableNames());
            EXPECT_EQ(read.columnTypes(), "%d%f%s");
            EXPECT_EQ(read.numRows(), rows);
            EXPECT_EQ(text(read), plain);
            EXPECT_TRUE(read.getValues<float>("length") == written.getValues<float>("length"));
        }
    }
}

TEST(DataSet, EachTypeHasItsCellText)
{
    DataSet set;
    set.setValue("int", 0, -3);
    set.setValue("long", 0, 5000000000L);
    set.setValue("float", 0, 2.0F);
    set.setValue("double", 0, 1234567.0);
    set.setValue("long double", 0, 1.0L);
    set.setValue<std::string>("string", 0, "a \"b\"");
    set.setValue("scalar", 0, Scalar(1.5F));
    set.setValue("nan", 0, -std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(text(set), "int\tlong\tfloat\tdouble\tlong double\tstring\tscalar\tnan\n"
                         "-3\t5000000000\t2.00000\t1.23457e+06\t\ta \"b\"\t1.5\tnan\n");
    EXPECT_EQ(set.columnTypes(), "%d%ld%f%lftype error%s%scalar%f");
    std::ostringstream stream;
    stream << set;
    EXPECT_TRUE(stream.flags() & std::ios_base::showpoint);
}

TEST(DataSet, TypesFollowFromAllCells)
{
    EXPECT_EQ(table("a\tb\tc\td\te\n1\t1\t1\t\t1\n2\t2.5\tx\t2\t99999999999\n").columnTypes(),
              "%d%f%s%s%f");
    DataSet quoted = table("\"a\"\t\"\tb\"\t\n\"x\"\t\"\t3\t9\n", '\t');
    EXPECT_EQ(quoted.variableNames(), (std::vector<std::string>{"a", "\"", "b\""}));
    EXPECT_EQ(quoted.getValue<std::string>("a", 0), "x");
    EXPECT_EQ(quoted.getValue<std::string>("\"", 0), "\"");
    EXPECT_EQ(quoted.getValue<int>("b\"", 0), 3);
}

TEST(DataSet, ShortLinesKeepTheOtherRowsInPlace)
{
    DataSet set = table("a\tb\tc\r\n1\t2\t3\r\n\r\n4\n5\t6\t7\t8\n9\t");
    EXPECT_EQ(set.columnTypes(), "%d%s%s");
    EXPECT_EQ(set.numRows(), 4);
    EXPECT_EQ(set.getValue<std::string>("c", 1), "");
    EXPECT_EQ(set.getValue<std::string>("c", 2), "7");
    EXPECT_EQ(set.getValue<std::string>("b", 3), "");
    EXPECT_EQ(text(set), "a\tb\tc\n1\t2\t3\n4\t\t\n5\t6\t7\n9\t\t\n");
    EXPECT_TRUE(table("").isEmpty());
    EXPECT_TRUE(table("\n1\t2\n").isEmpty());
    EXPECT_EQ(table("only a name").size()[0], 0);
}

TEST(DataSet, ASmallFileCannotAskForMillionsOfCells)
{
    const int size = 3000;
    std::string header = "a";
    std::string rows;
    for (int i = 0; i < size; ++i) {
        header += "\ta";
        rows += "1\n";
    }
    const TemporaryFolder folder;
    DataSet set;
    EXPECT_THROW(set.load(folder.write("t.tsv", header + "\n" + rows + header)), FileReadError);
    set.load(folder.write("t.tsv", header + "\n" + header + "\n" + rows));
    EXPECT_EQ(set.numRows(), size + 1);
}

TEST(DataSet, CellsThatNoWriteReachedAreZeroOrEmpty)
{
    DataSet set;
    set.setValue("a", 2, 7);
    set.setValue<std::string>("b", 1, "x");
    EXPECT_EQ(set.numRows(), 2); // the shorter column was lengthened last
    EXPECT_EQ(set.getValue<int>("a", 0), 0);
    EXPECT_EQ(set.getValue<std::string>("b", 2), "");
    EXPECT_EQ(set.getValue<Scalar>("c", 5).isEmpty(), true);
    EXPECT_EQ(text(set), "a\tb\tc\n0\t\t\n0\tx\t\n");
    EXPECT_THROW(set.setValue("a", -1, 1), RangeError);
    set.setValues("d", 4L);
    EXPECT_EQ(set.getValues<long>("d").getSize(), 2);
    EXPECT_THROW(set.setValue("d", 0, 1), TypeError);
}

TEST(DataSet, CropKeepsTheMatchingRowsInOrder)
{
    std::mt19937 random(5);
    DataSet set;
    std::vector<int> kept;
    for (int row = 0; row < 40; ++row) {
        const int group = static_cast<int>(random() % 3);
        set.setValue("row", row, row);
        set.setValue("group", row, group);
        if (group == 1) {
            kept.push_back(row);
        }
    }
    DataSet copy(set);
    copy.crop("group", 1);
    EXPECT_EQ(copy.getValues<int>("row").toStlVector(), kept);
    copy.crop("group", 2);
    EXPECT_TRUE(copy.isEmpty());
    EXPECT_EQ(copy.numRows(), 0);
    EXPECT_EQ(set.numRows(), 40);
    DataSet moved(std::move(set));
    EXPECT_TRUE(set.isEmpty());
    set = std::move(moved);
    EXPECT_EQ(set.numRows(), 40);
}

TEST(DataSet, AppendAddsRowsByNameAndExtendAddsColumns)
{
    DataSet set = table("a\tb\n1\tx\n2\ty\n");
    set.append(table("b\tc\nz\t5\nw\t6\n"));
    EXPECT_EQ(text(set), "a\tb\tc\n1\tx\t0\n2\ty\t0\n0\tz\t5\n0\tw\t6\n");
    set.append(set);
    EXPECT_EQ(set.numRows(), 8);
    EXPECT_EQ(set.getValue<std::string>("b", 7), "w");

    const std::string before = text(set);
    EXPECT_THROW(set.append(table("a\tb\n1\t2\n")), TypeError);
    EXPECT_RAISES(NameError, "void DataSet::extend(const DataSet&)",
                  "the column 'b' already exists in the dataset",
                  set.extend(table("d\tb\n1\t2\n")));
    EXPECT_EQ(text(set), before);
    DataSet wide = table("a\n1\n");
    wide.extend(table("b\n2\n3\n"));
    EXPECT_EQ(text(wide), "a\tb\n1\t2\n0\t3\n");
}

TEST(DataSet, UnknownNamesAreToldWithTheKnownOnes)
{
    DataSet set = table("a\tb\n1\t2\n");
    EXPECT_RAISES(NameError, "const Vector<T>& DataSet::getValues(const string&) const",
                  "Variable name not found. Known variables are: a b ", set.getValues<int>("c"));
    EXPECT_THROW(set.getValues<float>("a"), TypeError);
    EXPECT_THROW(set.crop("c", 1), NameError);
    EXPECT_THROW(set.remove("c"), NameError);
    EXPECT_THROW(set.remove(2), RangeError);
    set.remove("a");
    EXPECT_EQ(text(set), "b\n2\n");
}

TEST(DataSet, FlattenTurnsScalarsIntoPlainColumns)
{
    DataSet set;
    for (int row = 1; row >= 0; --row) {
        set.setValue("i", row, Scalar(row + 1));
        set.setValue("f", row, Scalar(row + 0.5F));
        set.setValue("d", row, Scalar(row + 0.5));
        set.setValue("plain", row, row);
    }
    for (int times = 0; times < 2; ++times) {
        set.flatten();
        EXPECT_EQ(text(set), "plain\ti\tf\n0\t1\t0.500000\n1\t2\t1.50000\n");
    }
    EXPECT_EQ(set.columnTypes(), "%d%d%f");
}

TEST(DataSet, SavingReplacesAFileOnlyWhenToldAndOnlyAsAWhole)
{
    const TemporaryFolder folder;
    const std::string name = folder.write("été.data", "old");
    DataSet set = table("a\n1\n");
    EXPECT_RAISES(FileWriteError, "void DataSet::save(const string&, const bool) const",
                  "File exists", set.save(name, false));
    EXPECT_EQ(folder.read("été.data"), "old");
    EXPECT_TRUE(set.save(name, true));
    EXPECT_EQ(folder.read("été.data"), "a\n1\n");
    EXPECT_EQ(text(DataSet(name)), text(set));
    EXPECT_FALSE(set.save(folder.file("missing/a.data"), true));
    EXPECT_EQ(folder.fileCount(), 1);
    {
        const FileSizeLimit full(2);
        EXPECT_THROW(set.save(name, true), FileWriteError);
    }
    EXPECT_EQ(folder.read("été.data"), "a\n1\n");
    EXPECT_RAISES(FileReadError, "void DataSet::load(const string&)", "The file does not exist",
                  set.load(folder.file("none")));
    EXPECT_THROW(set.load(folder.path().string()), FileReadError);
    EXPECT_EQ(text(set), "a\n1\n");
}

TEST(DataSet, AnyBytesGiveATableThatSurvivesItsText)
{
    std::mt19937 random(77);
    const std::string alphabet = "a1.\t\t\n\n\"-e\r\xff ";
    for (int round = 0; round < 3000; ++round) {
        std::string bytes;
        for (unsigned i = random() % 60; i > 0; --i) {
            bytes += alphabet[random() % alphabet.size()];
        }
        DataSet set = table(bytes);
        for (const std::string& name : set.variableNames()) {
            EXPECT_GE(set.column(name), 0);
        }
        EXPECT_LE(set.numRows(), static_cast<int>(bytes.size()));
        EXPECT_LE(static_cast<int>(table(text(set)).variableNames().size()), set.size()[1]);
    }
}
