#pragma once

#include <QImage>
#include <QMap>
#include <QString>

/// Pictures of the guide by their file names.
using Figures = QMap<QString, QImage>;

/// The landmarks and the stages on leaves, and the symbols of the models, from the stacks that the
/// script leaves in `folder`.
void addLeafFigures(Figures& figures, const QString& folder);

/// What the columns of the tables measure, the averages and the exported teeth.
void addMeasureFigures(Figures& figures, const QString& folder);

/// The pages of the workflow window, filled for the stack `folder`/serrate-tips.sdf, and the charts
/// of angles.
void addWindowPictures(Figures& figures, const QString& folder);

/// The desk with the stack `folder`/serrate-tips.sdf. Reads and writes the user's settings.
void addDeskPicture(Figures& figures, const QString& folder);

/// Each page of the help, as the help window shows it from each of its anchors, for a look at it;
/// in the colours of a dark desktop too.
void addHelpPictures(Figures& figures);
