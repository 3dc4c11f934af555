#pragma once

#include "samples/leafpicture.h"
#include "samples/scanplan.h"

/// Draws a scan: paper with dust, objects and leaves with soft shadows, an uneven light with one
/// large soft shadow, noise.
Picture drawScan(const ScanPlan& scan);
