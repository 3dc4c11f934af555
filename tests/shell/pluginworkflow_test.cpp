// The workflow in the window that the plug-in opens, by clicks.

#include "blade/landmarks/junctionplacing.h"
#include "host/document/documentfiles.h"
#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"
#include "interface/lmxaction.h"
#include "interface/lmxstack.h"
#include "shell/pluginwindow.h"
#include "stack/model.h"
#include "stack/stackwriter.h"
#include "support/leaf.h"
#include "support/temporaryfolder.h"
#include "system/exception.h"

#include <QCheckBox>
#include <QDirIterator>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QRadioButton>
#include <QSpinBox>

#include <cmath>
#include <sstream>

namespace {

/// Photographs of leaves in a folder, and their stack file "leaves.sdf".
class LeafFolder
{
public:
    LeafFolder()
    {
        outlines_ = {leaf::draw(4, 24.0), leaf::draw(6, 24.0, 20.0, {330.0, 420.0})};
        QStringList arguments = {"stack", "--pixel-width", "2.5", file("leaves.sdf")};
        for (std::size_t i = 0; i < outlines_.size(); ++i) {
            const QString name = file("leaf" + QString::number(i) + ".tif");
            ImageWriter().write(
                leaf::toImage(leaf::photograph(outlines_[i], 860, 640, 190.0f, 40.0f, 8.0f)),
                name.toStdString(), false);
            arguments.append(name);
        }
        crenara(arguments);
    }

    QString file(const QString& name) const
    {
        return QString::fromStdString(folder_.file(name.toStdString()));
    }

    std::string read(const std::string& name) const { return folder_.read(name); }

    std::unique_ptr<LMXStack> open() const
    {
        return DocumentFiles().open({folder_.file("leaves.sdf")});
    }

    /// Places the junctions in an open stack.
    void draw(LMXStack& stack) const
    {
        JunctionPlacing placing;
        placing.setStack(stack);
        for (std::size_t i = 0; i < outlines_.size(); ++i) {
            const leaf::Point* const points = outlines_[i].junctions;
            placing.place({{int(std::lround(points[0].x)), int(std::lround(points[1].x))},
                           {int(std::lround(points[0].y)), int(std::lround(points[1].y))}},
                          static_cast<int>(i));
        }
    }

    /// Contours, junctions, sinuses and tips by the command.
    void runStages(const QStringList& options = {}) const
    {
        const QString stack = file("leaves.sdf");
        crenara({"contour", stack});
        const auto opened = open();
        draw(*opened);
        EXPECT_TRUE(opened->write(stack.toStdString()));
        crenara({"sinus", stack, "--resample", "always"});
        crenara(QStringList({"tips", stack, "--resample", "always"}) + options);
    }

private:
    TemporaryFolder folder_;
    std::vector<leaf::Outline> outlines_;
};

/// Counts the items that it hears of, and fails at the one of a given number.
class CountingClient : public LMXEventClient
{
public:
    explicit CountingClient(int failing = 0)
        : failing_(failing)
    {}

    void modelItemCreateEvent(LMXModelItemCreateEvent&) override
    {
        if (++items == failing_) {
            raise<ValueError>("void CountingClient::modelItemCreateEvent()", "no more");
        }
    }

    int items = 0;

private:
    int failing_;
};

std::string modelsOf(const LMXStack& stack)
{
    std::ostringstream text;
    StackWriter().writeModels(stack, text);
    return text.str();
}

/// The paths of all files below a folder, from there on, in order.
QStringList filesBelow(const QString& folder)
{
    QStringList found;
    for (QDirIterator walk(folder, QDir::Files, QDirIterator::Subdirectories); walk.hasNext();) {
        found.append(QDir(folder).relativeFilePath(walk.next()));
    }
    found.sort();
    return found;
}

/// Fills the dialog for a new project like a user.
Modals::Step fillProject(const QString& name)
{
    return [name](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "New project");
        const QList<QLineEdit*> edits = lineEdits(dialog);
        ASSERT_EQ(edits.size(), 6);
        EXPECT_EQ(edits[0]->text(), "leaves") << "the stack's name";
        edits[0]->setText(name);
        edits[1]->setText("Alnus glutinosa");
        edits[2]->setText("wt");
        edits[3]->setText("third");
        edits[4]->setText("wet \"meadow\"");
        // They tell the ages of the leaves.
        const QList<QDoubleSpinBox*> growth = dialog.findChildren<QDoubleSpinBox*>();
        ASSERT_EQ(growth.size(), 3);
        growth[0]->setValue(12.5);
        growth[1]->setValue(4000.0);
        growth[2]->setValue(1.25);
        withText<QPushButton>(dialog, "").click(); // the folder chooser is the next step
        withText<QPushButton>(dialog, "Done").click();
    };
}

