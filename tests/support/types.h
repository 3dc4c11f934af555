#pragma once

#include <gtest/gtest.h>

/// The types that lists of typed suites repeat.
using RealTypes = testing::Types<float, double, long double>;
using ElementTypes = testing::Types<char,
                                    unsigned char,
                                    short,
                                    unsigned short,
                                    int,
                                    unsigned int,
                                    float,
                                    double,
                                    long double>;
