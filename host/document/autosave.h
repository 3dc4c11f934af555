#pragma once

#include "interface/lmxeventclient.h"

#include <QDateTime>
#include <QLockFile>
#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>

class LMXRootMediator;

/// Keeps a copy of the open document on disk while it has unsaved changes, so that they outlive a
/// crash.
///
/// The copy of a stack file NAME.sdf is `.NAME.sdf.autosave` beside it. A stack that was never saved,
/// and one in whose folder nothing can be written, has its copy in the user's data folder. A lock file
/// beside the copy tells that its desk still runs. The copy goes when the document is saved, brought
/// back to its saved state, or closed.
class Autosave : public QObject, public LMXEventClient
{
    Q_OBJECT

public:
    /// A copy that a desk left behind when it ended without closing its document.
    struct Leftover
    {
        QString copy;
        QString document; ///< the stack file; empty for a stack that was never saved
        QDateTime time;
    };

    /// A copy is written every minute in which something changed.
    explicit Autosave(LMXRootMediator& mediator, QObject* parent = nullptr);
    ~Autosave() override;

    void setInterval(int milliseconds) { timer_.setInterval(milliseconds); }

    /// Writes the copy now if the document has changes that it lacks. A copy that can't be written
    /// is told by `failed`.
    void keep();

    /// The copy that a stack file has.
    static std::optional<Leftover> leftoverOf(const QString& document);

    /// The copies of these files and of all stacks that were never saved, the latest first. A copy
    /// whose desk still runs is none.
    static QList<Leftover> leftovers(const QStringList& documents);

    static void discard(const Leftover& leftover);

    /// The open document is what this copy holds: from now on it is the document's own copy.
    void adopt(const Leftover& leftover);

    /// The copy of the open document; empty without one.
    QString copy() const { return copy_; }

    void stackModifyEvent(LMXStackModifyEvent& event) override;
    void stackFileNameEvent(LMXStackFileNameEvent& event) override;
    void stackCloseEvent(LMXStackCloseEvent& event) override;

signals:
    void failed(const QString& text);

private:
    void drop();
    bool choosePlace();
    bool take(const QString& copy);

    LMXRootMediator& mediator_;
    QTimer timer_;
    QString copy_;
    std::unique_ptr<QLockFile> lock_;
    bool changed_ = false; // since the copy was written
};
