#pragma once

#include "shape/vertices/vertices.h"

#include <QPoint>

#include <string>
#include <vector>

class Model;
class ModelItem;
class StackSlice;

/// The vertices of items as points, and back.

Vector<int> vertexOf(const QPoint& point);

QPoint pointOf(const Vector<int>& vertex);

/// New vertices.
Vertices<int> verticesOf(const std::vector<QPoint>& points);

std::vector<QPoint> pointsOf(const ModelItem& item);

/// A model of unconnected points, as landmarks are.
bool holdsPoints(const Model& model);

bool isRegion(const ModelItem& item);
