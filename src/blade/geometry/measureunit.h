#pragma once

#include <string>

class Stack;

/// The unit of a column of the tables of measures, where lengths are in `length`: that, its square
/// or "LENGTH per pixel"; "day", "hour", "%"; "count" for numbers of teeth and their ranks, "1" for
/// ratios and for columns that no table has, "text".
std::string measureUnit(const std::string& column, const std::string& length);

/// The unit of lengths measured on a stack: its symbol, or "pixel" where no slice has a pixel size.
std::string lengthUnitOf(const Stack& stack);
