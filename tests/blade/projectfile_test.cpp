#include "blade/project/projectfile.h"
#include "support/temporaryfolder.h"

#include <QLocale>

#include <gtest/gtest.h>

#include <clocale>
#include <random>

namespace {

ProjectConfig filled()
{
    ProjectConfig project;
    project.setProjectName("leaves of été");
    project.setProjectPath("/data/ßüd \"x\"");
    project.setSpecie("Quercus robur");
    project.setGenotype("wt;1");
    project.setGrowthCondition("20 °C");
    project.setGroupLeaf("5th leaf");
    project.setVenationType(PALMATE);
    project.setKineticEnabled(true);
    project.setInflectionPoint(3.25f);
    project.setScaling(41000.5f);
    project.setStrengthFactor(1.125f);
    return project;
}

std::string text(const ProjectConfig& p)
{
    QStringList fields = {p.getProjectName(), p.getProjectPath(),     p.getSpecie(),
                          p.getGenotype(),    p.getGrowthCondition(), p.getLeafGroup()};
    for (const double number :
         {double(p.getVenationType()), double(p.kineticIsEnabled()), double(p.getInflectionPoint()),
          double(p.getScaling()), double(p.getStrengthFactor())}) {
        fields.append(QString::number(number, 'g', 9));
    }
    return fields.join("|").toStdString();
}

QString path(const TemporaryFolder& folder)
{
    return QString::fromStdString(folder.file("p.crp"));
}

/// What reading `bytes` over the filled project gives.
std::string readOver(const std::string& bytes)
{
    const TemporaryFolder folder;
    folder.write("p.crp", bytes);
    ProjectConfig project = filled();
    EXPECT_TRUE(ProjectFile::read(project, path(folder)));
    return text(project);
}

} // namespace

TEST(ProjectFile, HoldsElevenLinesAndReadsThemBackInAnyLocale)
{
    const std::string former = std::setlocale(LC_ALL, nullptr);
    for (const char* locale : {"C", "de_DE.UTF-8", "fr_FR.UTF-8"}) {
        std::setlocale(LC_ALL, locale); // where it is not installed, the former one stays
        QLocale::setDefault(QLocale(QString(locale).left(5)));
        const TemporaryFolder folder;
        ProjectConfig project = filled();
        project.setProjectPath("/data/ßüd");
        ASSERT_TRUE(ProjectFile::write(project, path(folder)));
        EXPECT_EQ(folder.read("p.crp"), "ProjectName\t\"leaves of été\"\n"
                                        "ProjectPath\t\"/data/ßüd\"\n"
                                        "Species\t\"Quercus robur\"\n"
                                        "Genotype\t\"wt;1\"\n"
                                        "GrowthCondition\t\"20 °C\"\n"
                                        "GroupLeaf\t\"5th leaf\"\n"
                                        "VenationType\t\"PALMATE\"\n"
                                        "kineticParameters\ttrue\n"
                                        "InflectionPoint\t3.25\n"
                                        "Scaling\t41000.5\n"
                                        "StrengthFactor\t1.125\n");
        ProjectConfig other;
        ASSERT_TRUE(ProjectFile::read(other, path(folder)));
        EXPECT_EQ(text(other), text(project)) << locale;
    }
    QLocale::setDefault(QLocale::c());
    std::setlocale(LC_ALL, former.c_str());
}

TEST(ProjectFile, TakesLinesOfAllKindsAndKeepsTheFieldsWithoutAKey)
{
    const std::string before = text(filled());
    // Nothing in these lines says anything.
    for (const char* bytes : {"", "\n\n", "Species", "Species\n", "species\tx\n", "Other\tx\n",
                              "VenationType\t\"unknow type\"\n", "VenationType\tpinnate\n", "\t\n",
                              "Genotype \"x\"\n"}) {
        EXPECT_EQ(readOver(bytes), before) << bytes;
    }
    ProjectConfig expected = filled();
    expected.setSpecie("Acer");
    expected.setVenationType(PINNATE);
    expected.setKineticEnabled(false);
    expected.setScaling(0.0f);
    expected.setStrengthFactor(0.5f);
    expected.setProjectName("b");
    const std::string lines =
        "StrengthFactor\t\"0.5\"\nkineticParameters\tTrue\nScaling\t1,5\n"
        "VenationType\tPINNATE\nProjectName\t/a/b\textra\nSpecies\t\"Ac\"er\n";
    EXPECT_EQ(readOver(lines), text(expected));
    std::string windows;
    for (const char c : lines) {
        windows += c == '\n' ? "\r\n" : std::string(1, c);
    }
    EXPECT_EQ(readOver(windows), text(expected));
}

TEST(ProjectFile, SurvivesAnyDamageOfItsBytes)
{
    const TemporaryFolder folder;
    ASSERT_TRUE(ProjectFile::write(filled(), path(folder)));
    const std::string whole = folder.read("p.crp");
    std::mt19937 generator(5);
    for (std::size_t i = 0; i < whole.size(); ++i) {
        std::string damaged = whole;
        damaged[i] = static_cast<char>(generator());
        readOver(damaged);
        // A cut file never gives numbers or names that the whole one does not begin with.
        const TemporaryFolder other;
        other.write("p.crp", whole.substr(0, i));
        ProjectConfig project;
        ASSERT_TRUE(ProjectFile::read(project, path(other)));
        EXPECT_TRUE(filled().getSpecie().startsWith(project.getSpecie()));
        EXPECT_LE(project.getScaling(), 41000.5f);
    }
}

TEST(ProjectConfig, StartsWithItsDefaultsKeepsTheLastPartOfANameAndIsNotReadFromNowhere)
{
    ProjectConfig project;
    const QString nowhere = "/none/p.crp";
    EXPECT_FALSE(ProjectFile::write(project, nowhere));
    EXPECT_FALSE(ProjectFile::read(project, nowhere));
    EXPECT_EQ(text(project), "||||||0|0|1|1|1");
    EXPECT_EQ(project.getStack(), nullptr);
    project.setProjectName("a/b/c.d");
    EXPECT_EQ(project.getProjectName(), "c.d");
}