QString shown(const char* title, const char* text)
{
    return QString(title) + ": " + text;
}

const QString stageWarnings[] = {
    "",
    "",
    shown("Extract Sinus", "After Extract Contour, don't forget draw the blade-petiole junctions"),
    shown("Extract Peaks", "Please run Extract Sinus before Extract Tips"),
    shown("Hierarchy", "Please run Extract Sinus and/or Extract Tips before Hierarchy"),
    shown("Analysis", "Please run Extract Sinus before Analysis"),
    shown("Averaging", "Please run Extract Sinus before averaging"),
};

void addModel(LMXStack& stack, const char* name)
{
    Model* model = new Model;
    model->setName(name);
    stack.addModel(*model);
}

} // namespace

TEST(CrenaraWindow, StartsOnThePageOfProjectsWithItsRowCurrent)
{
    const auto stack = leaf::emptyStack(1);
    PluginWindow window(*stack);
    EXPECT_EQ(window.rows().currentRow(), 0);
    const QStringList texts = {"Project Manager", "Extract Contour", "Extract Sinus ",
                               "Extract Tips ",   "Hierarchy",       "Analysis",
                               "Averaging",       "Export Teeth"};
    ASSERT_EQ(window.rows().count(), texts.size());
    for (int row = 0; row < texts.size(); ++row) {
        const QListWidgetItem& item = *window.rows().item(row);
        EXPECT_EQ(item.text(), texts[row]);
        EXPECT_EQ(int(item.flags()), row == 0 ? 32 : 0);
        EXPECT_FALSE(item.icon().pixmap(100, 100).isNull()) << row;
        window.clickRow(row);
        EXPECT_EQ(window.rows().currentRow(), 0) << "only row 0 can be chosen";
    }
    window.openRows();
    for (int row = 1; row < texts.size(); ++row) {
        EXPECT_EQ(int(window.rows().item(row)->flags()), 33);
    }
}

TEST(CrenaraWindow, GatesTellWhatAStackWithoutModelsLacks)
{
    const auto stack = leaf::emptyStack(1);
    PluginWindow window(*stack);
    window.openRows();
    Modals modals;
    for (int row = 2; row <= 7; ++row) {
        window.clickRow(row);
        EXPECT_EQ(window.rows().currentRow(), row);
        EXPECT_EQ(modals.takeBoxes(), row < 7 ? QStringList(stageWarnings[row]) : QStringList());
        EXPECT_EQ(window.page().isEnabled(), row == 7);
    }
    EXPECT_TRUE(withText<QPushButton>(window.page(), "&Process").isEnabled());
}

TEST(CrenaraWindow, GatesNameTheSliceAndOpenAgainWhenItIsMended)
{
    const leaf::Outline outline = leaf::draw(4, 24.0);
    const auto stack = leaf::stackOf({outline, outline});
    PluginWindow window(*stack);
    window.openRows();
    Modals modals;
    const auto boxesOn = [&](int row) {
        window.clickRow(row == 7 ? 2 : 7); // the row is set up when it is chosen anew
        modals.takeBoxes();
        window.clickRow(row);
        EXPECT_EQ(window.page().isEnabled(), modals.boxes().isEmpty());
        return modals.takeBoxes();
    };
    const auto missing = [](const QString& model, int slice) {
        return QStringList(
            {"Warning: Missing " + model + " in slice number :leaf" + QString::number(slice),
             stageWarnings[2]});
    };
    EXPECT_EQ(boxesOn(2), QStringList());
    delete leaf::findItem(*stack, "Petiole", 1);
    EXPECT_EQ(boxesOn(2), missing("Petiole", 1));
    delete leaf::findItem(*stack, "Contour", 0);
    EXPECT_EQ(boxesOn(2), missing("Contour", 0));
    leaf::addItem(*stack, "Contour", PRIMITIVE_POLYGON, 0, outline.points);
    leaf::mark(*stack, "Petiole", 1, {outline.junctions[0], outline.junctions[1]});
    EXPECT_EQ(boxesOn(2), QStringList());
    // The later stages ask for their models as well.
    EXPECT_EQ(boxesOn(3), QStringList(stageWarnings[3]));
    addModel(*stack, "Apex");
    EXPECT_EQ(boxesOn(5), QStringList());
    EXPECT_EQ(boxesOn(6),
              QStringList("Averaging: Slice leaf0 lacks contour, two junctions or apex"));
    addModel(*stack, "Primary Sinus");
    EXPECT_EQ(boxesOn(3), QStringList());
    EXPECT_EQ(boxesOn(4), QStringList(stageWarnings[4]));
    addModel(*stack, "Primary Peak");
    EXPECT_EQ(boxesOn(4), QStringList());
}

