// The guide against the program that it explains.

#include "guide/guidemarkdown.h"
#include "shell/pages/averagingconfigpage.h"
#include "shell/pages/exportshapesconfigeditor.h"
#include "shell/pages/extractcontourconfigeditor.h"
#include "shell/pages/extractpeaksconfigeditor.h"
#include "shell/pages/extractsinusconfigeditor.h"
#include "shell/pages/hierarchyconfigeditor.h"
#include "shell/pages/leafmeasuresconfigeditor.h"
#include "shell/project/projectloaderconfigpage.h"
#include "shell/widgets/helpbrowser.h"
#include "support/widgets.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSet>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>

// The macro does not work within a namespace.
static void registerResources()
{
    Q_INIT_RESOURCE(crenaraconfig);
}

namespace {

QByteArray read(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error("no file " + path.toStdString());
    }
    return file.readAll();
}

QString sourcePath(const char* path)
{
    return QString(CRENARA_SOURCE_DIR) + "/" + path;
}

QString withoutBreaks(QString text)
{
    return text.replace(QRegularExpression("\\s+"), " ").trimmed();
}

/// The texts of a source, those in parts joined, without the marks of shortcuts and the arguments of
/// includes.
QStringList literals(QString source)
{
    source.replace(QRegularExpression("(^|\\s)//[^\\n]*"), " ");
    source.remove(QRegularExpression("#include[^\\n]*"));
    static const QRegularExpression literal(
        R"re("((?:[^"\\\n]|\\.)*)"(?:\s*"((?:[^"\\\n]|\\.)*)")*)re");
    static const QRegularExpression seam(R"re("\s*")re");
    QStringList found;
    for (auto match = literal.globalMatch(source); match.hasNext();) {
        QString text = match.next().captured();
        text = text.mid(1, text.size() - 2).remove(seam);
        text.replace("\\n", "\n").replace("\\\"", "\"").replace("\\xC2\\xB5", "µ").remove('&');
        found.append(withoutBreaks(text));
    }
    return found;
}

/// What a user reads: a few words, no address, no operation's signature, no mark-up.
bool isForUsers(const QString& text)
{
    return text.contains(' ') && text.contains(QRegularExpression("[a-z]{2}")) &&
           !text.contains("::") && !text.contains('<') &&
           !text.contains(QRegularExpression("\\w\\([^)]*\\)$"));
}

HelpBrowser* openHelp(QWidget& page)
{
    withText<QPushButton>(page, "Help").click();
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* window = qobject_cast<HelpBrowser*>(widget)) {
            return window;
        }
    }
    throw std::runtime_error("no help window");
}

/// Which heading stands at the top of a browser.
QString headingOnTop(QTextBrowser& browser)
{
    return browser.cursorForPosition(QPoint(5, 20)).block().text();
}

class Guide : public ::testing::Test
{
protected:
    Guide()
    {
        registerResources();
        document_.setHtml(QString::fromUtf8(read(":/html/index.html")));
    }

    QTextDocument document_;
};

} // namespace

TEST_F(Guide, EachHelpOpensAtItsHeadingAndLeadsBackAgain)
{
    const std::map<const char*, std::unique_ptr<QWidget>> pages = [] {
        std::map<const char*, std::unique_ptr<QWidget>> made;
        made["Project Manager"].reset(new ProjectLoaderConfigPage);
        made["Extract Contour"].reset(new ExtractContourConfigEditor(nullptr));
        made["Extract Sinus"].reset(new ExtractSinusConfigEditor(nullptr));
        made["Extract Tips"].reset(new ExtractPeaksConfigEditor(nullptr));
        made["Hierarchy"].reset(new HierarchyConfigEditor(nullptr));
        made["Analysis"].reset(new LeafMeasuresConfigEditor(nullptr));
        made["Averaging"].reset(new AveragingConfigPage(nullptr));
        return made;
    }();
    for (const auto& page : pages) {
        HelpBrowser* window = openHelp(*page.second);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
        auto& browser = *window->findChild<QTextBrowser*>();
        EXPECT_EQ(headingOnTop(browser), page.first);
        browser.setSource(QUrl("#messages"));
        EXPECT_EQ(headingOnTop(browser), "Messages");
        EXPECT_EQ(window->windowTitle(), "Help: Crenara: the guide");
        withText<QPushButton>(*window, "back").click();
        EXPECT_EQ(headingOnTop(browser), page.first);
        browser.setSource(QUrl("#models"));
        withText<QPushButton>(*window, "home").click();
        EXPECT_EQ(headingOnTop(browser), page.first);
        QSignalSpy destroyed(window, &QObject::destroyed);
        withText<QPushButton>(*window, "close").click();
        EXPECT_TRUE(destroyed.wait(2000));
    }
}

