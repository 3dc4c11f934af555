#include "stack/snakeconfig0.h"

#include <iostream>

void SnakeConfig0::print(const std::string& indent) const
{
    std::cout << indent << "Gradient threshold = " << gradThreshold << '\n'
              << indent << "Distance = " << distance << '\n'
              << indent << "Reg min = " << regMin << '\n'
              << indent << "Reg max = " << regMax << '\n'
              << indent << "Alpha = " << alpha << '\n'
              << indent << "Adaptive = " << (adaptive ? "true" : "false") << '\n'
              << indent << "Scale = " << scale << '\n';
}
