#pragma once

#include "stack/stackio.h"

class ModelItemProperties;
class ModelProperties;
class Pose;
class RLEItemSet0;
class StackFileScanner;

template <class T>
class Vertices;

/// The statements inside the blocks of a stack description file, past their keyword.
///
/// The first three read the values of one statement and return true, or leave a keyword of another
/// block alone and return false. Wrong values raise `FileFormatError` and change nothing.

/// What a model states as a whole.
bool readModelStatement(StackIO::Keyword keyword,
                        StackFileScanner& scanner,
                        ModelProperties& properties);

/// What a model states for all its items and an item for itself.
bool readDrawingStatement(StackIO::Keyword keyword,
                          StackFileScanner& scanner,
                          ModelItemProperties& properties);

bool readPoseStatement(StackIO::Keyword keyword, StackFileScanner& scanner, Pose& pose);

/// The data of an item: vertices, or the runs of a region.
Vertices<int> readVertices(StackFileScanner& scanner);
RLEItemSet0 readRegion(StackFileScanner& scanner);
