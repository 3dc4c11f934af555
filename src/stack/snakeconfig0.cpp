#include "stack/snakeconfig0.h"

#include <iostream>

void SnakeConfig0::print(const std::string& indent) const
{
    std::cout << indent << "Gradient threshold = " << gradThreshold_ << '\n'
              << indent << "Distance = " << distance_ << '\n'
              << indent << "Reg min = " << regMin_ << '\n'
              << indent << "Reg max = " << regMax_ << '\n'
              << indent << "Alpha = " << alpha_ << '\n'
              << indent << "Adaptive = " << (adaptive_ ? "true" : "false") << '\n'
              << indent << "Scale = " << scale_ << '\n';
}