TEST_F(Guide, AllLinksAndPicturesOfAllPagesLeadSomewhere)
{
    const QRegularExpression address("(?:href|src)=\"([^\"]*)\"");
    QSet<QString> used;
    for (QDirIterator pages(":/html"); pages.hasNext();) {
        const QString page = QString::fromUtf8(read(pages.next()));
        for (auto match = address.globalMatch(page); match.hasNext();) {
            const QString target = match.next().captured(1);
            if (target.startsWith('#')) {
                EXPECT_TRUE(page.contains("<a name=\"" + target.mid(1) + "\">"))
                    << target.toStdString();
            } else {
                ASSERT_TRUE(target.startsWith("qrc:/images/")) << target.toStdString();
                EXPECT_FALSE(QImage(target.mid(3)).isNull()) << target.toStdString();
                used.insert(target.mid(3));
            }
        }
    }
    for (QDirIterator pictures(":/images", {"guide-*"}); pictures.hasNext();) {
        const QString picture = pictures.next();
        EXPECT_TRUE(used.contains(picture)) << picture.toStdString() << " is shown nowhere";
    }
}

TEST_F(Guide, ExplainsEveryTextOfTheWindowAndItsStages)
{
    const QString guide = withoutBreaks(document_.toPlainText());
    // Captions of file choosers, the tool tips, what stands above the project page, and the value of a
    // venation that there is not.
    const QSet<QString> selfExplaining = {
        "choice a number of averages (blades)",
        "Open class size file",
        "Files (*.txt)",
        "Crenara Project File (*.crp)",
        "Choose the project's folder",
        "unknow type",
        "junctions proposed"}; // a note in the stack file, told with the formats
    int checked = 0;
    for (const char* folder : {"src/shell", "src/blade"}) {
        for (QDirIterator files(sourcePath(folder), {"*.cpp"}, QDir::Files,
                                QDirIterator::Subdirectories);
             files.hasNext();) {
            const QString file = files.next();
            for (const QString& text : literals(QString::fromUtf8(read(file)))) {
                if (isForUsers(text) && !selfExplaining.contains(text)) {
                    const QString label = text.endsWith(':') ? text.chopped(1).trimmed() : text;
                    EXPECT_TRUE(guide.contains(label))
                        << file.toStdString() << ": \"" << text.toStdString() << '"';
                    ++checked;
                }
            }
        }
    }
    EXPECT_GT(checked, 120);
}

TEST_F(Guide, MarkdownFormIsThatOfTheHtml)
{
    const QStringList made =
        guideMarkdown(read(":/html/index.html"), "../src/resources/images/").split('\n');
    const QStringList kept = QString::fromUtf8(read(sourcePath("docs/guide.md"))).split('\n');
    int line = 0;
    while (line < std::min(made.size(), kept.size()) && made[line] == kept[line]) {
        ++line;
    }
    EXPECT_TRUE(made == kept) << "docs/guide.md differs from line " << line + 1
                              << ": run scripts/guide --text";
}

TEST(GuideMarkdown, KeepsStructureAndEscapesMarks)
{
    const QByteArray html =
        "<html><head><title>x</title></head><body><h2><a name=\"a\"></a>A\n b</h2>"
        "<p><b>one_two</b><br/>\n*</p><ul><li>i<ol><li>j</li><li>k</li></ol></li>"
        "<li><a href=\"#a\">l</a></li></ul><table><tr><th>h</th><th>i</th></tr>"
        "<tr><td>a<br/>b</td><td><img src=\"qrc:/images/p.png\" alt=\"p\"/></td></tr>"
        "</table><pre>x *\n  y</pre><p>&lt;<code>a_b</code></p></body></html>";
    EXPECT_EQ(guideMarkdown(html, "../").toStdString(),
              "## <a name=\"a\"></a>A b\n\n**one\\_two**  \n\\*\n\n"
              "- i\n   1. j\n   2. k\n- [l](#a)\n\n"
              "| h | i |\n|---|---|\n| a<br>b | ![p](../p.png) |\n\n"
              "```\nx *\n  y\n```\n\n\\<`a_b`\n");
    EXPECT_ANY_THROW(guideMarkdown("<html><body><div>x</div></body></html>", ""));
    EXPECT_ANY_THROW(guideMarkdown("<html><body><p>x</body></html>", ""));
}
