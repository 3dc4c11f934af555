#pragma once

#include "support/userfolders.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QFileDialog>
#include <QGroupBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QStringList>
#include <QTimer>

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <memory>
#include <stdexcept>
#include <utility>

/// Holds an application of the given class for all tests of a program, with settings of its own:
/// `static const auto* environment = addApplication<QApplication>();`
template <class Application>
class ApplicationEnvironment : public ::testing::Environment
{
public:
    void SetUp() override
    {
        clearUserFolders();
        // The dialogs of a desktop can't be driven.
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        application_.reset(new Application(argc_, argv_));
    }

    void TearDown() override { application_.reset(); }

private:
    int argc_ = 1;
    char name_[5] = "test";
    char* argv_[2] = {name_, nullptr};
    std::unique_ptr<Application> application_;
};

template <class Application>
::testing::Environment* addApplication()
{
    return ::testing::AddGlobalTestEnvironment(new ApplicationEnvironment<Application>);
}

/// Answers the modal dialogs that come up while it lives: message boxes are noted and closed, other
/// dialogs are driven by the steps that were given, one dialog each, in their order.
class Modals : public QObject
{
public:
    using Step = std::function<void(QDialog&)>;

    explicit Modals(std::deque<Step> steps = {})
        : steps_(std::move(steps))
    {
        watch();
    }

    /// What message boxes said: "title: text".
    const QStringList& boxes() const { return boxes_; }

    /// Takes the boxes noted so far.
    QStringList takeBoxes() { return std::exchange(boxes_, {}); }

    /// The button that closes boxes which have it; others are closed by their first one.
    void setAnswer(QMessageBox::StandardButton answer) { answer_ = answer; }

    bool stepsAreDone() const { return steps_.empty(); }

private:
    void watch()
    {
        // A single shot each time: a repeating timer does not fire within its own nested loops.
        QTimer::singleShot(2, this, [this] {
            watch();
            meet();
        });
    }

    void meet()
    {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog || dialog->property("met").toBool()) {
            return;
        }
        dialog->setProperty("met", true);
        if (auto* box = qobject_cast<QMessageBox*>(dialog)) {
            boxes_.append(box->windowTitle() + ": " + box->text());
            QAbstractButton* button = box->button(answer_);
            (button ? button : box->buttons().first())->click();
        } else if (steps_.empty()) {
            ADD_FAILURE() << "an unexpected dialog " << dialog->windowTitle().toStdString();
            dialog->reject();
        } else {
            const Step step = steps_.front();
            steps_.pop_front();
            step(*dialog);
        }
    }

    std::deque<Step> steps_;
    QStringList boxes_;
    QMessageBox::StandardButton answer_ = QMessageBox::Ok;
};

/// A step that chooses a file or folder in a file dialog.
inline Modals::Step choosePath(const QString& path)
{
    return [path](QDialog& dialog) {
        auto* edit = dialog.findChild<QLineEdit*>("fileNameEdit");
        ASSERT_NE(edit, nullptr) << dialog.windowTitle().toStdString();
        edit->setText(path);
        dialog.accept();
    };
}

inline void cancelDialog(QDialog& dialog)
{
    dialog.reject();
}

/// The widget of a kind that shows this text.
template <class Widget>
Widget& withText(const QWidget& parent, const QString& text)
{
    for (Widget* widget : parent.findChildren<Widget*>()) {
        if (widget->text() == text) {
            return *widget;
        }
    }
    throw std::runtime_error("no widget with the text " + text.toStdString());
}

/// The lines that a user can fill, without those of numbers.
inline QList<QLineEdit*> lineEdits(const QWidget& parent)
{
    QList<QLineEdit*> edits;
    for (QLineEdit* edit : parent.findChildren<QLineEdit*>()) {
        if (!qobject_cast<QAbstractSpinBox*>(edit->parent())) {
            edits.append(edit);
        }
    }
    return edits;
}

/// A click as a user makes it on the check box of a group.
inline void toggle(QGroupBox& box)
{
    box.setChecked(!box.isChecked());
    emit box.clicked(box.isChecked());
}
