#pragma once

/// How the veins of the leaf run. On a palmate leaf the stretch across the apex counts as a tooth.
enum VenationType {
    PINNATE = 0,
    PALMATE = 1,
};
