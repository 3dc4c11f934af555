#include "blade/blademessages.h"
#include "support/leaf.h"

#include <QApplication>
#include <QMessageBox>
#include <QProgressBar>
#include <QTimer>

#include <gtest/gtest.h>

#include <vector>

namespace {

/// Reports every second slice.
class EveryOther : public leaf::Probe
{
public:
    using leaf::Probe::Probe;

    void run() override { runOnAllSlices("done"); }

    std::string process(int slice) override { return slice % 2 ? std::to_string(slice) : ""; }
};

} // namespace

TEST(BladeMessages, ARunTellsItsReportAndItsProgressWithoutAnyWidget)
{
    const auto stack = leaf::emptyStack(4);
    std::vector<std::string> texts;
    const auto former =
        BladeMessages::setHandler([&](const std::string& text) { texts.push_back(text); });
    EveryOther process(*stack);
    std::vector<int> progress;
    process.setProgressListener([&](int percent) { progress.push_back(percent); });
    process.run();
    BladeMessages::setHandler(former);
    EXPECT_EQ(texts, (std::vector<std::string>{"done\n1\n3\n"}));
    EXPECT_EQ(progress, (std::vector<int>{-1, 25, 50, 75, 100, -1}));
}

TEST(BladeMessages, WithoutAnApplicationTheTextGoesToTheErrorStream)
{
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    testing::internal::CaptureStderr();
    BladeMessages::show("Peaks extraction is complete");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Peaks extraction is complete\n");
}

TEST(BladeMessages, WithAnApplicationARunEndsInAModalBoxAndResetsTheBar)
{
    int count = 1;
    char name[] = "blade_test";
    char* arguments[] = {name, nullptr};
    QApplication application(count, arguments);
    const auto stack = leaf::emptyStack(3);
    EveryOther process(*stack);
    QProgressBar bar;
    process.setProgressBar(bar);
    QString shown;
    int valueInTheBox = 0;
    QTimer::singleShot(0, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        shown = box->text();
        valueInTheBox = bar.value();
        box->accept();
    });
    process.run();
    EXPECT_EQ(shown, QString("done\n1\n"));
    EXPECT_EQ(valueInTheBox, 100);
    EXPECT_LT(bar.value(), bar.minimum());
}
