#pragma once

#include <QGroupBox>

class QLineEdit;

/// The choice of a file with limits or targets of a user's own.
class AveragingFile : public QGroupBox
{
    Q_OBJECT

public:
    explicit AveragingFile(QWidget* parent = nullptr);

    void setFile(const QString& name);
    QString getFile() const;

    /// The folder that the chooser starts in.
    void setPath(const QString& folder) { path = folder; }

    QString getPath() const { return path; }

signals:
    void groupBoxAveragingFileState(bool checked);

public slots:
    void fileChooser();

private:
    QLineEdit* fileEdit;
    QString path;
};
