#include "support/stages.h"

#include <QApplication>
#include <QMessageBox>
#include <QProgressBar>
#include <QTimer>

#include <gtest/gtest.h>

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

TEST(BladeMessages, WithoutAnApplicationThereIsNoWidget)
{
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    const auto stack = leaf::emptyStack(4);
    EveryOther process(*stack);
    std::vector<int> progress;
    process.setProgressListener([&](int percent) { progress.push_back(percent); });
    EXPECT_EQ(leaf::run(process), (std::vector<std::string>{"done\n1\n3\n"}));
    EXPECT_EQ(progress, (std::vector<int>{-1, 25, 50, 75, 100, -1}));
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
    QTimer::singleShot(0, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        shown = box->text() + QString::number(bar.value());
        box->accept();
    });
    process.run();
    EXPECT_EQ(shown, QString("done\n1\n100"));
    EXPECT_LT(bar.value(), bar.minimum());
}