TEST(CrenaraWindow, RunsTheWorkflowWithTheTablesOfTheCommand)
{
    const LeafFolder folder;
    const auto stack = folder.open();
    PluginWindow window(*stack);
    const CountingClient listener;

    {
        const Modals project({fillProject("alder"), choosePath(folder.file(""))});
        window.clickButton("New Project");
        ASSERT_TRUE(project.stepsAreDone());
        EXPECT_EQ(project.boxes(), QStringList());
    }
    ASSERT_TRUE(QFile::exists(folder.file("alder.crp")));

    Modals modals;
    window.clickRow(1);
    EXPECT_FALSE(withText<QRadioButton>(window.page(), "Blue channel").isEnabled());
    window.clickButton("&Process");
    EXPECT_EQ(modals.takeBoxes(), QStringList());
    EXPECT_EQ(listener.items, 2) << "one list of clients serves both sides";
    EXPECT_TRUE(stack->isModified());
    folder.draw(*stack);

    window.clickRow(2);
    // Twice to the page makes no second connection: one click, one run.
    window.clickRow(1);
    for (const auto& [row, text] : {std::pair(2, "Detection of the sinuses is complete"),
                                    {3, "Peaks extraction is complete"},
                                    {5, "Analysis is complete"},
                                    {7, "Export is complete"}}) {
        window.process(row);
        EXPECT_EQ(modals.takeBoxes(), QStringList(shown("", text)));
    }
    const QString file = folder.file("leaves.sdf");
    folder.runStages({"--project", folder.file("alder.crp")});
    crenara({"measure", file, "--project", folder.file("alder.crp"), "--prefix", "command"});
    for (const std::string table : {"_LeafMeasures.data", "_PeakMeasures.data"}) {
        const std::string ours = folder.read("alder" + table);
        EXPECT_GT(ours.size(), 100u);
        EXPECT_EQ(ours, folder.read("command" + table)) << table;
    }
    crenara({"teeth", file, "--out", folder.file("command")});
    const QStringList teeth = filesBelow(folder.file("teeth"));
    EXPECT_GE(teeth.size(), 12);
    EXPECT_EQ(teeth, filesBelow(folder.file("command/teeth")));
    for (const QString& tooth : teeth) {
        const std::string name = "teeth/" + tooth.toStdString();
        EXPECT_EQ(folder.read(name), folder.read("command/" + name)) << name;
    }
}

TEST(CrenaraWindow, RunsEachHierarchyLikeTheCommand)
{
    const LeafFolder folder;
    folder.runStages();
    const QString file = folder.file("leaves.sdf");
    const auto stack = folder.open();
    PluginWindow window(*stack);
    window.openRows();
    Modals modals;
    window.clickRow(4);
    const auto expectSame = [&](const QString& title, const QStringList& options) {
        for (QGroupBox* box : window.page().findChildren<QGroupBox*>()) {
            if (box->title() == title) {
                box->setFocus();
                QTest::keyClick(box, Qt::Key_Space);
                EXPECT_TRUE(box->isChecked());
            }
        }
        window.clickButton("&Process");
        EXPECT_EQ(modals.takeBoxes().size(), 1);
        ASSERT_TRUE(stack->write(folder.file("window.sdf").toStdString()));
        crenara(QStringList({"hierarchy", file, "--resample", "always"}) + options);
        EXPECT_EQ(folder.read("window.sdf"), folder.read("leaves.sdf"));
        // The page comes back with the choice that was made.
        window.clickRow(3);
        window.clickRow(4);
        for (QGroupBox* box : window.page().findChildren<QGroupBox*>()) {
            EXPECT_EQ(box->isChecked() && box->isCheckable(), box->title() == title);
        }
        // Refused, for the lack of a tip, it changes nothing at all.
        ModelItem& tips = *leaf::findItem(*stack, "Primary Peak", 1);
        const Vertices<int> all = tips.getVertices();
        tips.removeVertex(0);
        const std::string before = modelsOf(*stack);
        window.clickButton("&Process");
        EXPECT_EQ(modals.takeBoxes().size(), 2);
        EXPECT_EQ(modelsOf(*stack), before);
        tips.setVertices(all);
    };

    window.clickButton("&Process");
    EXPECT_EQ(modals.takeBoxes(), QStringList()) << "nothing is chosen, nothing runs";
    window.page().findChild<QSpinBox*>()->setValue(121);
    window.page().findChild<QDoubleSpinBox*>()->setValue(0.05);
    withText<QCheckBox>(window.page(), "Enable distal teeth detection").setChecked(true);
    expectSame("Hierarchy Recursive Method (Arabodipsis)",
               {"recursive", "--limit-angle", "121", "--distal"});
    EXPECT_FALSE(leaf::vertices(*stack, "Secondary Sinus", 0).empty());
    expectSame("Hierarchy Iterative Method", {"iterative", "--tolerance", "0.05"});
    expectSame("No Hierarchy", {"none"});
    EXPECT_EQ(stack->findModel("Secondary Sinus"), -1);
}

