// Pictures of the windows, as they look without a display.

#include "blade/project/projectconfig.h"
#include "guide/drawing.h"
#include "guide/figures.h"
#include "guide/leafview.h"
#include "interface/lmxstack.h"
#include "shell/project/newprojectdialog.h"
#include "shell/widgets/helpbrowser.h"
#include "shell/widgets/piechart.h"
#include "shell/widgets/stagepage.h"
#include "shell/window/crenarawindow.h"

#include <QApplication>
#include <QDir>
#include <QGroupBox>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QStackedWidget>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTimer>

namespace {

// A help window of its usual size shows no more without a scroll bar.
constexpr int widest = 450;

QImage grab(QWidget& widget)
{
    QCoreApplication::processEvents();
    return widget.grab().toImage();
}

QImage fitted(const QImage& picture)
{
    return picture.width() > widest ? picture.scaledToWidth(widest, Qt::SmoothTransformation)
                                    : picture;
}

/// Opens the rows of the window as a user does, by a new project; the dialog is drawn and dismissed.
void openRows(CrenaraWindow& window, Figures& figures)
{
    window.findChild<QListWidget*>()->setCurrentRow(0);
    QTimer::singleShot(0, &window, [&] {
        if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
            dialog->resize(360, dialog->sizeHint().height());
            figures["guide-new-project.png"] = grab(*dialog);
            dialog->reject();
        }
    });
    window.runNewProjectLoader();
}

void addAngleCharts(Figures& figures)
{
    QImage picture = whitePage(QSize(400, 76));
    QPainter painter(&picture);
    setUpLabels(painter);
    int x = 10;
    for (const int degrees : {60, 100, 145, 175}) {
        PieChart chart(nullptr);
        chart.resize(45, 45);
        chart.setSpanAngle(degrees);
        painter.drawImage(x + 25, 4, grab(chart));
        painter.drawText(QRectF(x, 54, 95, 20), Qt::AlignCenter,
                         QString("%1 degrees").arg(degrees));
        x += 95;
    }
    figures["guide-angle-charts.png"] = picture;
}

/// The controls of the page on show: the box that the frame of stages holds them in.
QImage controls(QStackedWidget& pages)
{
    for (QGroupBox* box : pages.currentWidget()->findChildren<QGroupBox*>()) {
        if (box->parentWidget() == pages.currentWidget()) {
            return grab(*box);
        }
    }
    return grab(*pages.currentWidget());
}

QPalette darkPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(45, 45, 48));
    palette.setColor(QPalette::WindowText, Qt::white);
    palette.setColor(QPalette::Base, QColor(30, 30, 32));
    palette.setColor(QPalette::Text, QColor(230, 230, 230));
    palette.setColor(QPalette::Button, QColor(60, 60, 64));
    palette.setColor(QPalette::ButtonText, Qt::white);
    palette.setColor(QPalette::Link, QColor(100, 170, 255));
    return palette;
}

/// The anchors of the guide, in its order.
QStringList anchors()
{
    QTextBrowser browser;
    browser.setSource(QUrl("qrc:/html/index.html"));
    QStringList names;
    for (QTextBlock block = browser.document()->begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            names += part.fragment().charFormat().anchorNames();
        }
    }
    return names;
}

} // namespace

void addWindowPictures(Figures& figures, const QString& folder)
{
    QApplication::setStyle("fusion");
    QApplication::setFont(QFont("DejaVu Sans", 9));
    LeafView leaf(folder + "/serrate-tips.sdf");
    leaf.stack().setName("leaves");
    leaf.stack().setFilename("/home/me/leaves/leaves.sdf");
    ProjectConfig& project = CrenaraWindow::project();
    project.setProjectName("leaves");
    project.setProjectPath("/home/me/leaves");
    CrenaraWindow window;
    window.setStack(leaf.stack());
    window.resize(640, 600);
    window.show();
    openRows(window, figures);

    auto* rows = window.findChild<QListWidget*>();
    auto* pages = window.findChild<QStackedWidget*>();
    const QStringList names = {"",          "contour",  "sinus",    "tips",
                               "hierarchy", "analysis", "averaging"};
    for (int row = 1; row < names.size(); ++row) {
        rows->setCurrentRow(row);
        if (names[row] == "contour") {
            figures["guide-window.png"] = fitted(grab(window));
        }
        figures["guide-page-" + names[row] + ".png"] = fitted(controls(*pages));
    }
    addAngleCharts(figures);
}

void addHelpPictures(Figures& figures)
{
    QApplication::setStyle("fusion");
    QApplication::setFont(QFont("DejaVu Sans", 9));
    for (const bool dark : {false, true}) {
        QApplication::setPalette(dark ? darkPalette() : QPalette());
        for (const QString& anchor : anchors()) {
            HelpBrowser browser("qrc:/html/index.html", "qrc:/html/index.html#" + anchor);
            browser.resize(500, 400);
            browser.show();
            figures[QString(dark ? "dark-" : "") + anchor + ".png"] = grab(browser);
        }
        for (const QString& page : QDir(":/html").entryList()) {
            HelpBrowser browser("qrc:/html/index.html", "qrc:/html/" + page);
            browser.resize(500, 340); // as wide as on a stage's page, and a little higher
            browser.show();
            figures[QString(dark ? "dark-" : "") + page + ".png"] = grab(browser);
        }
        HelpBrowser whole("qrc:/html/index.html", "qrc:/html/index.html");
        whole.resize(500, 400);
        whole.show();
        QCoreApplication::processEvents();
        const QSizeF size = whole.findChild<QTextBrowser*>()->document()->size();
        whole.resize(500, static_cast<int>(size.height()) + 80);
        const QImage picture = grab(whole);
        constexpr int part = 1900;
        for (int y = 0; y < picture.height(); y += part) {
            figures[QString(dark ? "dark-whole-%1.png" : "whole-%1.png")
                        .arg(y / part, 2, 10, QChar('0'))] =
                picture.copy(0, y, picture.width(), part);
        }
    }
}
