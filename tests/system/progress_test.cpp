#include "system/progressproxy.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

/// Writes down what it is told, each time with whether the subject is the expected one.
class Listener : public ProgressMonitor
{
public:
    using ProgressMonitor::subjectProgressed;

    void subjectStarted(const std::string& text) override { note("started " + text); }

    void subjectFinished(const std::string& text) override { note("finished " + text); }

    void subjectCanceled(const std::string& text) override { note("canceled " + text); }

    void subjectProgressed(const std::string& text) override { note("progressed " + text); }

    void subjectProgressed(int current, int total) override
    {
        note(std::to_string(current) + "/" + std::to_string(total));
    }

    void subjectWarning(const std::string& text) override { note("warning " + text); }

    void subjectError(const std::string& text) override { note("error " + text); }

    std::string log;
    ProgressSubject* expected = nullptr;
    ProgressProxy* cancels = nullptr;

private:
    void note(const std::string& text)
    {
        log += text + ";";
        EXPECT_EQ(currentSubject(), expected);
        if (cancels) {
            cancels->cancel();
        }
    }
};

void notifyAll(ProgressSubject& subject)
{
    subject.notifyStarted("a");
    subject.notifyProgressed(2, 3);
    subject.notifyProgressed("b");
    subject.notifyWarning("c");
    subject.notifyError("d");
    subject.notifyCanceled("e");
    subject.notifyFinished("f");
}

const char* const everything =
    "started a;2/3;progressed b;warning c;error d;canceled e;finished f;";

} // namespace

TEST(ProgressSubject, TellsEachMonitorOnceAndNamesItself)
{
    ProgressSubject subject;
    Listener listener;
    listener.expected = &subject;
    subject.addMonitor(listener);
    subject.addMonitor(listener);
    notifyAll(subject);
    EXPECT_EQ(listener.log, everything);
    EXPECT_FALSE(listener.hasSubject());
    subject.removeMonitor(listener);
    subject.removeMonitor(listener);
    notifyAll(subject);
    EXPECT_EQ(listener.log, everything);
}

TEST(ProgressSubject, MonitorsAndFlagDoNotTravelWithItsValue)
{
    ProgressSubject subject;
    Listener listener;
    listener.expected = &subject;
    subject.addMonitor(listener);
    subject.cancel();
    ProgressSubject copy(subject);
    EXPECT_FALSE(copy.isCanceled());
    copy.notifyStarted("copy");
    EXPECT_EQ(listener.log, "");

    subject = subject;
    EXPECT_TRUE(subject.isCanceled());
    subject = copy;
    EXPECT_FALSE(subject.isCanceled());
    std::ostringstream stream;
    subject.print(stream, "reader");
    EXPECT_EQ(stream.str(), "reader\nMonitors: 0\n");
}

TEST(ProgressProxy, PassesOnAllButWarningsAndErrors)
{
    ProgressSubject subject;
    ProgressProxy proxy;
    Listener listener;
    listener.expected = &proxy;
    subject.addMonitor(proxy);
    proxy.addMonitor(listener);
    notifyAll(subject);
    EXPECT_EQ(listener.log, "started a;2/3;progressed b;canceled e;finished f;");
}

TEST(ProgressProxy, CancelsTheSubjectOnlyWhileItReports)
{
    ProgressSubject subject;
    ProgressProxy proxy;
    Listener listener;
    listener.expected = &proxy;
    subject.addMonitor(proxy);
    proxy.addMonitor(listener);

    proxy.cancel();
    EXPECT_TRUE(proxy.isCanceled());
    EXPECT_FALSE(subject.isCanceled());

    proxy.reset();
    listener.cancels = &proxy;
    subject.notifyProgressed(1, 2);
    EXPECT_TRUE(proxy.isCanceled());
    EXPECT_TRUE(subject.isCanceled());
}
