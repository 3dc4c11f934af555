#include "support/listener.h"
#include "system/progressproxy.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

/// Expects each message to come from the subject, and cancels a proxy if one is given.
struct Watch : Listener
{
    explicit Watch(ProgressSubject& expected, ProgressProxy* cancels = nullptr)
    {
        then = [this, &expected, cancels] {
            EXPECT_EQ(currentSubject(), &expected);
            if (cancels) {
                cancels->cancel();
            }
        };
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
    Watch listener(subject);
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
    Watch listener(subject);
    subject.addMonitor(listener);
    subject.cancel();
    ProgressSubject copy(subject);
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
    Watch listener(proxy);
    subject.addMonitor(proxy);
    proxy.addMonitor(listener);
    notifyAll(subject);
    EXPECT_EQ(listener.log, "started a;2/3;progressed b;canceled e;finished f;");
}

TEST(ProgressProxy, CancelsTheSubjectOnlyWhileItReports)
{
    ProgressSubject subject;
    ProgressProxy proxy;
    Watch listener(proxy, &proxy);
    subject.addMonitor(proxy);

    proxy.cancel();
    EXPECT_TRUE(proxy.isCanceled());
    EXPECT_FALSE(subject.isCanceled());

    proxy.reset();
    proxy.addMonitor(listener);
    subject.notifyProgressed(1, 2);
    EXPECT_TRUE(proxy.isCanceled());
    EXPECT_TRUE(subject.isCanceled());
}
