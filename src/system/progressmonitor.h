#pragma once

#include <string>

class ProgressSubject;

/// An object that listens to subjects. A monitor overrides the operations that it wants; those with
/// a subject in front are what subjects call: they make the subject the current one while the
/// operation of the same name runs.
class ProgressMonitor
{
public:
    ProgressMonitor();
    virtual ~ProgressMonitor();

    virtual void subjectStarted(const std::string& text);
    virtual void subjectFinished(const std::string& text);
    virtual void subjectCanceled(const std::string& text);
    virtual void subjectProgressed(const std::string& text);
    virtual void subjectProgressed(int current, int total);
    virtual void subjectWarning(const std::string& text);
    virtual void subjectError(const std::string& text);

    void subjectStarted(ProgressSubject& subject, const std::string& text);
    void subjectFinished(ProgressSubject& subject, const std::string& text);
    void subjectCanceled(ProgressSubject& subject, const std::string& text);
    void subjectProgressed(ProgressSubject& subject, const std::string& text);
    void subjectProgressed(ProgressSubject& subject, int current, int total);
    void subjectWarning(ProgressSubject& subject, const std::string& text);
    void subjectError(ProgressSubject& subject, const std::string& text);

    bool hasSubject() const { return currentSubject_ != nullptr; }

    /// The subject whose notification is being delivered; null at any other time.
    ProgressSubject* currentSubject() const { return currentSubject_; }

private:
    ProgressSubject* currentSubject_ = nullptr;
};