TEST(CrenaraWindow, OpensAProjectOrSaysThatItCannot)
{
    const LeafFolder folder;
    crenara({"project", folder.file("p.crp"), "--name", "oaks", "--path", "/results/here"});
    const auto stack = folder.open();
    PluginWindow window(*stack);
    {
        const Modals modals({choosePath(folder.file("p.crp"))});
        window.clickButton("Open Project");
        EXPECT_EQ(modals.boxes(), QStringList());
    }
    EXPECT_EQ(int(window.rows().item(4)->flags()), 33);
    window.clickRow(1);

    QFile::remove(folder.file("p.crp"));
    const Modals modals({cancelDialog});
    PluginWindow second(*stack);
    second.clickButton("Open Project");
    EXPECT_EQ(modals.boxes(), QStringList("Project Loader: The file crp is unreadable"));
    EXPECT_EQ(second.rows().item(4)->flags(), Qt::NoItemFlags);
}

TEST(CrenaraWindow, AnErrorOfAStageIsToldAndTheDocumentStays)
{
    const LeafFolder folder;
    const auto stack = folder.open();
    PluginWindow window(*stack);
    window.openRows();
    Modals modals;
    window.clickRow(1);
    window.clickButton("&Process");
    folder.draw(*stack);
    ASSERT_EQ(modals.takeBoxes(), QStringList());
    const std::vector<leaf::Point> contour = leaf::vertices(*stack, "Contour", 0);
    ASSERT_GT(contour.size(), 500u);

    // A run that fails before it changes anything leaves the objects and the edits of the user.
    LMXActionHistory& edits = stack->sliceHistory(stack->getSlice(0));
    edits.openStep();
    edits.push(new LMXAction, true);
    edits.closeStep();
    const ModelItem* const item = leaf::findItem(*stack, "Contour", 0);
    const QString image = folder.file("leaf1.tif");
    ASSERT_TRUE(QFile::rename(image, image + ".away"));
    window.clickButton("&Process");
    EXPECT_TRUE(edits.isUndoable());
    EXPECT_EQ(leaf::findItem(*stack, "Contour", 0), item);
    ASSERT_EQ(modals.boxes().size(), 1);
    EXPECT_TRUE(modals.takeBoxes().first().contains(image));
    EXPECT_EQ(leaf::vertices(*stack, "Contour", 0).size(), contour.size());
    EXPECT_EQ(leaf::vertices(*stack, "Petiole", 1).size(), 2u);

    // The window works on once the file is back, until something fails in the midst of a run.
    ASSERT_TRUE(QFile::rename(image + ".away", image));
    for (int event = 1; event <= 2; ++event) {
        stack->setModified(event == 1);
        const std::string before = modelsOf(*stack);
        CountingClient failing(event);
        window.clickButton("&Process");
        EXPECT_TRUE(modals.takeBoxes().join("").endsWith("no more"));
        EXPECT_GE(failing.items, event);
        EXPECT_EQ(modelsOf(*stack), before);
        EXPECT_EQ(stack->isModified(), event == 1);
    }
    window.clickButton("&Process");
    EXPECT_EQ(modals.boxes(), QStringList());
    EXPECT_EQ(leaf::vertices(*stack, "Contour", 0).size(), contour.size());
}
